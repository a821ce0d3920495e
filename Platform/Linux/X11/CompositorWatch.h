#pragma once

#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XEventPump.h"

#include <functional>
#include <memory>

namespace tarvex {

/// Knows whether a compositing manager runs on the connection's screen: whether somebody owns the selection
/// that stands for one.
class CompositorWatch {
public:
    /// The connection and the pump must outlive the watch.
    /// @param changed called when a compositing manager has started or stopped
    CompositorWatch(XConnection& connection, XEventPump& pump, std::function<void()> changed);

    [[nodiscard]] bool isRunning() const { return isRunning_; }

private:
    void readOwner();
    void subscribe(XEventPump& pump);
    void update(bool isRunning);

    XConnection* connection_;
    std::function<void()> changed_;
    xcb_atom_t selection_ = XCB_ATOM_NONE;
    bool isRunning_ = false;
    std::unique_ptr<XEventPump::Subscription> subscription_;
};

} // namespace tarvex
