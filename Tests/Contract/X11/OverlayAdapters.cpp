#include "Tests/Contract/X11/OverlayAdapters.h"

#include <stdexcept>

namespace tarvex::contract {

namespace {

/// All but the last column, where the compositor's own desktop shows that it has started to paint.
constexpr test::PixelRect backgroundArea{0, 0, OverlayDesktop::width - 1, OverlayDesktop::height};

constexpr test::PixelRect markerArea{OverlayDesktop::width - 4, 0, 4, 4};

constexpr test::PixelRect offScreenArea{-100, -100, 1, 1};

constexpr const char* xfwm4Configuration = R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfwm4" version="1.0">
  <property name="general" type="empty">
    <property name="workspace_count" type="int" value="1"/>
    <property name="use_compositing" type="bool" value="true"/>
    <property name="vblank_mode" type="string" value="off"/>
  </property>
</channel>
)";

test::TestWindowOptions plainWindow(const test::PixelRect& area, std::uint32_t color) {
    test::TestWindowOptions options;
    options.geometry = area;
    options.isOverrideRedirect = true;
    options.backgroundPixel = color;
    return options;
}

} // namespace

XOverlayAdapters::XOverlayAdapters(const std::string& displayName)
    : PumpedConnection(displayName),
      monitors(*connection, pump),
      windows(*connection, pump, mainLoop, monitors) {
    catchUp();
}

void XOverlayAdapters::catchUp() {
    pump.processPending();
    awaitServer();
    pump.processPending();
}

bool XOverlayAdapters::owns(xcb_window_t window) const {
    return XClientResources(connection->get()).contains(window);
}

bool isRedirected(test::XClient& client, xcb_window_t window) {
    // A window off the screen has pixels to read only if it is drawn to a place of its own.
    const test::Owned<xcb_get_image_reply_t> image(xcb_get_image_reply(
        client.connection(),
        xcb_get_image(client.connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, window, 0, 0, 1, 1, ~0U), nullptr));
    return image != nullptr;
}

std::unique_ptr<test::ChildProcess> startComposingXfwm4(const test::XServer& server, test::XClient& client) {
    const test::TestWindow probe(server.displayName(), plainWindow(offScreenArea, 0));
    test::Command command;
    command.environment = server.clientEnvironment("xfwm4");
    server.scratch().write("xfwm4/config/xfce4/xfconf/xfce-perchannel-xml/xfwm4.xml", xfwm4Configuration);
    command.arguments = {"dbus-run-session", "--", "xfwm4"};
    auto process = std::make_unique<test::ChildProcess>(command);
    client.waitUntil(
        [&] {
            return client.hasProperty(client.root(), "_NET_SUPPORTED") && isRedirected(client, probe.id());
        },
        "xfwm4 has taken the windows over");
    return process;
}

OverlayDesktop::OverlayDesktop(Composition composition)
    : server(width, height),
      client(server.displayName()),
      openbox_(composition == Composition::xfwm4
                   ? nullptr
                   : std::make_unique<test::WindowManager>(server, test::WindowManagerKind::openbox)),
      xfwm4_(composition == Composition::xfwm4 ? startComposingXfwm4(server, client) : nullptr),
      offScreen_(server.displayName(), plainWindow(offScreenArea, 0)),
      background(server.displayName(), plainWindow(backgroundArea, backgroundColor)),
      adapters(server.displayName()),
      marker_(server.displayName(), plainWindow(markerArea, 0)) {
    if (composition == Composition::picom) {
        startCompositor();
    }
    settle();
}

void OverlayDesktop::startCompositor() {
    compositor_.emplace(server);
    client.waitUntil([this] { return isRedirected(client, offScreen_.id()); },
                     "picom has taken the windows over");
    adapters.catchUp();
}

void OverlayDesktop::stopCompositor() {
    compositor_.reset();
    client.waitUntil([this] { return !isRedirected(client, offScreen_.id()); },
                     "the windows are on their own again");
    adapters.catchUp();
}

void OverlayDesktop::settle() {
    adapters.catchUp();
    if (openbox_) {
        openbox_->barrier();
    }
    adapters.catchUp();
    markerColor_ = markerColor_ == 0xFF0000 ? 0x00FF00 : 0xFF0000;
    xcb_connection_t* connection = marker_.client().connection();
    xcb_change_window_attributes(connection, marker_.id(), XCB_CW_BACK_PIXEL, &markerColor_);
    xcb_clear_area(connection, 0, marker_.id(), 0, 0, 0, 0);
    marker_.client().sync();
    const bool isShown = adapters.waitUntil([this] {
        return pixel({markerArea.x, markerArea.y}) == markerColor_;
    });
    if (!isShown) {
        throw std::runtime_error("timed out waiting until the screen is up to date");
    }
}

std::uint32_t OverlayDesktop::pixel(test::PixelPoint point) {
    const test::Owned<xcb_get_image_reply_t> image(xcb_get_image_reply(
        client.connection(),
        xcb_get_image(client.connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, client.root(),
                      static_cast<std::int16_t>(point.x), static_cast<std::int16_t>(point.y), 1, 1, ~0U),
        nullptr));
    if (!image) {
        throw std::runtime_error("cannot read the screen");
    }
    const std::uint8_t* bytes = xcb_get_image_data(image.get());
    return static_cast<std::uint32_t>(bytes[0] | bytes[1] << 8 | bytes[2] << 16);
}

std::vector<xcb_window_t> OverlayDesktop::nativeWindows() {
    std::vector<xcb_window_t> result;
    for (const xcb_window_t window : client.children(client.root())) {
        if (adapters.owns(window)) {
            result.push_back(window);
        }
    }
    return result;
}

} // namespace tarvex::contract
