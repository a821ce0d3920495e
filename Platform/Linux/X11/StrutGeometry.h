#pragma once

#include "Platform/Linux/X11/DesktopLayout.h"

#include <vector>

namespace tarvex {

/// What a panel keeps free along one edge of the root window.
struct StrutEdge {
    /// How far it reaches inwards from that edge of the whole root, in pixels; 0 for nothing.
    int depth = 0;
    /// The first and the last pixel of the edge that it covers: y for the left and right edge, x for the
    /// others.
    int start = 0;
    int end = 0;

    bool operator==(const StrutEdge&) const = default;
};

/// A panel on the desktop: where its window is, and what it keeps free.
struct StrutPanel {
    PixelRect window;
    StrutEdge left;
    StrutEdge right;
    StrutEdge top;
    StrutEdge bottom;
    /// Whether the window manager itself gives it a strip of a monitor, as those do that do not list panels
    /// among the windows. Such panels stand behind one another, and their struts may be counted from the edge
    /// of the monitor, so that only the window tells what is taken.
    bool isLaidOut = false;

    bool operator==(const StrutPanel&) const = default;
};

/// What is left of each monitor beside the panels on it, in the order of the monitors. A panel acts on the
/// monitors that its window lies on; one whose window is hidden outside of all monitors acts wherever its
/// strut reaches; one that is laid out along the whole upper or lower edge of its monitor takes
/// what lies between that edge and its inner side, whatever its strut says. A strut that would leave nothing
/// of a monitor does not act there: since struts are measured from the edge of the root, one on an inner edge
/// runs across all monitors before it.
[[nodiscard]] std::vector<PixelRect> visibleAreas(const PixelRect& root,
                                                  const std::vector<PixelRect>& monitors,
                                                  const std::vector<StrutPanel>& panels);

} // namespace tarvex
