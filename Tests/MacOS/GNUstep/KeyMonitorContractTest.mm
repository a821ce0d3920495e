#include "Tests/Contract/KeyMonitorContract.h"

#include "Platform/MacOS/AppKit/AppKitKeyMonitorPlatform.h"
#include "Platform/MacOS/AppKit/ObjCHandle.h"
#include "Tests/MacOS/GNUstep/AppKitTest.h"

#include <array>

/// Counts the keys that reach it.
@interface TarvexKeyCountingView : NSView {
    int count_;
}
- (int)count;
@end

@implementation TarvexKeyCountingView

- (BOOL)acceptsFirstResponder {
    return YES;
}

- (void)keyDown:(NSEvent*)event {
    static_cast<void>(event);
    ++count_;
}

- (int)count {
    return count_;
}

@end

namespace tarvex::contract {
namespace {

NSUInteger nativeFlags(std::uint32_t modifiers) {
    struct Pair {
        std::uint32_t mask;
        NSUInteger flag;
    };

    constexpr std::array<Pair, 4> pairs{{{modifier_mask::command, NSEventModifierFlagCommand},
                                         {modifier_mask::option, NSEventModifierFlagOption},
                                         {modifier_mask::control, NSEventModifierFlagControl},
                                         {modifier_mask::shift, NSEventModifierFlagShift}}};
    NSUInteger flags = 0;
    for (const Pair& pair : pairs) {
        flags |= (modifiers & pair.mask) != 0 ? pair.flag : 0;
    }
    return flags;
}

/// The adapter over the compatibility layer's monitors, and events as the toolkit hands them out.
class AppKitKeyMonitorWorld final : public KeyMonitorWorld {
public:
    AppKitKeyMonitorWorld() {
        const NSRect frame = NSMakeRect(50, 50, 200, 100);
        window_ = ObjCHandle<NSWindow*>::adopt([[NSWindow alloc] initWithContentRect:frame
                                                                           styleMask:NSTitledWindowMask
                                                                             backing:NSBackingStoreBuffered
                                                                               defer:NO]);
        view_ =
            ObjCHandle<TarvexKeyCountingView*>::adopt([[TarvexKeyCountingView alloc] initWithFrame:frame]);
        [window_.get() setReleasedWhenClosed:NO];
        [window_.get() setContentView:view_.get()];
        [window_.get() makeFirstResponder:view_.get()];
        [window_.get() makeKeyAndOrderFront:nil];
        settle();
    }

    AppKitKeyMonitorWorld(const AppKitKeyMonitorWorld&) = delete;
    AppKitKeyMonitorWorld& operator=(const AppKitKeyMonitorWorld&) = delete;
    AppKitKeyMonitorWorld(AppKitKeyMonitorWorld&&) = delete;
    AppKitKeyMonitorWorld& operator=(AppKitKeyMonitorWorld&&) = delete;

    ~AppKitKeyMonitorWorld() override { [window_.get() close]; }

    KeyMonitorPlatform& platform() override { return platform_; }

    void type(std::uint16_t keyCode, std::uint32_t modifiers) override {
        post(NSKeyDown, keyCode, nativeFlags(modifiers));
        post(NSKeyUp, keyCode, nativeFlags(modifiers));
    }

    void typeModifier(std::uint32_t modifier) override {
        post(NSFlagsChanged, 55, nativeFlags(modifier));
        post(NSFlagsChanged, 55, 0);
    }

    int reachedWindow() override { return [view_.get() count]; }

    bool waitUntil(const std::function<bool()>& condition) override {
        settle();
        return condition();
    }

    void settle() override { test::handOutEvents(); }

private:
    void post(NSEventType type, unsigned short keyCode, NSUInteger flags) {
        @autoreleasepool {
            [NSApp postEvent:[NSEvent keyEventWithType:type
                                                    location:NSZeroPoint
                                               modifierFlags:flags
                                                   timestamp:0
                                                windowNumber:[window_.get() windowNumber]
                                                     context:nil
                                                  characters:@"x"
                                 charactersIgnoringModifiers:@"x"
                                                   isARepeat:NO
                                                     keyCode:keyCode]
                     atStart:NO];
        }
    }

    test::AppKitSession session_;
    AppKitKeyMonitorPlatform platform_;
    ObjCHandle<NSWindow*> window_;
    ObjCHandle<TarvexKeyCountingView*> view_;
};

INSTANTIATE_TEST_SUITE_P(AppKit, KeyMonitorContract,
                         ::testing::Values(worldFactory<KeyMonitorWorld, AppKitKeyMonitorWorld>("AppKit")),
                         worldName);

} // namespace
} // namespace tarvex::contract
