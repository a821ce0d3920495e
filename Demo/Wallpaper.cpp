#include "Demo/Wallpaper.h"

#include <cmath>
#include <cstdint>

namespace tarvex::demo {

namespace {

constexpr std::uint32_t topColor = 0x2B3A55;
constexpr std::uint32_t bottomColor = 0x6B8299;

std::uint32_t mixChannel(std::uint32_t from, std::uint32_t to, double fraction, int shift) {
    const double first = from >> shift & 0xFF;
    const double last = to >> shift & 0xFF;
    return static_cast<std::uint32_t>(std::lround(first + (last - first) * fraction)) << shift;
}

std::uint32_t mix(double fraction) {
    return mixChannel(topColor, bottomColor, fraction, 16) | mixChannel(topColor, bottomColor, fraction, 8) |
           mixChannel(topColor, bottomColor, fraction, 0);
}

} // namespace

void setWallpaper(test::XClient& client) {
    xcb_connection_t* connection = client.connection();
    const xcb_screen_t& screen = client.screen();
    const xcb_pixmap_t pixmap = xcb_generate_id(connection);
    xcb_create_pixmap(connection, screen.root_depth, pixmap, screen.root, screen.width_in_pixels,
                      screen.height_in_pixels);
    const xcb_gcontext_t context = xcb_generate_id(connection);
    xcb_create_gc(connection, context, pixmap, 0, nullptr);
    for (std::uint16_t y = 0; y < screen.height_in_pixels; ++y) {
        const std::uint32_t color = mix(static_cast<double>(y) / screen.height_in_pixels);
        xcb_change_gc(connection, context, XCB_GC_FOREGROUND, &color);
        const xcb_rectangle_t row{0, static_cast<std::int16_t>(y), screen.width_in_pixels, 1};
        xcb_poly_fill_rectangle(connection, pixmap, context, 1, &row);
    }
    xcb_free_gc(connection, context);
    xcb_change_window_attributes(connection, screen.root, XCB_CW_BACK_PIXMAP, &pixmap);
    xcb_clear_area(connection, 0, screen.root, 0, 0, 0, 0);
    // Where compositors look for the wallpaper. The pixmap must outlive this connection for them.
    client.setWords(screen.root, "_XROOTPMAP_ID", "PIXMAP", {pixmap});
    client.setWords(screen.root, "ESETROOT_PMAP_ID", "PIXMAP", {pixmap});
    xcb_set_close_down_mode(connection, XCB_CLOSE_DOWN_RETAIN_PERMANENT);
    client.sync();
}

} // namespace tarvex::demo
