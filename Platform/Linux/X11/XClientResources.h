#pragma once

#include <xcb/xcb.h>

#include <cstdint>

namespace tarvex {

/// The numbers that the server gave one client for its windows.
class XClientResources {
public:
    explicit XClientResources(xcb_connection_t* connection)
        : base_(xcb_get_setup(connection)->resource_id_base),
          mask_(xcb_get_setup(connection)->resource_id_mask) {}

    /// Whether the window, which may have gone, is or was one of that client.
    [[nodiscard]] bool contains(xcb_window_t window) const { return (window & ~mask_) == base_; }

    /// Whether both windows are or were of one client, whichever that is: all clients of a server share one
    /// mask.
    [[nodiscard]] bool isSameClient(xcb_window_t one, xcb_window_t other) const {
        return (one & ~mask_) == (other & ~mask_);
    }

private:
    std::uint32_t base_;
    std::uint32_t mask_;
};

} // namespace tarvex
