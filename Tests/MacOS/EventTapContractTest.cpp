#include "Tests/Contract/EventTapContract.h"

#include "Platform/MacOS/CoreFoundation/RunLoopMainLoop.h"
#include "Platform/MacOS/Input/MacEventTapPlatform.h"
#include "Tests/MacOS/MacWorld.h"

namespace tarvex::contract {
namespace {

std::uint64_t flagOf(ModifierKey key) {
    switch (key) {
    case ModifierKey::shift:
        return kCGEventFlagMaskShift;
    case ModifierKey::control:
        return kCGEventFlagMaskControl;
    case ModifierKey::option:
        return kCGEventFlagMaskAlternate;
    case ModifierKey::command:
        return kCGEventFlagMaskCommand;
    }
    return 0;
}

/// The same system as it is before the user has allowed anything.
class RefusingMacPlatform final : public EventTapPlatform {
public:
    explicit RefusingMacPlatform(MainLoop& mainLoop) : platform_(mainLoop) {}

    [[nodiscard]] bool preflightListenEventAccess() override {
        return platform_.preflightListenEventAccess();
    }

    [[nodiscard]] bool requestListenEventAccess() override { return platform_.requestListenEventAccess(); }

    [[nodiscard]] std::unique_ptr<EventTap> createTap(const EventTapRequest& request) override {
        fake::mac().eventTaps.givesTaps = false;
        std::unique_ptr<EventTap> tap = platform_.createTap(request);
        fake::mac().eventTaps.givesTaps = true;
        return tap;
    }

    [[nodiscard]] std::unique_ptr<RunLoopSource> createRunLoopSource(EventTap& tap) override {
        return platform_.createRunLoopSource(tap);
    }

    void addSource(RunLoopSource& source) override { platform_.addSource(source); }

    void removeSource(RunLoopSource& source) override { platform_.removeSource(source); }

    void enableTap(EventTap& tap) override { platform_.enableTap(tap); }

private:
    MacEventTapPlatform platform_;
};

class MacEventTapWorld final : public MacWorld<EventTapWorld> {
public:
    EventTapPlatform& platform() override { return platform_; }

    PointerPlatform& pointer() override { return pointer_; }

    std::unique_ptr<EventTapPlatform> makeRefusingPlatform() override {
        return std::make_unique<RefusingMacPlatform>(mainLoop_);
    }

    void pressButton() override { setButton(true, kCGEventLeftMouseDown); }

    void releaseButton() override { setButton(false, kCGEventLeftMouseUp); }

    void moveTo(Point point) override {
        pointer_.location = point;
        send(isButtonDown_ ? kCGEventLeftMouseDragged : kCGEventMouseMoved);
    }

    void pressKey(ModifierKey key) override { setFlags(flags_ | flagOf(key)); }

    void releaseKey(ModifierKey key) override { setFlags(flags_ & ~flagOf(key)); }

    void clickSecondaryButton() override {
        send(kCGEventRightMouseDown);
        send(kCGEventRightMouseUp);
    }

    void turnWheel() override { send(kCGEventScrollWheel); }

    void typeLetter() override {
        send(kCGEventKeyDown);
        send(kCGEventKeyUp);
    }

    void toggleCapsLock() override { setFlags(flags_ ^ kCGEventFlagMaskAlphaShift); }

private:
    void send(CGEventType type) const { fake::mac().eventTaps.send(type, flags_); }

    void setButton(bool isDown, CGEventType type) {
        isButtonDown_ = isDown;
        send(type);
    }

    void setFlags(std::uint64_t flags) {
        flags_ = flags;
        send(kCGEventFlagsChanged);
    }

    RunLoopMainLoop mainLoop_;
    MacEventTapPlatform platform_{mainLoop_};
    MacPointer pointer_;
    std::uint64_t flags_ = 0;
    bool isButtonDown_ = false;
};

INSTANTIATE_TEST_SUITE_P(MacOS, EventTapContract,
                         ::testing::Values(worldFactory<EventTapWorld, MacEventTapWorld>("Fake")), worldName);

} // namespace
} // namespace tarvex::contract
