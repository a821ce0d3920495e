#pragma once

#include "Platform/Linux/X11/DesktopLayout.h"
#include "Platform/Linux/X11/EventMask.h"
#include "Platform/Linux/X11/MonitorReader.h"
#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XEventPump.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace tarvex {

/// Knows the monitors, and so where screen and accessibility space lie. It asks the server again only when
/// the server has told of a change, and only when somebody wants to know.
class MonitorTracker final : public DesktopLayoutProvider {
public:
    /// The connection and the pump must outlive the tracker.
    MonitorTracker(XConnection& connection, XEventPump& pump);

    /// The primary monitor first; see MonitorList. Valid until the next call of any method.
    [[nodiscard]] const std::vector<Monitor>& monitors();

    /// The monitor of that number; null when none is connected. Valid as long.
    [[nodiscard]] const Monitor* find(std::uint32_t number);

    /// The root window itself.
    [[nodiscard]] const PixelRect& root();

    [[nodiscard]] const DesktopLayout& layout() override;

    /// Another number whenever the answers of the other methods may have changed.
    [[nodiscard]] std::uint64_t revision();

private:
    void watch();
    [[nodiscard]] bool concernsMonitors(const xcb_generic_event_t& notification);
    void refreshIfStale();
    void updateLayout();

    XConnection* connection_;
    XEventPump* pump_;
    RootEventSelection rootEvents_;
    std::vector<std::unique_ptr<XEventPump::Subscription>> subscriptions_;
    bool serverListsMonitors_;
    bool isStale_ = true;
    std::uint64_t revision_ = 0;
    MonitorList list_;
    DesktopLayout layout_;
};

} // namespace tarvex
