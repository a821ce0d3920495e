#include "Tests/Support/X11/Compositor.h"

#include "Tests/Support/X11/Screenshot.h"

#include <array>
#include <exception>
#include <stdexcept>

namespace tarvex::test {
namespace {

constexpr const char* configuration = R"(backend = "xrender";
vsync = false;
shadow = false;
fading = false;
use-damage = true;
)";

Command makeCommand(const XServer& server) {
    Command command;
    command.environment = server.clientEnvironment("picom");
    const auto file = server.scratch().write("picom/picom.conf", configuration);
    command.arguments = {"picom", "--config", file.string()};
    return command;
}

} // namespace

Compositor::Compositor(const XServer& server) : client_{server.displayName()} {
    setDesktopPicture();
    process_ = std::make_unique<ChildProcess>(makeCommand(server));
    client_.waitUntil([this] { return (hasOwner() && hasPainted()) || !process_->isRunning(); },
                      "picom has painted");
    if (!process_->isRunning()) {
        throw std::runtime_error("picom did not start: " + process_->standardOutput() +
                                 process_->standardError());
    }
}

Compositor::~Compositor() {
    process_.reset();
    try {
        xcb_delete_property(client_.connection(), client_.root(), client_.atom("_XROOTPMAP_ID"));
        static_cast<void>(client_.waitFor([this] { return !hasOwner(); }));
    } catch (const std::exception&) {
        // The server is gone, and its selections with it.
        process_.reset();
    }
}

// A window that comes and goes in the last corner of the screen: pictures show it only after what came
// before.
void Compositor::barrier() {
    constexpr std::uint32_t color = 0xFE01FD;
    const xcb_window_t window = xcb_generate_id(client_.connection());
    const std::array<std::uint32_t, 2> values{color, 1};
    xcb_create_window(client_.connection(), XCB_COPY_FROM_PARENT, window, client_.root(),
                      static_cast<std::int16_t>(client_.screen().width_in_pixels - 1),
                      static_cast<std::int16_t>(client_.screen().height_in_pixels - 1), 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, client_.screen().root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values.data());
    xcb_map_window(client_.connection(), window);
    awaitCorner(true, color);
    xcb_destroy_window(client_.connection(), window);
    awaitCorner(false, color);
}

void Compositor::awaitCorner(bool isCovered, std::uint32_t color) {
    const PixelPoint corner{client_.screen().width_in_pixels - 1, client_.screen().height_in_pixels - 1};
    client_.waitUntil([&] { return (Screenshot(client_).pixel(corner) == color) == isCovered; },
                      "picom paints");
}

// A wallpaper that the server itself does not show: once it is on the screen, picom has painted it.
void Compositor::setDesktopPicture() {
    const xcb_pixmap_t picture = xcb_generate_id(client_.connection());
    xcb_create_pixmap(client_.connection(), client_.screen().root_depth, picture, client_.root(), 1, 1);
    const xcb_gcontext_t context = xcb_generate_id(client_.connection());
    xcb_create_gc(client_.connection(), context, picture, XCB_GC_FOREGROUND, &desktopColor);
    const xcb_rectangle_t all{0, 0, 1, 1};
    xcb_poly_fill_rectangle(client_.connection(), picture, context, 1, &all);
    xcb_free_gc(client_.connection(), context);
    client_.setWords(client_.root(), "_XROOTPMAP_ID", "PIXMAP", {picture});
    client_.sync();
}

bool Compositor::hasOwner() {
    const Owned<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        client_.connection(), xcb_get_selection_owner(client_.connection(), client_.atom("_NET_WM_CM_S0")),
        nullptr));
    return owner && owner->owner != XCB_NONE;
}

bool Compositor::hasPainted() {
    return Screenshot(client_).contains(desktopColor);
}

} // namespace tarvex::test
