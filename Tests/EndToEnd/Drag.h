#pragma once

#include "Tests/EndToEnd/Desktop.h"
#include "Tests/EndToEnd/Zones.h"

#include <cstdint>
#include <vector>

namespace tarvex::test {

/// A person's drag of a window by its title bar. It has begun when the constructor returns.
class Drag {
public:
    enum class Begin {
        /// The window follows the pointer.
        followed,
        /// The same, and tarvex saw the window before it moved. Needed where the window's first place counts:
        /// a
        /// test is quicker than any hand.
        observed,
        /// The window manager does not move such a window.
        unfollowed,
    };

    Drag(Desktop& desktop, ManagedWindow window, Begin begin = Begin::followed);
    Drag(const Drag&) = delete;
    Drag& operator=(const Drag&) = delete;
    Drag(Drag&&) = delete;
    Drag& operator=(Drag&&) = delete;
    ~Drag() = default;

    /// Presses or releases one key and waits until tarvex logged that its zones show, or that they do not.
    void pressToMatch(std::uint32_t keysym);
    void pressToNoMatch(std::uint32_t keysym);
    void releaseToMatch(std::uint32_t keysym);
    void releaseToNoMatch(std::uint32_t keysym);

    /// Moves the pointer there in steps.
    void moveTo(PixelPoint point) { desktop_->pointer.glideTo(point); }

    /// Releases the button.
    void drop();

    /// Releases the button, waits until the window is exactly there, lets go of the keys, and makes sure that
    /// it stays there.
    void dropAndExpect(const PixelRect& frame);

    /// Lets go of all keys that the drag pressed.
    void releaseKeys();

private:
    void awaitObserving();
    void awaitFollowing();
    void expectLogged(const std::string& line, std::uint32_t keysym, bool isPressed);

    Desktop* desktop_;
    ManagedWindow window_;
    std::vector<std::uint32_t> keys_;
};

/// One whole gesture: drags the window, presses Super, moves to the point, and releases the button; the
/// window must come to be exactly the frame and stay there.
void snapAndExpect(Desktop& desktop, const ManagedWindow& window, PixelPoint target, const PixelRect& frame);

/// The same into a zone of the whole screen.
/// @param margin of the settings, in points
void snapAndExpect(Desktop& desktop, const ManagedWindow& window, const ZoneSpan& zone, double margin = 8);

/// One whole gesture on a window that no window manager moves: presses the button there, then Super, goes on,
/// and releases. Tarvex must find no window to snap.
void dragAndExpectNoWindow(Desktop& desktop, PixelPoint start);

} // namespace tarvex::test
