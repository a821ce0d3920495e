#include "Platform/Linux/X11/XScreenPlatform.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string>

namespace tarvex {

namespace {

constexpr std::uint32_t largestExtent = std::numeric_limits<std::int16_t>::max();

// _NET_FRAME_EXTENTS and _GTK_FRAME_EXTENTS: left, right, top, bottom.
std::array<int, 4> extentsOf(const XPropertyWords& property) {
    std::array<int, 4> extents{};
    for (std::size_t index = 0; index < extents.size() && property.words.size() >= extents.size(); ++index) {
        extents[index] = static_cast<int>(std::min(property.words[index], largestExtent));
    }
    return extents;
}

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
    const xcb_window_t window = active.words.front();
    const auto geometryCookie = xcb_get_geometry(connection_->get(), window);
    const auto positionCookie =
        xcb_translate_coordinates(connection_->get(), window, connection_->root(), 0, 0);
    const auto decorationsCookie =
        requestPropertyWords(*connection_, window, connection_->atom("_NET_FRAME_EXTENTS"));
    const auto shadowCookie =
        requestPropertyWords(*connection_, window, connection_->atom("_GTK_FRAME_EXTENTS"));
    const auto geometry = connection_->take(xcb_get_geometry_reply, geometryCookie);
    const auto position = connection_->take(xcb_translate_coordinates_reply, positionCookie);
    const auto decorations = extentsOf(takePropertyWords(*connection_, decorationsCookie));
    const auto shadow = extentsOf(takePropertyWords(*connection_, shadowCookie));
    if (!geometry || !position) {
        return std::nullopt;
    }
    const auto [left, right, top, bottom] =
        std::array{decorations[0] - shadow[0], decorations[1] - shadow[1], decorations[2] - shadow[2],
                   decorations[3] - shadow[3]};
    return PixelRect{position->dst_x - left, position->dst_y - top, geometry->width + left + right,
                     geometry->height + top + bottom};
}

} // namespace tarvex
