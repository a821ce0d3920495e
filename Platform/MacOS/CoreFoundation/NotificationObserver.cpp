#include "Platform/MacOS/CoreFoundation/NotificationObserver.h"

#include "Platform/MacOS/CoreFoundation/CFText.h"
#include "Platform/MacOS/Logging/SwallowedException.h"

#include <utility>

namespace tarvex {

// The observer may go in its own call: the handler is held for the call.
struct NotificationObserver::Handler : std::enable_shared_from_this<Handler> {
    explicit Handler(std::function<void()> action) : action(std::move(action)) {}

    static void hear(CFNotificationCenterRef /*center*/, void* observer, CFNotificationName /*name*/,
                     const void* /*object*/, CFDictionaryRef /*userInfo*/) noexcept {
        try {
            static_cast<Handler*>(observer)->shared_from_this()->action();
        } catch (...) {
            logSwallowedException("NotificationObserver");
        }
    }

    std::function<void()> action;
};

NotificationObserver::NotificationObserver(CFNotificationCenterRef center, std::string_view name,
                                           const void* object, std::function<void()> handler)
    : center_(center),
      name_(makeCFString(name)),
      object_(object),
      handler_(std::make_shared<Handler>(std::move(handler))) {
    // AppKit suspends the distributed centre of a program that is not in front, as this one seldom is.
    CFNotificationCenterAddObserver(center_, handler_.get(), &Handler::hear, name_.get(), object_,
                                    CFNotificationSuspensionBehaviorDeliverImmediately);
}

NotificationObserver::~NotificationObserver() {
    CFNotificationCenterRemoveObserver(center_, handler_.get(), name_.get(), object_);
}

} // namespace tarvex
