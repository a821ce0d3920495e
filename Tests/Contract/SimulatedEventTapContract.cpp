#include "Tests/Contract/EventTapContract.h"
#include "Tests/Contract/SimulatedWorld.h"

namespace tarvex::contract {
namespace {

std::uint64_t flagOf(ModifierKey key) {
    switch (key) {
    case ModifierKey::shift:
        return event_flag::shift;
    case ModifierKey::control:
        return event_flag::control;
    case ModifierKey::option:
        return event_flag::option;
    case ModifierKey::command:
        return event_flag::command;
    }
    return 0;
}

class SimulatedEventTapWorld final : public SimulatedWorld<EventTapWorld> {
public:
    EventTapPlatform& platform() override { return desktop_.input(); }

    PointerPlatform& pointer() override { return desktop_.input(); }

    std::unique_ptr<EventTapPlatform> makeRefusingPlatform() override {
        auto refusing = std::make_unique<SimulatedInput>(desktop_.mainLoop(), desktop_.journal());
        refusing->setRefusesTaps(true);
        return refusing;
    }

    void pressButton() override { desktop_.input().pressButton(); }

    void releaseButton() override { desktop_.input().releaseButton(); }

    void moveTo(Point point) override { desktop_.input().moveTo(point); }

    void pressKey(ModifierKey key) override {
        desktop_.input().setModifiers(desktop_.input().modifiers() | flagOf(key));
    }

    void releaseKey(ModifierKey key) override {
        desktop_.input().setModifiers(desktop_.input().modifiers() & ~flagOf(key));
    }

    // The types that the other buttons, the wheel and the keys have (Apple, CGEventType).
    void clickSecondaryButton() override {
        desktop_.input().send(static_cast<EventType>(3));
        desktop_.input().send(static_cast<EventType>(4));
    }

    void turnWheel() override { desktop_.input().send(static_cast<EventType>(22)); }

    void typeLetter() override {
        desktop_.input().send(static_cast<EventType>(10));
        desktop_.input().send(static_cast<EventType>(11));
    }

    void toggleCapsLock() override {
        desktop_.input().setModifiers(desktop_.input().modifiers() ^ event_flag::capsLock);
    }
};

INSTANTIATE_TEST_SUITE_P(Simulated, EventTapContract,
                         ::testing::Values(worldFactory<EventTapWorld, SimulatedEventTapWorld>("Simulated")),
                         worldName);

} // namespace
} // namespace tarvex::contract
