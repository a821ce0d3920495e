#pragma once

#include "Platform/MacOS/CoreFoundation/CFHandle.h"

#include <functional>
#include <memory>
#include <string_view>

namespace tarvex {

/// Hears one notification of a notification centre from its making to its destruction, which may come from
/// within the handler. The distributed centre calls on the main thread, the local one on the thread that
/// posts.
class NotificationObserver {
public:
    /// @param object what must have posted it; null for anybody
    NotificationObserver(CFNotificationCenterRef center, std::string_view name, const void* object,
                         std::function<void()> handler);
    NotificationObserver(const NotificationObserver&) = delete;
    NotificationObserver& operator=(const NotificationObserver&) = delete;
    NotificationObserver(NotificationObserver&&) = delete;
    NotificationObserver& operator=(NotificationObserver&&) = delete;
    ~NotificationObserver();

private:
    struct Handler;

    CFNotificationCenterRef center_;
    CFHandle<CFStringRef> name_;
    const void* object_;
    std::shared_ptr<Handler> handler_;
};

} // namespace tarvex
