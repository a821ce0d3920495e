#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tarvex {

/// Frees what xcb allocated with malloc.
struct XcbFree {
    void operator()(void* memory) const { std::free(memory); }
};

/// A reply, an event or an error of xcb, owned.
template <typename T>
using XcbOwned = std::unique_ptr<T, XcbFree>;

/// The answer to one request: a reply or the X error code that came in its place. A connection that broke
/// gives neither a reply nor a code of the server; error is then XConnection::connectionLost.
template <typename T>
struct XReply {
    XcbOwned<T> value;
    std::int32_t error = 0;

    explicit operator bool() const { return value != nullptr; }

    const T* operator->() const { return value.get(); }

    const T& operator*() const { return *value; }

    [[nodiscard]] const T* get() const { return value.get(); }
};

/// The events that several parts of a program listen to on one window. X keeps one mask per window and
/// client.
class EventMaskUnion {
public:
    /// Both give what the program now listens to. What is removed must have been added.
    std::uint32_t add(std::uint32_t mask);
    std::uint32_t remove(std::uint32_t mask);

private:
    [[nodiscard]] std::uint32_t united() const;

    std::multiset<std::uint32_t> masks_;
};

/// One connection to the X server, closed with the object. Every request's error is caught where the request
/// is made: take() for requests with a reply, check() or discard() for those without. Send several requests
/// before taking the first reply to wait for the server just once.
class XConnection {
public:
    /// The error code given for a request on a connection that broke. X itself uses 1 to 255.
    static constexpr std::int32_t connectionLost = -1;

    /// Connects to the named display, or to that of the environment for an empty name. Null when that fails.
    [[nodiscard]] static std::unique_ptr<XConnection> open(const std::string& displayName = {});

    XConnection(const XConnection&) = delete;
    XConnection& operator=(const XConnection&) = delete;
    XConnection(XConnection&&) = delete;
    XConnection& operator=(XConnection&&) = delete;
    ~XConnection();

    [[nodiscard]] xcb_connection_t* get() const { return connection_; }

    [[nodiscard]] const xcb_screen_t& screen() const { return *screen_; }

    [[nodiscard]] int screenNumber() const { return screenNumber_; }

    [[nodiscard]] xcb_window_t root() const { return screen_->root; }

    /// What is listened to on the root window.
    [[nodiscard]] EventMaskUnion& rootEvents() { return rootEvents_; }

    [[nodiscard]] bool isBroken() const { return xcb_connection_has_error(connection_) != 0; }

    /// The atom of that name, interned on first use; XCB_ATOM_NONE on a broken connection.
    [[nodiscard]] xcb_atom_t atom(std::string_view name);

    /// Interns all names with one wait, or none where all are known, so that later uses need none.
    void internAtoms(const std::vector<std::string_view>& names);

    /// The extension's data when the server has it, else null.
    [[nodiscard]] const xcb_query_extension_reply_t* extension(xcb_extension_t& extension) const;

    /// Waits for the reply of a request, given xcb's reply function and the request's cookie:
    /// take(xcb_get_geometry_reply, xcb_get_geometry(connection.get(), window)).
    template <typename Reply, typename Cookie>
    [[nodiscard]] XReply<Reply>
    take(Reply* (*replyFunction)(xcb_connection_t*, Cookie, xcb_generic_error_t**), Cookie cookie) {
        xcb_generic_error_t* error = nullptr;
        XReply<Reply> reply;
        reply.value.reset(replyFunction(connection_, cookie, &error));
        reply.error = reply.value ? 0 : takeError(error);
        return reply;
    }

    /// Waits for a request of the _checked kind: 0 for success, else the error code.
    [[nodiscard]] std::int32_t check(xcb_void_cookie_t cookie);

    /// Gives up interest in how a request of the _checked kind ends, without waiting.
    void discard(xcb_void_cookie_t cookie) { xcb_discard_reply(connection_, cookie.sequence); }

    void flush() { xcb_flush(connection_); }

private:
    XConnection(xcb_connection_t* connection, int screenNumber, xcb_screen_t* screen);

    [[nodiscard]] static std::int32_t takeError(xcb_generic_error_t* error);

    xcb_connection_t* connection_;
    int screenNumber_;
    xcb_screen_t* screen_;
    std::unordered_map<std::string, xcb_atom_t> atoms_;
    EventMaskUnion rootEvents_;
};

/// A whole 32-bit property (cardinals, atoms, windows). One that is missing, of another format, or on a
/// window that has gone is empty.
struct XPropertyWords {
    std::vector<std::uint32_t> words;
    /// Of the request, such as for a window that has gone; 0 also for a property that is missing.
    std::int32_t error = 0;
};

/// Asks for a property; its answer is to be taken once.
[[nodiscard]] xcb_get_property_cookie_t requestPropertyWords(XConnection& connection, xcb_window_t window,
                                                             xcb_atom_t property);

/// Waits for the answer.
[[nodiscard]] XPropertyWords takePropertyWords(XConnection& connection, xcb_get_property_cookie_t cookie);

/// Asks for a property and waits for the answer.
[[nodiscard]] XPropertyWords readPropertyWords(XConnection& connection, xcb_window_t window,
                                               xcb_atom_t property);

} // namespace tarvex
