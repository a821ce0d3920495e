#include "Platform/MacOS/Input/TapPort.h"

#include "Platform/MacOS/Logging/SwallowedException.h"

#include <ApplicationServices/ApplicationServices.h>
#include <utility>

namespace tarvex {

namespace {

// The notices of a disabled tap come with no event that could be asked.
std::uint64_t flagsOf(CGEventType type, CGEventRef event) {
    const bool isNotice = type == kCGEventTapDisabledByTimeout || type == kCGEventTapDisabledByUserInput;
    return isNotice || event == nullptr ? 0 : static_cast<std::uint64_t>(CGEventGetFlags(event));
}

// An exception must not pass through a frame of the system, and nothing may keep the event from its receiver.
CGEventRef handleTapEvent(CGEventTapProxy /*proxy*/, CGEventType type, CGEventRef event,
                          void* userInfo) noexcept {
    try {
        static_cast<TapContext*>(userInfo)->handle(static_cast<EventType>(type), flagsOf(type, event));
    } catch (...) {
        logSwallowedException("MacEventTapPlatform");
    }
    return event;
}

CGEventRef passEventOn(CGEventTapProxy /*proxy*/, CGEventType /*type*/, CGEventRef event,
                       void* /*userInfo*/) noexcept {
    return event;
}

CFHandle<CFMachPortRef> createTap(const EventTapRequest& request, CGEventTapCallBack callback,
                                  void* userInfo) {
    return CFHandle<CFMachPortRef>::adopt(CGEventTapCreate(
        static_cast<CGEventTapLocation>(request.location),
        static_cast<CGEventTapPlacement>(request.placement), static_cast<CGEventTapOptions>(request.options),
        request.eventMask, callback, userInfo));
}

} // namespace

std::shared_ptr<TapPort> TapPort::make(std::shared_ptr<TapContext> context) {
    auto port = createTap(context->request(), &handleTapEvent, context.get());
    return port ? std::shared_ptr<TapPort>(new TapPort(std::move(context), std::move(port))) : nullptr;
}

bool TapPort::canBeMade(const EventTapRequest& request) {
    EventTapRequest trial = request;
    trial.eventMask = 1ULL << kCGEventFlagsChanged;
    const auto port = createTap(trial, &passEventOn, nullptr);
    if (port) {
        CFMachPortInvalidate(port.get());
    }
    return static_cast<bool>(port);
}

TapPort::TapPort(std::shared_ptr<TapContext> context, CFHandle<CFMachPortRef> port)
    : context_(std::move(context)), port_(std::move(port)) {}

// Core Graphics keeps references of its own to the port: the window server lists a tap whose port was only
// released until the program ends, and looks at it for every event (CGGetEventTapList).
TapPort::~TapPort() {
    CFMachPortInvalidate(port_.get());
}

} // namespace tarvex
