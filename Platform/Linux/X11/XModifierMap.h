#pragma once

#include "Platform/Linux/X11/XConnection.h"

#include <array>
#include <cstdint>

namespace tarvex {

/// Which event flags the modifiers of the X server stand for. Shift and Control are fixed; Command is the
/// modifier that holds a Super key and Option the one that holds an Alt key, wherever the keyboard map puts
/// them. Everything else, the locks among it, is dropped. The map is read when first needed.
class XModifierMap {
public:
    /// The connection must outlive the map.
    explicit XModifierMap(XConnection& connection) : connection_(&connection) {}

    /// The event_flag bits of a modifier state (xcb_mod_mask_t).
    [[nodiscard]] std::uint64_t eventFlags(std::uint32_t modifiers);

    /// Forgets what was read, after the server said that the keyboard changed.
    void invalidate() { isKnown_ = false; }

private:
    static constexpr std::size_t modifierCount = 8;

    void read();

    XConnection* connection_;
    std::array<std::uint64_t, modifierCount> flagsOfModifier_{};
    bool isKnown_ = false;
};

} // namespace tarvex
