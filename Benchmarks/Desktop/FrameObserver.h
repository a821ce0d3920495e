#pragma once

#include "Benchmarks/Desktop/ScreenProbe.h"
#include "Tests/Support/X11/XClient.h"

#include <optional>
#include <string>

namespace tarvex::benchmark {

/// Notices when a managed window, decorations included, arrives where it is expected. It listens and sends
/// nothing, so that it costs the window manager nothing.
class FrameObserver {
public:
    /// @param window the client's window, inside a frame window of the window manager's
    FrameObserver(const std::string& displayName, xcb_window_t window);

    /// Forgets what it saw and waits for the frame window to take that frame, with a client of that size.
    void expect(const test::PixelRect& frame, int clientWidth, int clientHeight);

    /// When the last change was noticed that made the window stand as expected. Throws std::runtime_error
    /// when it does not come to stand so.
    [[nodiscard]] Instant waitForArrival();

    /// Handles what has come in since; whether the window stands as expected, and from when.
    [[nodiscard]] std::optional<Instant> arrival();

private:
    void handle(const xcb_configure_notify_event_t& event);

    test::XClient client_;
    xcb_window_t window_;
    xcb_window_t frameWindow_;
    test::PixelRect frame_;
    test::PixelRect inside_;
    test::PixelRect expectedFrame_;
    test::PixelRect expectedInside_;
    std::optional<Instant> arrival_;
};

} // namespace tarvex::benchmark
