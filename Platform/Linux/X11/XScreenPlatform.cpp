#include "Platform/Linux/X11/XScreenPlatform.h"

#include "Platform/Linux/X11/XWindowGeometry.h"

#include <string>

namespace tarvex {

namespace {

std::string nameOf(const Monitor& monitor) {
    if (!monitor.edid.name.empty()) {
        return monitor.edid.name;
    }
    return monitor.outputName.empty() ? monitor.name : monitor.outputName;
}

} // namespace

XScreenPlatform::XScreenPlatform(XConnection& connection, MonitorTracker& monitors, StrutTracker& struts)
    : connection_(&connection), monitors_(&monitors), struts_(&struts) {
    connection.internAtoms({"_NET_ACTIVE_WINDOW", "_NET_FRAME_EXTENTS", "_GTK_FRAME_EXTENTS"});
}

std::vector<Screen> XScreenPlatform::screens() {
    refreshIfStale();
    return screens_;
}

std::optional<Screen> XScreenPlatform::mainScreen() {
    refreshIfStale();
    if (screens_.empty()) {
        return std::nullopt;
    }
    if (screens_.size() > 1) {
        if (const std::optional<PixelRect> active = activeWindowFrame()) {
            const Rect frame = monitors_->layout().screenRectOfPixels(*active);
            const Point centre{frame.x + frame.width / 2, frame.y + frame.height / 2};
            for (const Screen& screen : screens_) {
                if (screen.frame.contains(centre)) {
                    return screen;
                }
            }
        }
    }
    return screens_.front();
}

void XScreenPlatform::refreshIfStale() {
    const std::uint64_t monitorsRevision = monitors_->revision();
    const std::uint64_t strutsRevision = struts_->revision();
    if (monitorsRevision_ == monitorsRevision && strutsRevision_ == strutsRevision) {
        return;
    }
    monitorsRevision_ = monitorsRevision;
    strutsRevision_ = strutsRevision;
    const std::vector<Monitor>& monitors = monitors_->monitors();
    std::vector<PixelRect> areas;
    areas.reserve(monitors.size());
    for (const Monitor& monitor : monitors) {
        areas.push_back(monitor.area);
    }
    const std::vector<PixelRect> visible = visibleAreas(monitors_->root(), areas, struts_->panels());
    const DesktopLayout& layout = monitors_->layout();
    screens_.clear();
    for (std::size_t index = 0; index < monitors.size(); ++index) {
        const Monitor& monitor = monitors[index];
        screens_.push_back({monitor.number, layout.screenRectOfPixels(monitor.area),
                            layout.screenRectOfPixels(visible[index]), nameOf(monitor)});
    }
}

std::optional<PixelRect> XScreenPlatform::activeWindowFrame() {
    const XPropertyWords active =
        readPropertyWords(*connection_, connection_->root(), connection_->atom("_NET_ACTIVE_WINDOW"));
    if (active.words.empty() || active.words.front() == XCB_WINDOW_NONE) {
        return std::nullopt;
    }
    const XWindowGeometry geometry = XWindowGeometryRequest(*connection_, active.words.front()).take();
    return geometry.error == 0 ? std::optional(geometry.visibleFrame()) : std::nullopt;
}

} // namespace tarvex
