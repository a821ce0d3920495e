#include "Platform/Linux/X11/OverlayParking.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tarvex {

namespace {

/// Instance and class, each ended by a null.
constexpr std::string_view windowClass{"tarvex\0Tarvex\0", 14};

void restack(XConnection& connection, xcb_window_t window, std::uint32_t mode) {
    connection.discard(
        xcb_configure_window_checked(connection.get(), window, XCB_CONFIG_WINDOW_STACK_MODE, &mode));
}

} // namespace

void setOverlayProperties(XConnection& connection, xcb_window_t window, std::string_view title) {
    connection.internAtoms({"_NET_WM_NAME", "UTF8_STRING", "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_DND",
                            "_GTK_FRAME_EXTENTS", "_COMPTON_SHADOW"});
    const auto set = [&connection, window](xcb_atom_t property, xcb_atom_t type, std::uint8_t format,
                                           std::size_t count, const void* data) {
        connection.discard(xcb_change_property_checked(connection.get(), XCB_PROP_MODE_REPLACE, window,
                                                       property, type, format,
                                                       static_cast<std::uint32_t>(count), data));
    };
    set(XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8, windowClass.size(), windowClass.data());
    set(XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, title.size(), title.data());
    set(connection.atom("_NET_WM_NAME"), connection.atom("UTF8_STRING"), 8, title.size(), title.data());
    // Of all types, the one for what accompanies a drag is the one that gets no shadow, blur or animation.
    const xcb_atom_t type = connection.atom("_NET_WM_WINDOW_TYPE_DND");
    set(connection.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1, &type);
    // Common rules of compositing managers leave windows with this property, which draw their own edges,
    // alone.
    constexpr std::array<std::uint32_t, 4> noExtents{};
    set(connection.atom("_GTK_FRAME_EXTENTS"), XCB_ATOM_CARDINAL, 32, noExtents.size(), noExtents.data());
    constexpr std::uint32_t no = 0;
    set(connection.atom("_COMPTON_SHADOW"), XCB_ATOM_CARDINAL, 32, 1, &no);
}

void lowerToBottom(XConnection& connection, xcb_window_t window) {
    restack(connection, window, XCB_STACK_MODE_BELOW);
}

void raiseToTop(XConnection& connection, xcb_window_t window) {
    restack(connection, window, XCB_STACK_MODE_ABOVE);
}

void restackBeside(XConnection& connection, xcb_window_t window, xcb_window_t sibling,
                   xcb_stack_mode_t mode) {
    xcb_configure_window_value_list_t values{};
    values.sibling = sibling;
    values.stack_mode = mode;
    connection.discard(xcb_configure_window_aux_checked(
        connection.get(), window, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE, &values));
}

} // namespace tarvex
