#include "Platform/Linux/X11/XConnection.h"

#include <functional>
#include <numeric>
#include <utility>

namespace tarvex {

namespace {

constexpr std::uint32_t maxPropertyWords = 1U << 16;

xcb_screen_t* findScreenOfDisplay(xcb_connection_t* connection, int number) {
    xcb_screen_iterator_t iterator = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; iterator.rem > 0 && number > 0; --number) {
        xcb_screen_next(&iterator);
    }
    return iterator.rem > 0 ? iterator.data : nullptr;
}

xcb_intern_atom_cookie_t requestAtom(xcb_connection_t* connection, std::string_view name) {
    return xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
}

} // namespace

std::uint32_t EventMaskUnion::add(std::uint32_t mask) {
    masks_.insert(mask);
    return united();
}

std::uint32_t EventMaskUnion::remove(std::uint32_t mask) {
    masks_.erase(masks_.find(mask));
    return united();
}

std::uint32_t EventMaskUnion::united() const {
    return std::accumulate(masks_.begin(), masks_.end(), 0U, std::bit_or<>());
}

std::unique_ptr<XConnection> XConnection::open(const std::string& displayName) {
    int screenNumber = 0;
    xcb_connection_t* connection =
        xcb_connect(displayName.empty() ? nullptr : displayName.c_str(), &screenNumber);
    xcb_screen_t* screen =
        xcb_connection_has_error(connection) != 0 ? nullptr : findScreenOfDisplay(connection, screenNumber);
    if (screen == nullptr) {
        xcb_disconnect(connection);
        return nullptr;
    }
    return std::unique_ptr<XConnection>(new XConnection(connection, screenNumber, screen));
}

XConnection::XConnection(xcb_connection_t* connection, int screenNumber, xcb_screen_t* screen)
    : connection_(connection), screenNumber_(screenNumber), screen_(screen) {}

XConnection::~XConnection() {
    xcb_disconnect(connection_);
}

xcb_atom_t XConnection::atom(std::string_view name) {
    const auto known = atoms_.find(std::string(name));
    if (known != atoms_.end()) {
        return known->second;
    }
    const auto reply = take(xcb_intern_atom_reply, requestAtom(connection_, name));
    if (!reply) {
        return XCB_ATOM_NONE;
    }
    atoms_.emplace(name, reply->atom);
    return reply->atom;
}

void XConnection::internAtoms(const std::vector<std::string_view>& names) {
    std::vector<std::pair<std::string, xcb_intern_atom_cookie_t>> requests;
    for (const std::string_view name : names) {
        std::string key(name);
        if (!atoms_.contains(key)) {
            requests.emplace_back(std::move(key), requestAtom(connection_, name));
        }
    }
    for (auto& [key, cookie] : requests) {
        if (const auto reply = take(xcb_intern_atom_reply, cookie)) {
            atoms_.insert_or_assign(std::move(key), reply->atom);
        }
    }
}

const xcb_query_extension_reply_t* XConnection::extension(xcb_extension_t& extension) const {
    const xcb_query_extension_reply_t* data = xcb_get_extension_data(connection_, &extension);
    return data != nullptr && data->present != 0 ? data : nullptr;
}

std::int32_t XConnection::check(xcb_void_cookie_t cookie) {
    xcb_generic_error_t* error = xcb_request_check(connection_, cookie);
    if (error == nullptr && !isBroken()) {
        return 0;
    }
    return takeError(error);
}

std::int32_t XConnection::takeError(xcb_generic_error_t* error) {
    const XcbOwned<xcb_generic_error_t> owned(error);
    return owned ? owned->error_code : connectionLost;
}

xcb_get_property_cookie_t requestPropertyWords(XConnection& connection, xcb_window_t window,
                                               xcb_atom_t property) {
    return xcb_get_property(connection.get(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0,
                            maxPropertyWords);
}

XPropertyWords takePropertyWords(XConnection& connection, xcb_get_property_cookie_t cookie) {
    const auto reply = connection.take(xcb_get_property_reply, cookie);
    XPropertyWords result;
    result.error = reply.error;
    if (reply && reply->format == 32) {
        const auto* data = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
        result.words.assign(data, data + reply->value_len);
    }
    return result;
}

XPropertyWords readPropertyWords(XConnection& connection, xcb_window_t window, xcb_atom_t property) {
    return takePropertyWords(connection, requestPropertyWords(connection, window, property));
}

} // namespace tarvex
