#pragma once

#include "Platform/Linux/X11/XEventPump.h"

#include <functional>
#include <memory>

namespace tarvex {

/// Tells that the keyboard's map or its modifiers changed. Typing is not listened to.
class XKeyboardNotices {
public:
    /// Waits for the server. Connection and pump must outlive the object.
    /// @param changed called for each notice; several may come of one change
    XKeyboardNotices(XConnection& connection, XEventPump& pump, std::function<void()> changed);

private:
    static void select(XConnection& connection);

    std::function<void()> changed_;
    std::unique_ptr<XEventPump::Subscription> coreNotices_;
    std::unique_ptr<XEventPump::Subscription> xkbNotices_;
};

} // namespace tarvex
