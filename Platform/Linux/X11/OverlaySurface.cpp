#include "Platform/Linux/X11/OverlaySurface.h"

#include "Platform/Linux/X11/OverlayParking.h"
#include "Platform/Linux/X11/SceneDifference.h"

#include <xcb/shape.h>

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

namespace tarvex {

namespace {

/// Keeps every request below the size that any server takes.
constexpr std::size_t maxRectanglesPerRequest = 8000;

xcb_rectangle_t rectangleOf(const PixelRect& rect) {
    return {static_cast<std::int16_t>(rect.x), static_cast<std::int16_t>(rect.y),
            static_cast<std::uint16_t>(rect.width), static_cast<std::uint16_t>(rect.height)};
}

/// Calls the action with portions of the rectangles that fit a request; with an empty one if there are none.
template <typename Action>
void inPortions(std::span<const xcb_rectangle_t> rectangles, Action action) {
    do {
        const std::size_t count = std::min(rectangles.size(), maxRectanglesPerRequest);
        action(static_cast<std::uint32_t>(count), rectangles.data());
        rectangles = rectangles.subspan(count);
    } while (!rectangles.empty());
}

} // namespace

OverlaySurface::OverlaySurface(XConnection& connection, const OverlayVisual& visual, OverlayStyle style)
    : connection_(&connection),
      visual_(&visual),
      window_(connection, visual,
              {.style = style,
               .frame = overlayParking,
               .events = XCB_EVENT_MASK_EXPOSURE,
               .title = overlayTitle}) {
    lowerToBottom(connection, window_.id());
    window_.map();
}

void OverlaySurface::setClickThrough(bool isClickThrough) {
    if (std::exchange(isClickThrough_, isClickThrough) == isClickThrough) {
        return;
    }
    connection_->discard(
        isClickThrough
            ? xcb_shape_rectangles_checked(connection_->get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT,
                                           XCB_CLIP_ORDERING_UNSORTED, window_.id(), 0, 0, 0, nullptr)
            : xcb_shape_mask_checked(connection_->get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, window_.id(),
                                     0, 0, XCB_PIXMAP_NONE));
}

void OverlaySurface::show(OverlayImage image, bool raise) {
    const bool keepsPixels = isShown_ && image.frame == image_.frame;
    const bool isResized =
        !isShown_ || image.frame.width != image_.frame.width || image.frame.height != image_.frame.height;
    const OverlayImage before = std::exchange(image_, std::move(image));
    const bool isSamePicture = keepsPixels && before.fills == image_.fills;
    if (style() == OverlayStyle::shaped && !isSamePicture) {
        setShape();
    }
    if (!isShown_ || before.frame != image_.frame) {
        place(image_.frame, raise);
    } else if (raise) {
        raiseToTop(*connection_, window_.id());
    }
    isShown_ = true;
    if (isSamePicture) {
        return;
    }
    exposed_ = keepsPixels ? exposed_ : PixelRect{};
    if (!keepsPixels && !isResized && style() == OverlayStyle::blended) {
        connection_->discard(xcb_clear_area_checked(connection_->get(), 0, window_.id(), 0, 0, 0, 0));
    }
    draw(keepsPixels ? changedPixels(before.fills, image_.fills, area())
                     : visiblePixels(image_.fills, area()));
}

void OverlaySurface::hide() {
    if (std::exchange(isShown_, false)) {
        // In this order, and not in one request: a compositing manager that is told of both at once, or of
        // the stacking first, leaves parts of the picture on other windows.
        place(overlayParking, false);
        lowerToBottom(*connection_, window_.id());
        exposed_ = {};
    }
}

void OverlaySurface::place(const PixelRect& frame, bool raise) {
    xcb_configure_window_value_list_t values{};
    values.x = frame.x;
    values.y = frame.y;
    values.width = static_cast<std::uint32_t>(std::max(frame.width, 1));
    values.height = static_cast<std::uint32_t>(std::max(frame.height, 1));
    values.stack_mode = XCB_STACK_MODE_ABOVE;
    const int stacking = raise ? XCB_CONFIG_WINDOW_STACK_MODE : 0;
    connection_->discard(xcb_configure_window_aux_checked(
        connection_->get(), window_.id(),
        static_cast<std::uint16_t>(XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                                   XCB_CONFIG_WINDOW_HEIGHT | stacking),
        &values));
}

void OverlaySurface::setShape() {
    std::vector<xcb_rectangle_t> rectangles;
    for (const PixelFill& tile : visiblePixels(image_.fills, area())) {
        rectangles.push_back(rectangleOf(tile.rect));
    }
    xcb_shape_op_t operation = XCB_SHAPE_SO_SET;
    inPortions(rectangles, [&](std::uint32_t count, const xcb_rectangle_t* portion) {
        connection_->discard(xcb_shape_rectangles_checked(
            connection_->get(), std::exchange(operation, XCB_SHAPE_SO_UNION), XCB_SHAPE_SK_BOUNDING,
            XCB_CLIP_ORDERING_UNSORTED, window_.id(), 0, 0, count, portion));
    });
}

void OverlaySurface::draw(const std::vector<PixelFill>& tiles) {
    for (auto first = tiles.begin(); first != tiles.end();) {
        const auto last = std::find_if(first, tiles.end(),
                                       [&](const PixelFill& tile) { return tile.color != first->color; });
        const std::uint32_t pixel = visual_->pixelOf(first->color);
        connection_->discard(
            xcb_change_gc_checked(connection_->get(), window_.context(), XCB_GC_FOREGROUND, &pixel));
        std::vector<xcb_rectangle_t> rectangles;
        std::transform(first, last, std::back_inserter(rectangles),
                       [](const PixelFill& tile) { return rectangleOf(tile.rect); });
        inPortions(rectangles, [this](std::uint32_t count, const xcb_rectangle_t* portion) {
            const auto cookie = xcb_poly_fill_rectangle_checked(connection_->get(), window_.id(),
                                                                window_.context(), count, portion);
            lastDrawing_ = cookie.sequence;
            connection_->discard(cookie);
        });
        first = last;
    }
}

void OverlaySurface::noteExposure(const xcb_expose_event_t& event, std::uint32_t sequence) {
    // What was lost before the server came to the last drawing has been drawn since. Sequence numbers wrap.
    if (!isShown_ || static_cast<std::int32_t>(sequence - lastDrawing_) < 0) {
        return;
    }
    exposed_ = boundsOf(exposed_, {event.x, event.y, event.width, event.height});
}

void OverlaySurface::repairExposure() {
    draw(visiblePixels(image_.fills, std::exchange(exposed_, {})));
}

} // namespace tarvex
