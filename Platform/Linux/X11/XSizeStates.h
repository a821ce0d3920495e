#pragma once

#include "Platform/Linux/X11/XConnection.h"

#include <cstdint>
#include <vector>

namespace tarvex {

/// The states of a window in which the window manager decides about its size (_NET_WM_STATE).
struct XSizeStates {
    bool maximizedVertically = false;
    bool maximizedHorizontally = false;
    bool fullScreen = false;
    bool shaded = false;

    bool operator==(const XSizeStates&) const = default;

    [[nodiscard]] bool any() const { return *this != XSizeStates{}; }

    [[nodiscard]] bool isMaximized() const { return maximizedVertically || maximizedHorizontally; }

    /// Those that are not among the others.
    [[nodiscard]] XSizeStates without(const XSizeStates& others) const;
};

/// Those of the words of _NET_WM_STATE.
[[nodiscard]] XSizeStates sizeStatesOf(XConnection& connection, const std::vector<std::uint32_t>& states);

} // namespace tarvex
