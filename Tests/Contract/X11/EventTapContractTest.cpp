#include "Tests/Contract/EventTapContract.h"

#include "Tests/Contract/X11/InputAdapters.h"
#include "Tests/Support/X11/Keyboard.h"
#include "Tests/Support/X11/Pointer.h"
#include "Tests/Support/X11/XServer.h"

#include <xcb/xinput.h>

#include <cmath>

namespace tarvex::contract {

namespace {

constexpr int screenHeight = 1024;
constexpr std::uint32_t letterA = 0x61;

/// The contract speaks of whole points, the adapter of the centres of pixels.
class WholePoints final : public PointerPlatform {
public:
    explicit WholePoints(PointerPlatform& pointer) : pointer_(&pointer) {}

    [[nodiscard]] Point mouseLocation() override {
        const Point exact = pointer_->mouseLocation();
        return {std::floor(exact.x), std::floor(exact.y)};
    }

private:
    PointerPlatform* pointer_;
};

class EventTapX11World final : public EventTapWorld {
public:
    EventTapPlatform& platform() override { return adapters_.taps; }

    PointerPlatform& pointer() override { return wholePoints_; }

    std::unique_ptr<EventTapPlatform> makeRefusingPlatform() override {
        // A client that has asked for an older version is served that version from then on.
        xcb_input_xi_query_version(poor_.connection->get(), 2, 0);
        return std::make_unique<XEventTapPlatform>(*poor_.connection, poor_.pump, poor_.pointer,
                                                   SessionKind{});
    }

    void pressButton() override { mouse_.press(); }

    void releaseButton() override { mouse_.release(); }

    void moveTo(Point point) override {
        // A person moves no faster than the tap can ask for motion after the press.
        adapters_.awaitServer();
        mouse_.moveTo({static_cast<int>(point.x), screenHeight - 1 - static_cast<int>(point.y)});
    }

    void pressKey(ModifierKey key) override { keyboard_.press(symbolOf(key)); }

    void releaseKey(ModifierKey key) override { keyboard_.release(symbolOf(key)); }

    void clickSecondaryButton() override { click(3); }

    void turnWheel() override { click(4); }

    void typeLetter() override { keyboard_.tap(letterA); }

    // The keyboard ends with the server.
    void toggleCapsLock() override { keyboard_.tap(test::key::capsLock); }

    bool waitUntil(const std::function<bool()>& condition) override { return adapters_.waitUntil(condition); }

    void settle() override { adapters_.catchUp(); }

private:
    static std::uint32_t symbolOf(ModifierKey key) {
        switch (key) {
        case ModifierKey::shift:
            return test::key::shift;
        case ModifierKey::control:
            return test::key::control;
        case ModifierKey::option:
            return test::key::alt;
        case ModifierKey::command:
            return test::key::super;
        }
        return 0;
    }

    void click(std::uint8_t button) {
        mouse_.press(button);
        mouse_.release(button);
    }

    test::XServer server_{1280, screenHeight};
    XInputAdapters adapters_{server_.displayName()};
    XInputAdapters poor_{server_.displayName()};
    WholePoints wholePoints_{adapters_.pointer};
    test::Pointer mouse_{server_.displayName()};
    test::Keyboard keyboard_{server_.displayName()};
};

INSTANTIATE_TEST_SUITE_P(X11, EventTapContract,
                         ::testing::Values(worldFactory<EventTapWorld, EventTapX11World>("Xvfb")), worldName);

} // namespace

} // namespace tarvex::contract
