#pragma once

#include "Platform/Linux/X11/DesktopLayout.h"
#include "Platform/Linux/X11/OverlayVisual.h"
#include "Platform/Linux/X11/PixelFormat.h"
#include "Platform/Linux/X11/UnmanagedWindow.h"
#include "Platform/Linux/X11/XConnection.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tarvex {

/// Pixels of a picture in memory, 0xAARRGGBB premultiplied, row by row without gaps.
struct PictureView {
    const std::uint32_t* pixels = nullptr;
    int width = 0;
};

/// A native window that takes input and that no window manager touches, with pixels that the program paints.
/// Its requests wait for nothing and are not flushed.
class ViewSurface {
public:
    /// A window that is not shown yet. All must outlive it.
    /// @param frame on the root window
    /// @param format that of the visual
    ViewSurface(XConnection& connection, const OverlayVisual& visual, const PixelFormat& format,
                OverlayStyle style, const PixelRect& frame);

    ViewSurface(const ViewSurface&) = delete;
    ViewSurface& operator=(const ViewSurface&) = delete;
    ViewSurface(ViewSurface&&) = delete;
    ViewSurface& operator=(ViewSurface&&) = delete;
    ~ViewSurface();

    [[nodiscard]] xcb_window_t window() const { return window_.id(); }

    [[nodiscard]] OverlayStyle style() const { return window_.style(); }

    /// Shows it above all other windows.
    void show();

    /// Takes it off the screen for good; it keeps the keyboard.
    void park();

    /// Puts the rectangles of the picture, which covers the window, on the screen.
    void put(const PictureView& picture, std::span<const PixelRect> rects);

    /// Whether the server is still busy with the last picture. Does not wait; new answers count once the
    /// connection has been read.
    [[nodiscard]] bool isBusy();

    /// Takes note of lost pixels, unless a picture of the whole has been drawn since.
    void noteExposure(const xcb_expose_event_t& event, std::uint32_t sequence);

    /// Puts the lost pixels back, if there are any.
    void repairExposure(const PictureView& picture);

private:
    /// The sequence number of its first request.
    std::uint32_t putRect(const PictureView& picture, const PixelRect& rect);
    void forgetAnswer();

    XConnection* connection_;
    const PixelFormat* format_;
    UnmanagedWindow window_;
    std::size_t maxImageBytes_;
    std::vector<std::uint8_t> buffer_;
    PixelRect area_;
    /// The first request of the last drawing that covered all; none before the first.
    std::optional<std::uint32_t> wholeDrawing_;
    std::vector<PixelRect> exposed_;
    /// The answer to it comes when the server has the picture.
    std::optional<xcb_get_input_focus_cookie_t> pending_;
};

} // namespace tarvex
