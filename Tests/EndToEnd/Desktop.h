#pragma once

#include "Tests/EndToEnd/Sessions.h"
#include "Tests/EndToEnd/Settings.h"
#include "Tests/Support/X11/Compositor.h"
#include "Tests/Support/X11/Keyboard.h"
#include "Tests/Support/X11/ManagedWindow.h"
#include "Tests/Support/X11/Monitors.h"
#include "Tests/Support/X11/Pointer.h"
#include "Tests/Support/X11/Screenshot.h"
#include "Tests/Support/X11/TarvexProgram.h"
#include "Tests/Support/X11/WindowManager.h"
#include "Tests/Support/X11/XClient.h"
#include "Tests/Support/X11/XServer.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarvex::test {

/// How a test's desktop differs from one bare monitor.
struct DesktopOptions {
    int width = 1280;
    int height = 1024;
    /// None leaves the server's one monitor.
    std::vector<MonitorLayout> monitors;
    std::optional<MonitorIdentity> identity;
    /// None leaves the settings file out.
    std::optional<Settings> settings;
    bool startsWindowManager = true;
    bool startsTarvex = true;
};

/// A whole session of its own: an X server, a window manager, perhaps a compositor, the program under test,
/// and hands on pointer and keyboard.
class Desktop {
public:
    Desktop(const SessionKind& kind, const DesktopOptions& options);

    XServer server;
    XClient client;
    Pointer pointer;
    Keyboard keyboard;
    Monitors monitors;
    std::unique_ptr<WindowManager> windowManager;
    std::unique_ptr<Compositor> compositor;
    TarvexProgram tarvex;

    /// The whole screen; with one monitor and no panels also the usable area.
    [[nodiscard]] PixelRect screenArea() const;

    /// Waits until the log file holds that many lines with the text.
    void awaitLog(const std::string& text, int count);

    /// Returns when tarvex has dealt with all input up to now, and the window manager with all that came of
    /// it. No keys may be down. Presses button 1 on the bare desktop.
    void settle();

    /// Waits until a person sees the window exactly there, then makes sure that it stays.
    void expectFrame(const ManagedWindow& window, const PixelRect& expected);

    /// Makes sure that the window is, and stays, exactly there after all that went before.
    void expectFrameUnchanged(const ManagedWindow& window, const PixelRect& expected);

    /// Waits until a window stands in the middle of what panels leave of the only monitor: one that is shown
    /// for the first time comes there when its borders are known.
    void awaitCentered(xcb_window_t window);

    /// The screen with everything painted that happened before this call.
    [[nodiscard]] Screenshot steadyScreen();

    /// Where settle() presses; must be bare desktop.
    PixelPoint idlePoint{3, 500};

    /// The physical button that acts as the first.
    std::uint8_t primaryButton = 1;

private:
    void startTarvex();
};

} // namespace tarvex::test
