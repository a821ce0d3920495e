#pragma once

#include "Platform/Linux/X11/MonitorTracker.h"
#include "Platform/Linux/X11/XClientResources.h"
#include "Platform/Linux/X11/XWindowPlatform.h"
#include "Tests/Contract/X11/PumpedConnection.h"
#include "Tests/Support/Simulated/SimulatedMainLoop.h"
#include "Tests/Support/X11/ChildProcess.h"
#include "Tests/Support/X11/Compositor.h"
#include "Tests/Support/X11/Screenshot.h"
#include "Tests/Support/X11/TestWindow.h"
#include "Tests/Support/X11/WindowManager.h"
#include "Tests/Support/X11/XServer.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace tarvex::contract {

/// The overlay adapter on an X server.
class XOverlayAdapters : public PumpedConnection {
public:
    explicit XOverlayAdapters(const std::string& displayName);

    /// Ends the turn, and returns when the server has done all that was asked and the events of that have
    /// been handled.
    void catchUp();

    /// Whether a window belongs to the adapter's connection.
    [[nodiscard]] bool owns(xcb_window_t window) const;

    /// Its time stands still unless the test advances it.
    SimulatedMainLoop mainLoop;
    MonitorTracker monitors;
    XWindowPlatform windows;
};

/// Who composes the screen from the windows' pictures.
enum class Composition : std::uint8_t { none, picom, xfwm4 };

/// Fit for the name of a test.
inline constexpr auto compositionName = [](const auto& info) {
    switch (info.param) {
    case Composition::picom:
        return "UnderPicom";
    case Composition::xfwm4:
        return "UnderXfwm4";
    case Composition::none:
        break;
    }
    return "WithoutCompositor";
};

/// Whether the window, which must be off the screen, is drawn to a place of its own.
[[nodiscard]] bool isRedirected(test::XClient& client, xcb_window_t window);

/// xfwm4 with its own compositor. Returns when that has taken the windows over.
[[nodiscard]] std::unique_ptr<test::ChildProcess> startComposingXfwm4(const test::XServer& server,
                                                                      test::XClient& client);

/// A private X server with a window manager, over whose screen, but for the last column, lies another
/// program's window of one dark colour, and the overlay adapter.
class OverlayDesktop {
public:
    static constexpr int width = 1280;
    static constexpr int height = 1024;
    static constexpr std::uint32_t backgroundColor = 0x203040;

    explicit OverlayDesktop(Composition composition);

    /// Returns when the compositor has taken the windows over and the adapter knows.
    void startCompositor();
    void stopCompositor();

    /// Returns when all that was done before is on the screen.
    void settle();

    [[nodiscard]] test::Screenshot screenshot() { return test::Screenshot(client); }

    /// The colour on the screen at a pixel of the root.
    [[nodiscard]] std::uint32_t pixel(test::PixelPoint point);

    /// The overlay's native windows: the adapter's children of the root, lowest first.
    [[nodiscard]] std::vector<xcb_window_t> nativeWindows();

    test::XServer server;
    test::XClient client;

private:
    /// Windows that are older than it are not safe with xfwm4, so whoever manages the screen comes first.
    std::unique_ptr<test::WindowManager> openbox_;
    std::unique_ptr<test::ChildProcess> xfwm4_;
    std::optional<test::Compositor> compositor_;
    test::TestWindow offScreen_;

public:
    test::TestWindow background;
    XOverlayAdapters adapters;

private:
    /// A spot in the top right corner that changes its colour on demand: whoever composes the screen has
    /// composed all earlier changes when that one can be seen.
    test::TestWindow marker_;
    std::uint32_t markerColor_ = 0;
};

} // namespace tarvex::contract
