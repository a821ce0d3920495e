#pragma once

#include "Tests/Support/X11/Deadline.h"
#include "Tests/Support/X11/PixelGeometry.h"

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tarvex::test {

struct ReleaseXcbMemory {
    void operator()(void* memory) const { std::free(memory); }
};

/// A reply or an event of xcb; null when the request failed.
template <typename T>
using Owned = std::unique_ptr<T, ReleaseXcbMemory>;

/// A connection of the test's own to a private X server. Requests that fail are ignored, so that a window may
/// vanish at any time; queries of such a window answer with nothing. Throws std::runtime_error when it cannot
/// connect, when the connection breaks, and when a wait runs out of patience.
class XClient {
public:
    using EventHandler = std::function<void(const xcb_generic_event_t&)>;

    /// @param displayName may name the screen, as in ":5.1"; the first one counts otherwise
    explicit XClient(const std::string& displayName);
    XClient(const XClient&) = delete;
    XClient& operator=(const XClient&) = delete;
    XClient(XClient&&) = delete;
    XClient& operator=(XClient&&) = delete;
    ~XClient();

    [[nodiscard]] xcb_connection_t* connection() const { return connection_; }

    [[nodiscard]] const xcb_screen_t& screen() const { return *screen_; }

    [[nodiscard]] xcb_window_t root() const { return screen_->root; }

    [[nodiscard]] xcb_atom_t atom(std::string_view name);

    /// Returns when the server has processed every request of this client.
    void sync();

    /// Takes all events that have arrived, and hands them to the handler.
    void handleEvents();

    /// Events go to this handler and are dropped without one. Errors of requests are no events.
    void setEventHandler(EventHandler handler) { eventHandler_ = std::move(handler); }

    /// Waits until the condition holds: asks again for every event, and a hundred times a second without one.
    [[nodiscard]] bool waitFor(const std::function<bool()>& condition, Deadline deadline = Deadline{});

    /// The same, and throws "timed out waiting until <description>".
    void waitUntil(const std::function<bool()>& condition, const std::string& description,
                   Deadline deadline = Deadline{});

    /// A 32-bit property; empty when it is missing.
    [[nodiscard]] std::vector<std::uint32_t> words(xcb_window_t window, std::string_view property);
    [[nodiscard]] bool hasProperty(xcb_window_t window, std::string_view property);
    /// An 8-bit property.
    [[nodiscard]] std::string text(xcb_window_t window, std::string_view property);
    void setWords(xcb_window_t window, std::string_view property, std::string_view type,
                  const std::vector<std::uint32_t>& values);
    void setText(xcb_window_t window, std::string_view property, std::string_view type,
                 std::string_view value);

    /// Sends a message about a window to the window manager, by way of the root window.
    void sendToWindowManager(xcb_window_t about, std::string_view type,
                             const std::array<std::uint32_t, 5>& data);

    /// The window's inside (without its X border) in root pixels; none when it is gone.
    [[nodiscard]] std::optional<PixelRect> geometryInRoot(xcb_window_t window);

    /// The child of the root that holds the window, which is the frame of a managed one.
    [[nodiscard]] std::optional<xcb_window_t> topLevelOf(xcb_window_t window);

    [[nodiscard]] std::vector<xcb_window_t> children(xcb_window_t window);
    [[nodiscard]] Owned<xcb_get_window_attributes_reply_t> attributes(xcb_window_t window);

    [[nodiscard]] bool exists(xcb_window_t window) { return attributes(window) != nullptr; }

    [[nodiscard]] bool isViewable(xcb_window_t window);

    /// _NET_CLIENT_LIST: the managed windows.
    [[nodiscard]] std::vector<xcb_window_t> managedWindows();

    void selectEvents(xcb_window_t window, std::uint32_t mask);

private:
    xcb_connection_t* connection_;
    const xcb_screen_t* screen_;
    std::unordered_map<std::string, xcb_atom_t> atoms_;
    EventHandler eventHandler_;
};

} // namespace tarvex::test
