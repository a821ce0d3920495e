// The least that any program must do to put a see-through window on the screen when a key is pressed. It
// waits for the raw press and shows a window that it made beforehand. A command prepares for one press: the
// way (see Way), then x, y, width and height in root pixels. A way of zero takes the window away.

#include "Benchmarks/Floors/FloorConnection.h"

#include <xcb/shape.h>
#include <xcb/xinput.h>

#include <cstdio>
#include <exception>
#include <stdexcept>

namespace tarvex::benchmark {

namespace {

enum class Way : std::uint32_t {
    none = 0,
    /// Mapped; the server fills it with its background.
    mapped = 1,
    /// Mapped, and filled by a request of its own.
    filled = 2,
    /// Mapped and filled beforehand, cut down to one pixel; the cut is taken away.
    unshaped = 3,
};

// Half of a blue, with its alpha multiplied in.
constexpr std::uint32_t pixel = 0x80103060;

class OverlayFloor {
public:
    OverlayFloor() : visual_(findArgbVisual()), colormap_(xcb_generate_id(connection_.get())) {
        xcb_create_colormap(connection_.get(), XCB_COLORMAP_ALLOC_NONE, colormap_, connection_.screen().root,
                            visual_);
    }

    void run() {
        connection_.run([this](const FloorCommand& command) { prepare(command); },
                        [this](std::uint16_t eventType) { handle(eventType); });
    }

private:
    [[nodiscard]] xcb_visualid_t findArgbVisual() const {
        constexpr int argbDepth = 32;
        auto depth = xcb_screen_allowed_depths_iterator(&connection_.screen());
        for (; depth.rem != 0; xcb_depth_next(&depth)) {
            if (depth.data->depth == argbDepth && depth.data->visuals_len > 0) {
                return xcb_depth_visuals(depth.data)->visual_id;
            }
        }
        throw std::runtime_error("the server has no visual with alpha");
    }

    void prepare(const FloorCommand& command) {
        if (window_ != XCB_NONE) {
            xcb_destroy_window(connection_.get(), window_);
            window_ = XCB_NONE;
        }
        way_ = static_cast<Way>(command[0]);
        area_ = {static_cast<std::int16_t>(command[1]), static_cast<std::int16_t>(command[2]),
                 static_cast<std::uint16_t>(command[3]), static_cast<std::uint16_t>(command[4])};
        if (way_ != Way::none) {
            createWindow();
        }
        connection_.watchRawInput(way_ != Way::none ? XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS : 0);
    }

    void createWindow() {
        window_ = xcb_generate_id(connection_.get());
        xcb_create_window_value_list_t values{};
        values.background_pixel = pixel;
        values.border_pixel = 0;
        values.override_redirect = 1;
        values.colormap = colormap_;
        std::uint32_t mask = XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_COLORMAP;
        if (way_ != Way::filled) {
            mask |= XCB_CW_BACK_PIXEL;
        }
        xcb_create_window_aux(connection_.get(), 32, window_, connection_.screen().root, area_.x, area_.y,
                              area_.width, area_.height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual_, mask,
                              &values);
        xcb_shape_rectangles(connection_.get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT,
                             XCB_CLIP_ORDERING_UNSORTED, window_, 0, 0, 0, nullptr);
        if (way_ == Way::filled) {
            context_ = xcb_generate_id(connection_.get());
            xcb_create_gc(connection_.get(), context_, window_, XCB_GC_FOREGROUND, &pixel);
        }
        if (way_ == Way::unshaped) {
            const xcb_rectangle_t corner{0, 0, 1, 1};
            xcb_shape_rectangles(connection_.get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING,
                                 XCB_CLIP_ORDERING_UNSORTED, window_, 0, 0, 1, &corner);
            xcb_map_window(connection_.get(), window_);
        }
    }

    void handle(std::uint16_t eventType) {
        if (eventType != XCB_INPUT_RAW_KEY_PRESS || window_ == XCB_NONE) {
            return;
        }
        if (way_ == Way::unshaped) {
            xcb_shape_mask(connection_.get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, window_, 0, 0,
                           XCB_PIXMAP_NONE);
        } else {
            xcb_map_window(connection_.get(), window_);
        }
        if (way_ == Way::filled) {
            const xcb_rectangle_t whole{0, 0, area_.width, area_.height};
            xcb_poly_fill_rectangle(connection_.get(), window_, context_, 1, &whole);
        }
        xcb_flush(connection_.get());
    }

    FloorConnection connection_;
    xcb_visualid_t visual_;
    xcb_colormap_t colormap_;
    Way way_ = Way::none;
    xcb_rectangle_t area_{};
    xcb_window_t window_ = XCB_NONE;
    xcb_gcontext_t context_ = XCB_NONE;
};

} // namespace

} // namespace tarvex::benchmark

int main() {
    try {
        tarvex::benchmark::OverlayFloor().run();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
