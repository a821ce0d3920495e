#pragma once

#include "Platform/Linux/X11/MonitorTracker.h"
#include "Platform/Linux/X11/StrutTracker.h"
#include "Platform/Linux/X11/XDisplayPlatform.h"
#include "Platform/Linux/X11/XScreenPlatform.h"
#include "Tests/Contract/X11/PumpedConnection.h"
#include "Tests/Support/X11/TestWindow.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarvex {

/// The display adapters on an X server.
class XDisplayAdapters : public contract::PumpedConnection {
public:
    explicit XDisplayAdapters(const std::string& displayName);

    /// Handles the events of everything that other clients had finished before.
    void catchUp();

    [[nodiscard]] std::vector<Rect> frames();
    [[nodiscard]] std::vector<Rect> visibleFrames();
    [[nodiscard]] std::vector<std::string> names();

    /// What the adapters take for the present; the real time while there is none.
    std::optional<StrutTracker::Clock::time_point> time;
    MonitorTracker monitors;
    StrutTracker struts;
    XDisplayPlatform displays;
    XScreenPlatform screens;
};

/// The edge of a monitor that a panel stands at.
enum class PanelEdge { left, right, top, bottom };

/// The panel's window and strut for a strip along the edge of a monitor, both in root pixels.
[[nodiscard]] test::TestWindowOptions dockOptions(const test::PixelRect& root, const test::PixelRect& monitor,
                                                  PanelEdge edge, int depth);

/// For the message of a test that fails.
[[nodiscard]] std::string describe(const std::vector<Rect>& rects);

/// A strut as the values of _NET_WM_STRUT_PARTIAL.
[[nodiscard]] std::vector<std::uint32_t> strutWords(const test::Strut& strut);

} // namespace tarvex
