#include "Platform/Linux/X11/UnmanagedWindow.h"

#include "Platform/Linux/X11/OverlayParking.h"

#include <algorithm>

namespace tarvex {

UnmanagedWindow::UnmanagedWindow(XConnection& connection, const OverlayVisual& visual,
                                 const UnmanagedWindowAttributes& attributes)
    : connection_(&connection),
      style_(attributes.style),
      window_(xcb_generate_id(connection.get())),
      context_(xcb_generate_id(connection.get())) {
    xcb_create_window_value_list_t values{};
    values.background_pixel = 0;
    // Without a background the desktop stays on the screen until the picture is drawn over it: no flash.
    values.background_pixmap = XCB_BACK_PIXMAP_NONE;
    values.border_pixel = 0;
    values.override_redirect = 1;
    values.event_mask = attributes.events;
    values.colormap = visual.colormap();
    const PixelRect& frame = attributes.frame;
    const std::uint32_t background = style_ == OverlayStyle::blended ? XCB_CW_BACK_PIXEL : XCB_CW_BACK_PIXMAP;
    connection.discard(xcb_create_window_aux_checked(
        connection.get(), visual.depth(), window_, connection.root(), static_cast<std::int16_t>(frame.x),
        static_cast<std::int16_t>(frame.y), static_cast<std::uint16_t>(std::max(frame.width, 1)),
        static_cast<std::uint16_t>(std::max(frame.height, 1)), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual.id(),
        background | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
        &values));
    xcb_create_gc_value_list_t context{};
    context.graphics_exposures = 0;
    connection.discard(
        xcb_create_gc_aux_checked(connection.get(), context_, window_, XCB_GC_GRAPHICS_EXPOSURES, &context));
    setOverlayProperties(connection, window_, attributes.title);
}

UnmanagedWindow::~UnmanagedWindow() {
    connection_->discard(xcb_free_gc_checked(connection_->get(), context_));
    connection_->discard(xcb_destroy_window_checked(connection_->get(), window_));
}

void UnmanagedWindow::map() {
    connection_->discard(xcb_map_window_checked(connection_->get(), window_));
}

} // namespace tarvex
