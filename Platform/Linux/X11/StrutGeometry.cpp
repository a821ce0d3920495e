#include "Platform/Linux/X11/StrutGeometry.h"

#include <algorithm>

namespace tarvex {

namespace {

struct Edges {
    int left;
    int right;
    int top;
    int bottom;

    [[nodiscard]] bool isEmpty() const { return left >= right || top >= bottom; }
};

Edges edgesOf(const PixelRect& rect) {
    return {rect.x, rect.right(), rect.y, rect.bottom()};
}

Edges intersection(const Edges& one, const Edges& other) {
    return {std::max(one.left, other.left), std::min(one.right, other.right), std::max(one.top, other.top),
            std::min(one.bottom, other.bottom)};
}

bool intersect(const Edges& one, const Edges& other) {
    return !intersection(one, other).isEmpty();
}

// Takes what lies beyond the strip, unless the strip is elsewhere or nothing lies beyond it.
void cut(Edges& visible, const Edges& monitor, const Edges& strip, int Edges::*edge, int inner) {
    Edges remaining = visible;
    remaining.*edge = inner;
    remaining = intersection(visible, remaining);
    if (intersect(strip, monitor) && !remaining.isEmpty()) {
        visible = remaining;
    }
}

void cutByPanel(Edges& visible, const Edges& monitor, const StrutPanel& panel, const Edges& root) {
    const auto& [window, left, right, top, bottom, isLaidOut] = panel;
    const int leftEnd = root.left + left.depth;
    const int rightEnd = root.right - right.depth;
    const int topEnd = root.top + top.depth;
    const int bottomEnd = root.bottom - bottom.depth;
    cut(visible, monitor, {root.left, leftEnd, left.start, left.end + 1}, &Edges::left, leftEnd);
    cut(visible, monitor, {rightEnd, root.right, right.start, right.end + 1}, &Edges::right, rightEnd);
    cut(visible, monitor, {top.start, top.end + 1, root.top, topEnd}, &Edges::top, topEnd);
    cut(visible, monitor, {bottom.start, bottom.end + 1, bottomEnd, root.bottom}, &Edges::bottom, bottomEnd);
}

bool isStripOf(const PixelRect& monitor, const StrutPanel& panel) {
    return panel.isLaidOut && panel.window.x == monitor.x && panel.window.right() == monitor.right() &&
           intersect(panel.window, monitor);
}

void cutByStrip(Edges& visible, const PixelRect& monitor, const PixelRect& strip) {
    const bool isUpper = strip.y - monitor.y <= monitor.bottom() - strip.bottom();
    cut(visible, edgesOf(monitor), edgesOf(strip), isUpper ? &Edges::top : &Edges::bottom,
        isUpper ? strip.bottom() : strip.y);
}

bool isOnAny(const PixelRect& window, const std::vector<PixelRect>& monitors) {
    return std::any_of(monitors.begin(), monitors.end(),
                       [&](const PixelRect& monitor) { return intersect(window, monitor); });
}

} // namespace

std::vector<PixelRect> visibleAreas(const PixelRect& root, const std::vector<PixelRect>& monitors,
                                    const std::vector<StrutPanel>& panels) {
    std::vector<PixelRect> areas;
    areas.reserve(monitors.size());
    for (const PixelRect& monitor : monitors) {
        const Edges whole = edgesOf(monitor);
        Edges visible = whole;
        for (const StrutPanel& panel : panels) {
            if (isStripOf(monitor, panel)) {
                cutByStrip(visible, monitor, panel.window);
            } else if (intersect(panel.window, monitor) || !isOnAny(panel.window, monitors)) {
                cutByPanel(visible, whole, panel, edgesOf(root));
            }
        }
        areas.push_back(
            {visible.left, visible.top, visible.right - visible.left, visible.bottom - visible.top});
    }
    return areas;
}

} // namespace tarvex
