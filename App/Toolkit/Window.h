#pragma once

#include "App/Toolkit/Scene.h"
#include "Core/Geometry.h"

#include <cstdint>
#include <memory>

namespace tarvex {

/// Bits of a window's collection behaviour (Apple, NSWindowCollectionBehavior).
namespace collection_behavior {
inline constexpr std::uint32_t canJoinAllSpaces = 1;
inline constexpr std::uint32_t fullScreenAuxiliary = 256;
} // namespace collection_behavior

/// What a window is, fixed when it is made. The numbers are those of AppKit's NSWindow.
struct WindowAttributes {
    /// Screen space: points, origin at the bottom-left of the primary display, y up.
    Rect contentRect;
    /// 0 is borderless.
    std::uint32_t styleMask = 0;
    /// 2 is buffered.
    std::uint32_t backing = 2;
    bool isDeferred = false;
    bool isOpaque = false;
    Color backgroundColor;
    /// 3 is floating: above other applications' normal windows.
    std::int32_t level = 3;
    std::uint32_t collectionBehavior = 0;
    bool hasShadow = false;
    /// Clicks and drags go to the windows below.
    bool ignoresMouseEvents = false;
    /// The pointer is followed also while no button is down.
    bool acceptsMouseMovedEvents = false;
    bool canBecomeKey = false;
    bool canBecomeMain = false;
    bool isReleasedWhenClosed = false;

    bool operator==(const WindowAttributes&) const = default;
};

/// Port: one native window. It is made hidden. Calls that belong to one turn of the main loop reach the
/// screen together at its end, so that a window never shows the picture that it had when it was last hidden.
/// Destroying it closes it. Nothing throws; a platform that cannot show it shows nothing.
class Window {
public:
    Window() = default;
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    Window(Window&&) = delete;
    Window& operator=(Window&&) = delete;
    virtual ~Window() = default;

    /// The frame in screen space.
    [[nodiscard]] virtual Rect frame() const = 0;

    /// Replaces the picture. An equal scene costs no drawing.
    virtual void setScene(Scene scene) = 0;

    /// Shows the window in front of the others of its level, without making it key.
    virtual void orderFront() = 0;

    /// Hides the window. Hiding a hidden window changes nothing.
    virtual void orderOut() = 0;
};

/// Port: makes native windows.
class WindowPlatform {
public:
    WindowPlatform() = default;
    WindowPlatform(const WindowPlatform&) = delete;
    WindowPlatform& operator=(const WindowPlatform&) = delete;
    WindowPlatform(WindowPlatform&&) = delete;
    WindowPlatform& operator=(WindowPlatform&&) = delete;
    virtual ~WindowPlatform() = default;

    /// A new hidden window; never null.
    [[nodiscard]] virtual std::unique_ptr<Window> makeWindow(const WindowAttributes& attributes) = 0;
};

} // namespace tarvex
