#pragma once

#include "Platform/Linux/X11/MonitorTracker.h"
#include "Platform/Linux/X11/StrutTracker.h"
#include "Platform/Linux/X11/XDisplayPlatform.h"
#include "Platform/Linux/X11/XScreenPlatform.h"
#include "Tests/Support/X11/TestWindow.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tarvex {

/// The display adapters on an X server.
class XDisplayAdapters {
public:
    explicit XDisplayAdapters(const std::string& displayName);

    /// Handles events until the condition holds; false when the patience ended first.
    bool waitUntil(const std::function<bool()>& condition);

    /// Handles the events of everything that other clients had finished before.
    void catchUp();

    /// How many requests the connection sends while the work is done.
    [[nodiscard]] unsigned requestsDuring(const std::function<void()>& work);

    [[nodiscard]] std::vector<Rect> frames();
    [[nodiscard]] std::vector<Rect> visibleFrames();
    [[nodiscard]] std::vector<std::string> names();

    std::unique_ptr<XConnection> connection;
    XEventPump pump;
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
