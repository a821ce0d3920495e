#include "Platform/Linux/X11/DesktopSnapshot.h"

#include <algorithm>
#include <span>

namespace tarvex {

namespace {

/// Light enough to be told from black when a backdrop lies over it.
constexpr std::uint32_t plainColor = 0xFF48484C;
/// Keeps what is waiting in the connection small.
constexpr std::size_t maxReplyBytes = std::size_t{1} << 22U;

struct Portion {
    PixelRect rect;
    xcb_get_image_cookie_t cookie;
};

/// What stands in for the screen where it cannot be read.
DesktopSnapshot plainDesktop(const PixelRect& frame) {
    DesktopSnapshot snapshot;
    snapshot.frame = frame;
    snapshot.pixels.assign(static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(frame.height),
                           plainColor);
    return snapshot;
}

} // namespace

DesktopSnapshot takeDesktopSnapshot(XConnection& connection, const PixelRect& frame,
                                    const PixelFormat& rootFormat) {
    DesktopSnapshot snapshot = plainDesktop(frame);
    const auto root =
        connection.take(xcb_get_geometry_reply, xcb_get_geometry(connection.get(), connection.root()));
    if (!root) {
        return snapshot;
    }
    // The server refuses a request that reaches out of the window.
    const int left = std::max(frame.x, 0);
    const int top = std::max(frame.y, 0);
    const int right = std::min<int>(frame.right(), root->width);
    const int bottom = std::min<int>(frame.bottom(), root->height);
    if (left >= right || top >= bottom) {
        return snapshot;
    }
    const std::size_t rowBytes = rootFormat.bytesPerRow(right - left);
    const int rows = std::max(1, static_cast<int>(maxReplyBytes / rowBytes));
    std::vector<Portion> portions;
    for (int y = top; y < bottom; y += rows) {
        const PixelRect rect{left, y, right - left, std::min(rows, bottom - y)};
        portions.push_back(
            {rect, xcb_get_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, connection.root(),
                                 static_cast<std::int16_t>(rect.x), static_cast<std::int16_t>(rect.y),
                                 static_cast<std::uint16_t>(rect.width),
                                 static_cast<std::uint16_t>(rect.height), ~0U)});
    }
    for (const auto& [rect, cookie] : portions) {
        const auto image = connection.take(xcb_get_image_reply, cookie);
        const auto length = image ? static_cast<std::size_t>(xcb_get_image_data_length(image.get())) : 0;
        if (length < rowBytes * static_cast<std::size_t>(rect.height)) {
            continue;
        }
        const std::uint8_t* data = xcb_get_image_data(image.get());
        for (int row = 0; row < rect.height; ++row) {
            const auto start =
                static_cast<std::size_t>(rect.y + row - frame.y) * static_cast<std::size_t>(frame.width) +
                static_cast<std::size_t>(rect.x - frame.x);
            rootFormat.readRow(
                data + static_cast<std::size_t>(row) * rowBytes,
                std::span(snapshot.pixels).subspan(start, static_cast<std::size_t>(rect.width)));
        }
    }
    return snapshot;
}

} // namespace tarvex
