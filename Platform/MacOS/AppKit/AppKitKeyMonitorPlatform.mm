#include "Platform/MacOS/AppKit/AppKitKeyMonitorPlatform.h"

#include "Platform/MacOS/AppKit/CanvasView.h"
#include "Platform/MacOS/AppKit/Guarded.h"
#include "Platform/MacOS/AppKit/ObjCHandle.h"

#import <AppKit/AppKit.h>
#include <utility>

namespace tarvex {

namespace {

using SharedHandler = std::shared_ptr<const KeyMonitorPlatform::KeyHandler>;

/// A handler that fails leaves the key to the window.
bool passesOn(const KeyMonitorPlatform::KeyHandler& handler, NSEvent* event) {
    const KeyEvent key{[event keyCode], eventFlags(event)};
    return answerGuarded([&] { return handler(key); }, true);
}

class AppKitKeyMonitor final : public KeyMonitor {
public:
    explicit AppKitKeyMonitor(ObjCHandle<id> monitor) : monitor_(std::move(monitor)) {}

    AppKitKeyMonitor(const AppKitKeyMonitor&) = delete;
    AppKitKeyMonitor& operator=(const AppKitKeyMonitor&) = delete;
    AppKitKeyMonitor(AppKitKeyMonitor&&) = delete;
    AppKitKeyMonitor& operator=(AppKitKeyMonitor&&) = delete;

    ~AppKitKeyMonitor() override {
        @autoreleasepool {
            [NSEvent removeMonitor:monitor_.get()];
        }
    }

private:
    ObjCHandle<id> monitor_;
};

} // namespace

std::unique_ptr<KeyMonitor> AppKitKeyMonitorPlatform::addLocalKeyDownMonitor(KeyHandler handler) {
    // The block's copy, and with it the handler, may go while the handler runs.
    const SharedHandler shared = std::make_shared<const KeyHandler>(std::move(handler));
    NSEvent* (^block)(NSEvent*) = ^NSEvent*(NSEvent* event) {
        const SharedHandler running = shared;
        return passesOn(*running, event) ? event : nil;
    };
    ObjCHandle<id> monitor;
    @autoreleasepool {
        monitor = ObjCHandle<id>::share([NSEvent addLocalMonitorForEventsMatchingMask:NSEventMaskKeyDown
                                                                              handler:block]);
    }
    return monitor ? std::make_unique<AppKitKeyMonitor>(std::move(monitor)) : nullptr;
}

} // namespace tarvex
