#pragma once

#include "Platform/Linux/X11/XConnection.h"

#include <array>
#include <cstdint>
#include <vector>

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

    /// Whether eventFlags() tells all that is held in a modifier state. It does not tell of AltGr, to name
    /// one; what is held then is another combination than the flags say, and no hotkey. The locks do not
    /// matter.
    [[nodiscard]] bool isTold(std::uint32_t modifiers);

    /// Every modifier state that a person can bring about by holding just the keys of these event_flag bits,
    /// whichever of Caps, Num and Scroll Lock are on. Empty when no key stands for one of the flags. Of the
    /// flags only Shift, Control, Option and Command count.
    [[nodiscard]] std::vector<std::uint16_t> statesOf(std::uint64_t eventFlags);

    /// Forgets what was read, after the server said that the keyboard changed.
    void invalidate() { isKnown_ = false; }

private:
    static constexpr std::size_t modifierCount = 8;

    class Reading;

    void readIfUnknown();
    void read();

    XConnection* connection_;
    std::array<std::uint64_t, modifierCount> flagsOfModifier_{};
    /// The locks, and those modifiers of a meaning that some key is attached to.
    std::uint32_t countingModifiers_ = 0;
    bool isKnown_ = false;
};

} // namespace tarvex
