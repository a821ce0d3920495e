#include "Platform/Linux/X11/ViewSurface.h"

#include "Platform/Linux/X11/OverlayParking.h"

#include <xcb/xcbext.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace tarvex {

namespace {

constexpr std::string_view title = "Tarvex Zones Editor";
/// Keeps the copy of a large picture's pixels small.
constexpr std::size_t largestPortion = std::size_t{1} << 20U;
/// Of a request, before its pixels.
constexpr std::size_t headerBytes = 64;
/// More pieces than this are put back as one rectangle.
constexpr std::size_t maxExposedRects = 64;

constexpr std::uint32_t windowEvents = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_BUTTON_PRESS |
                                       XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_POINTER_MOTION |
                                       XCB_EVENT_MASK_ENTER_WINDOW | XCB_EVENT_MASK_LEAVE_WINDOW |
                                       XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_FOCUS_CHANGE;

} // namespace

ViewSurface::ViewSurface(XConnection& connection, const OverlayVisual& visual, const PixelFormat& format,
                         OverlayStyle style, const PixelRect& frame)
    : connection_(&connection),
      format_(&format),
      window_(connection, visual, {.style = style, .frame = frame, .events = windowEvents, .title = title}),
      maxImageBytes_(std::min<std::size_t>(
          std::size_t{xcb_get_maximum_request_length(connection.get())} * 4 - headerBytes, largestPortion)),
      area_{0, 0, frame.width, frame.height} {}

ViewSurface::~ViewSurface() {
    forgetAnswer();
}

void ViewSurface::show() {
    window_.map();
    raiseToTop(*connection_, window_.id());
}

void ViewSurface::park() {
    const std::array<std::uint32_t, 4> values{
        static_cast<std::uint32_t>(overlayParking.x), static_cast<std::uint32_t>(overlayParking.y),
        static_cast<std::uint32_t>(overlayParking.width), static_cast<std::uint32_t>(overlayParking.height)};
    connection_->discard(xcb_configure_window_checked(connection_->get(), window_.id(),
                                                      XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y |
                                                          XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                                                      values.data()));
}

void ViewSurface::put(const PictureView& picture, std::span<const PixelRect> rects) {
    if (rects.empty()) {
        return;
    }
    for (const PixelRect& rect : rects) {
        const std::uint32_t sequence = putRect(picture, rect);
        if (rect == area_) {
            wholeDrawing_ = sequence;
        }
    }
    forgetAnswer();
    pending_ = xcb_get_input_focus(connection_->get());
}

std::uint32_t ViewSurface::putRect(const PictureView& picture, const PixelRect& rect) {
    std::uint32_t first = 0;
    const std::size_t rowBytes = format_->bytesPerRow(rect.width);
    const int rows = std::max(1, static_cast<int>(maxImageBytes_ / std::max<std::size_t>(rowBytes, 1)));
    for (int y = rect.y; y < rect.bottom(); y += rows) {
        const int count = std::min(rows, rect.bottom() - y);
        buffer_.clear();
        for (int row = y; row < y + count; ++row) {
            const std::uint32_t* start =
                picture.pixels + static_cast<std::size_t>(row) * static_cast<std::size_t>(picture.width) +
                rect.x;
            format_->appendRow({start, static_cast<std::size_t>(rect.width)}, buffer_);
        }
        const auto cookie = xcb_put_image_checked(
            connection_->get(), XCB_IMAGE_FORMAT_Z_PIXMAP, window_.id(), window_.context(),
            static_cast<std::uint16_t>(rect.width), static_cast<std::uint16_t>(count),
            static_cast<std::int16_t>(rect.x), static_cast<std::int16_t>(y), 0, format_->depth(),
            static_cast<std::uint32_t>(buffer_.size()), buffer_.data());
        first = y == rect.y ? cookie.sequence : first;
        connection_->discard(cookie);
    }
    return first;
}

bool ViewSurface::isBusy() {
    if (!pending_) {
        return false;
    }
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    const bool isAnswered = xcb_poll_for_reply(connection_->get(), pending_->sequence, &reply, &error) != 0;
    const XcbOwned<void> ownedReply(reply);
    const XcbOwned<xcb_generic_error_t> ownedError(error);
    if (isAnswered || connection_->isBroken()) {
        pending_.reset();
    }
    return pending_.has_value();
}

void ViewSurface::forgetAnswer() {
    if (pending_) {
        xcb_discard_reply(connection_->get(), pending_->sequence);
        pending_.reset();
    }
}

void ViewSurface::noteExposure(const xcb_expose_event_t& event, std::uint32_t sequence) {
    // The first picture will cover everything. Sequence numbers wrap.
    if (!wholeDrawing_ || static_cast<std::int32_t>(sequence - *wholeDrawing_) < 0) {
        return;
    }
    exposed_.push_back({event.x, event.y, event.width, event.height});
    if (exposed_.size() > maxExposedRects) {
        PixelRect whole;
        for (const PixelRect& rect : exposed_) {
            whole = boundsOf(whole, rect);
        }
        exposed_.assign(1, whole);
    }
}

void ViewSurface::repairExposure(const PictureView& picture) {
    const std::vector<PixelRect> rects = std::exchange(exposed_, {});
    put(picture, rects);
}

} // namespace tarvex
