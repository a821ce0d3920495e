#include "Platform/Linux/X11/XSizeStates.h"

#include "Platform/Linux/X11/XAtoms.h"

namespace tarvex {

XSizeStates XSizeStates::without(const XSizeStates& others) const {
    return {maximizedVertically && !others.maximizedVertically,
            maximizedHorizontally && !others.maximizedHorizontally, fullScreen && !others.fullScreen,
            shaded && !others.shaded};
}

XSizeStates sizeStatesOf(XConnection& connection, const std::vector<std::uint32_t>& states) {
    if (states.empty()) {
        return {};
    }
    const auto has = [&](std::string_view state) { return isAmong(states, connection.atom(state)); };
    return {has("_NET_WM_STATE_MAXIMIZED_VERT"), has("_NET_WM_STATE_MAXIMIZED_HORZ"),
            has("_NET_WM_STATE_FULLSCREEN"), has("_NET_WM_STATE_SHADED")};
}

} // namespace tarvex
