#pragma once

#include "Tests/Support/Simulated/Journal.h"
#include "Tests/Support/Simulated/SimulatedAccessibility.h"
#include "Tests/Support/Simulated/SimulatedConfigFiles.h"
#include "Tests/Support/Simulated/SimulatedDisplays.h"
#include "Tests/Support/Simulated/SimulatedInput.h"
#include "Tests/Support/Simulated/SimulatedLogs.h"
#include "Tests/Support/Simulated/SimulatedMainLoop.h"
#include "Tests/Support/Simulated/SimulatedWindows.h"

#include <cstdint>
#include <optional>
#include <string>

namespace tarvex {

/// A whole desktop behind the ports: screens, windows, a mouse, a keyboard, a clock, a disk. The verbs are
/// what a person does with it; each lets the main loop run until it has nothing left to do. Points and frames
/// are in screen space (points, origin at the bottom-left of the primary display, y up).
///
/// Like a window manager, it moves a window that is held by its title bar along with the pointer, and raises
/// the window that is pressed.
class SimulatedDesktop {
public:
    /// The height of a title bar, which is the top of a window's frame.
    static constexpr double titleBarHeight = 22;

    SimulatedDesktop();

    void plugScreen(SimulatedDisplay display);
    void unplugScreen(std::uint32_t number);

    /// Opens a window in front of the others and returns its number.
    int openWindow(const Rect& frame, SimulatedWindowKind kind = SimulatedWindowKind::application);
    void closeWindow(int window);

    /// The frame of an open window.
    [[nodiscard]] Rect windowFrame(int window);
    void moveWindow(int window, const Rect& frame);

    /// A point on the window's title bar.
    [[nodiscard]] Point titleBarOf(int window);

    void pressButton();
    void releaseButton();
    void moveTo(Point point);
    /// The modifiers held from now on, as event_flag bits, taken up all at once.
    void holdModifiers(std::uint64_t flags);

    void releaseModifiers() { holdModifiers(0); }

    /// An event that no honest mouse or keyboard sends.
    void send(EventType type);

    /// Moves the clock on.
    void wait(double seconds) { mainLoop_.advance(seconds); }

    /// Presses the button on the title bar of the window.
    void grabWindow(int window);

    Journal& journal() { return journal_; }

    SimulatedMainLoop& mainLoop() { return mainLoop_; }

    SimulatedInput& input() { return input_; }

    SimulatedDisplays& displays() { return displays_; }

    SimulatedAccessibility& accessibility() { return accessibility_; }

    SimulatedWindows& windows() { return windows_; }

    SimulatedKeyWindow& keyWindow() { return keyWindow_; }

    SimulatedConfigFiles& configFiles() { return configFiles_; }

    SimulatedLog& log() { return log_; }

    SimulatedFileLog& fileLog() { return fileLog_; }

private:
    [[nodiscard]] Rect flipped(const Rect& frame) const;

    [[nodiscard]] Point flipped(Point point) const { return {point.x, displays_.desktopTop() - point.y}; }

    Journal journal_;
    SimulatedMainLoop mainLoop_;
    SimulatedInput input_;
    SimulatedDisplays displays_;
    SimulatedAccessibility accessibility_;
    SimulatedWindows windows_;
    SimulatedKeyWindow keyWindow_;
    SimulatedConfigFiles configFiles_;
    SimulatedLog log_;
    SimulatedFileLog fileLog_;
    int heldWindow_ = 0;
};

} // namespace tarvex
