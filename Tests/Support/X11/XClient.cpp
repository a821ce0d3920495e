#include "Tests/Support/X11/XClient.h"

#include <cstring>
#include <poll.h>
#include <stdexcept>

namespace tarvex::test {
namespace {

constexpr std::uint32_t longestProperty = 1 << 16;
constexpr std::uint8_t eventTypeMask = 0x7F;

} // namespace

XClient::XClient(const std::string& displayName) {
    int screenNumber = 0;
    connection_ = xcb_connect(displayName.c_str(), &screenNumber);
    if (xcb_connection_has_error(connection_) != 0) {
        xcb_disconnect(connection_);
        throw std::runtime_error("cannot connect to " + displayName);
    }
    auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection_));
    for (; screenNumber > 0 && screen.rem > 1; --screenNumber) {
        xcb_screen_next(&screen);
    }
    screen_ = screen.data;
}

XClient::~XClient() {
    xcb_disconnect(connection_);
}

xcb_atom_t XClient::atom(std::string_view name) {
    const std::string key(name);
    if (const auto known = atoms_.find(key); known != atoms_.end()) {
        return known->second;
    }
    const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection_, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(key.size()), key.data()),
        nullptr));
    if (!reply) {
        throw std::runtime_error("cannot intern " + key);
    }
    return atoms_[key] = reply->atom;
}

void XClient::sync() {
    const Owned<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    if (!reply) {
        throw std::runtime_error("the X server is gone");
    }
}

void XClient::handleEvents() {
    for (Owned<xcb_generic_event_t> event(xcb_poll_for_event(connection_)); event;
         event.reset(xcb_poll_for_event(connection_))) {
        if ((event->response_type & eventTypeMask) != 0 && eventHandler_) {
            eventHandler_(*event);
        }
    }
    if (xcb_connection_has_error(connection_) != 0) {
        throw std::runtime_error("the X server is gone");
    }
}

bool XClient::waitFor(const std::function<bool()>& condition, Deadline deadline) {
    for (;;) {
        xcb_flush(connection_);
        handleEvents();
        if (condition()) {
            return true;
        }
        if (deadline.hasPassed()) {
            return false;
        }
        pollfd waited{xcb_get_file_descriptor(connection_), POLLIN, 0};
        ::poll(&waited, 1, deadline.pollTimeout(10));
    }
}

void XClient::waitUntil(const std::function<bool()>& condition, const std::string& description,
                        Deadline deadline) {
    if (!waitFor(condition, deadline)) {
        throw std::runtime_error("timed out waiting until " + description);
    }
}

std::vector<std::uint32_t> XClient::words(xcb_window_t window, std::string_view property) {
    const Owned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection_,
                               xcb_get_property(connection_, 0, window, atom(property),
                                                XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty),
                               nullptr));
    if (!reply || reply->format != 32) {
        return {};
    }
    const auto* data = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {data, data + xcb_get_property_value_length(reply.get()) / 4};
}

bool XClient::hasProperty(xcb_window_t window, std::string_view property) {
    const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection_,
        xcb_get_property(connection_, 0, window, atom(property), XCB_GET_PROPERTY_TYPE_ANY, 0, 0), nullptr));
    return reply && reply->type != XCB_ATOM_NONE;
}

std::string XClient::text(xcb_window_t window, std::string_view property) {
    const Owned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection_,
                               xcb_get_property(connection_, 0, window, atom(property),
                                                XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty),
                               nullptr));
    if (!reply || reply->format != 8) {
        return {};
    }
    return {static_cast<const char*>(xcb_get_property_value(reply.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
}

void XClient::setWords(xcb_window_t window, std::string_view property, std::string_view type,
                       const std::vector<std::uint32_t>& values) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(property), atom(type), 32,
                        static_cast<std::uint32_t>(values.size()), values.data());
    xcb_flush(connection_);
}

void XClient::setText(xcb_window_t window, std::string_view property, std::string_view type,
                      std::string_view value) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atom(property), atom(type), 8,
                        static_cast<std::uint32_t>(value.size()), value.data());
    xcb_flush(connection_);
}

void XClient::sendToWindowManager(xcb_window_t about, std::string_view type,
                                  const std::array<std::uint32_t, 5>& data) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = about;
    message.type = atom(type);
    std::memcpy(message.data.data32, data.data(), sizeof(message.data.data32));
    std::array<char, 32> bytes{};
    static_assert(sizeof(message) == 32);
    std::memcpy(bytes.data(), &message, sizeof(message));
    xcb_send_event(connection_, 0, root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT, bytes.data());
    xcb_flush(connection_);
}

std::optional<PixelRect> XClient::geometryInRoot(xcb_window_t window) {
    const auto geometryCookie = xcb_get_geometry(connection_, window);
    const auto positionCookie = xcb_translate_coordinates(connection_, window, root(), 0, 0);
    const Owned<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection_, geometryCookie, nullptr));
    const Owned<xcb_translate_coordinates_reply_t> position(
        xcb_translate_coordinates_reply(connection_, positionCookie, nullptr));
    if (!geometry || !position) {
        return std::nullopt;
    }
    return PixelRect{position->dst_x, position->dst_y, geometry->width, geometry->height};
}

std::optional<xcb_window_t> XClient::topLevelOf(xcb_window_t window) {
    for (;;) {
        const Owned<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window), nullptr));
        if (!tree || tree->parent == XCB_NONE) {
            return std::nullopt;
        }
        if (tree->parent == root()) {
            return window;
        }
        window = tree->parent;
    }
}

std::vector<xcb_window_t> XClient::children(xcb_window_t window) {
    const Owned<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window), nullptr));
    if (!tree) {
        return {};
    }
    const xcb_window_t* first = xcb_query_tree_children(tree.get());
    return {first, first + xcb_query_tree_children_length(tree.get())};
}

Owned<xcb_get_window_attributes_reply_t> XClient::attributes(xcb_window_t window) {
    return Owned<xcb_get_window_attributes_reply_t>(xcb_get_window_attributes_reply(
        connection_, xcb_get_window_attributes(connection_, window), nullptr));
}

bool XClient::isViewable(xcb_window_t window) {
    const auto reply = attributes(window);
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

std::vector<xcb_window_t> XClient::managedWindows() {
    return words(root(), "_NET_CLIENT_LIST");
}

void XClient::selectEvents(xcb_window_t window, std::uint32_t mask) {
    xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(connection_);
}

} // namespace tarvex::test
