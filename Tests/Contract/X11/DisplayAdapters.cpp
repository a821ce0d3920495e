#include "Tests/Contract/X11/DisplayAdapters.h"

#include <sstream>

namespace tarvex {

XDisplayAdapters::XDisplayAdapters(const std::string& displayName)
    : PumpedConnection(displayName),
      monitors(*connection, pump),
      struts(*connection, pump, [this] { return time.value_or(StrutTracker::Clock::now()); }),
      displays(*connection, monitors),
      screens(*connection, monitors, struts) {}

void XDisplayAdapters::catchUp() {
    awaitServer();
    pump.processPending();
}

std::vector<Rect> XDisplayAdapters::frames() {
    std::vector<Rect> result;
    for (const Screen& screen : screens.screens()) {
        result.push_back(screen.frame);
    }
    return result;
}

std::vector<Rect> XDisplayAdapters::visibleFrames() {
    std::vector<Rect> result;
    for (const Screen& screen : screens.screens()) {
        result.push_back(screen.visibleFrame);
    }
    return result;
}

std::vector<std::string> XDisplayAdapters::names() {
    std::vector<std::string> result;
    for (const Screen& screen : screens.screens()) {
        result.push_back(screen.localizedName);
    }
    return result;
}

test::TestWindowOptions dockOptions(const test::PixelRect& root, const test::PixelRect& monitor,
                                    PanelEdge edge, int depth) {
    const int right = monitor.x + monitor.width;
    const int bottom = monitor.y + monitor.height;
    const auto word = [](int value) { return static_cast<std::uint32_t>(value); };
    test::TestWindowOptions options;
    options.title = "Panel";
    options.type = "_NET_WM_WINDOW_TYPE_DOCK";
    options.geometry = monitor;
    test::Strut strut;
    switch (edge) {
    case PanelEdge::left:
        options.geometry.width = depth;
        strut.left = word(monitor.x + depth);
        strut.leftStart = word(monitor.y);
        strut.leftEnd = word(bottom - 1);
        break;
    case PanelEdge::right:
        options.geometry.x = right - depth;
        options.geometry.width = depth;
        strut.right = word(root.width - right + depth);
        strut.rightStart = word(monitor.y);
        strut.rightEnd = word(bottom - 1);
        break;
    case PanelEdge::top:
        options.geometry.height = depth;
        strut.top = word(monitor.y + depth);
        strut.topStart = word(monitor.x);
        strut.topEnd = word(right - 1);
        break;
    case PanelEdge::bottom:
        options.geometry.y = bottom - depth;
        options.geometry.height = depth;
        strut.bottom = word(root.height - bottom + depth);
        strut.bottomStart = word(monitor.x);
        strut.bottomEnd = word(right - 1);
        break;
    }
    options.strut = strut;
    return options;
}

std::string describe(const std::vector<Rect>& rects) {
    std::ostringstream text;
    for (const Rect& rect : rects) {
        text << " (" << rect.x << ", " << rect.y << ", " << rect.width << ", " << rect.height << ")";
    }
    return text.str();
}

std::vector<std::uint32_t> strutWords(const test::Strut& strut) {
    return {strut.left,      strut.right,   strut.top,         strut.bottom,
            strut.leftStart, strut.leftEnd, strut.rightStart,  strut.rightEnd,
            strut.topStart,  strut.topEnd,  strut.bottomStart, strut.bottomEnd};
}

} // namespace tarvex
