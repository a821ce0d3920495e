#include "Platform/MacOS/Input/TapWatch.h"

#include "Platform/MacOS/CoreFoundation/CFText.h"
#include "Platform/MacOS/Logging/SwallowedException.h"

#include <ApplicationServices/ApplicationServices.h>
#include <dispatch/dispatch.h>
#include <utility>

namespace tarvex {

namespace {

// Apple does not document this name. The system settings have posted it for many years whenever a program was
// added to, taken from, switched on or off in the list of those that may use accessibility.
constexpr std::string_view permissionsChanged = "com.apple.accessibility.api";

// Our own, within the program.
constexpr std::string_view portInvalidated = "org.tarvex.Tarvex.eventTapInvalidated";

bool isLeftButtonDown() {
    return CGEventSourceButtonState(kCGEventSourceStateHIDSystemState, kCGMouseButtonLeft);
}

using HeldPort = CFHandle<CFMachPortRef>;

void postInvalidation(void* context) noexcept {
    try {
        const std::unique_ptr<HeldPort> port(static_cast<HeldPort*>(context));
        const auto name = makeCFString(portInvalidated);
        CFNotificationCenterPostNotification(CFNotificationCenterGetLocalCenter(), name.get(), port->get(),
                                             nullptr, 1);
    } catch (...) {
        logSwallowedException("TapWatch");
    }
}

// Comes on whatever thread the port died on, and with a context that is Core Graphics' own. The program's
// notification centre finds the watch of this port, if there still is one, on the main thread.
void portWasInvalidated(CFMachPortRef port, void* /*info*/) noexcept {
    try {
        auto held = std::make_unique<HeldPort>(HeldPort::share(port));
        dispatch_async_f(dispatch_get_main_queue(), held.release(), &postInvalidation);
    } catch (...) {
        logSwallowedException("TapWatch");
    }
}

} // namespace

TapWatch::TapWatch(MainLoop& mainLoop, std::shared_ptr<TapContext> context, std::shared_ptr<TapPort> port)
    : mainLoop_(&mainLoop),
      context_(std::move(context)),
      port_(std::move(port)),
      permissionObserver_(CFNotificationCenterGetDistributedCenter(), permissionsChanged, nullptr,
                          [this] { lookLater(); }),
      invalidationObserver_(CFNotificationCenterGetLocalCenter(), portInvalidated, port_->get(),
                            [this] { tellOfItsEnd(); }) {
    // There is room for one callback: one that Core Graphics had set would be its own way of ending a tap.
    if (CFMachPortGetInvalidationCallBack(port_->get()) == nullptr) {
        CFMachPortSetInvalidationCallBack(port_->get(), &portWasInvalidated);
        hearsOfInvalidation_ = true;
    }
}

TapWatch::~TapWatch() {
    if (hearsOfInvalidation_) {
        CFMachPortSetInvalidationCallBack(port_->get(), nullptr);
    }
}

void TapWatch::lookLater() {
    timer_ = mainLoop_->scheduleOnce(permissionLagSeconds, [this] { look(); });
}

// Events that wait in the port go past an owner that makes a new tap; one of them might be the release of the
// button, without which a drag would seem to go on. While the button is down only a tap that is lost is told
// of its end: its release will not come.
void TapWatch::look() {
    if (isLeftButtonDown() && TapPort::canBeMade(context_->request())) {
        lookLater();
        return;
    }
    timer_.reset();
    tellOfItsEnd();
}

// The tap may go in the call, and this with it; the context stays until the port has gone, after the call.
void TapWatch::tellOfItsEnd() {
    context_->handle(EventType::tapDisabledByTimeout, 0);
}

} // namespace tarvex
