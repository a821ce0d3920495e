#pragma once

#include <cstdint>

namespace tarvex {

/// The modifier flags of a key event (Apple, NSEvent.ModifierFlags), with the bits of event_flag.
enum class KeyModifierFlags : std::uint64_t {};

/// Converts the platform's modifier flags to the modifier mask of hotkeys and of the configuration.
class ModifierMapper {
public:
    /// The mask of Command, Shift, Option and Control among the flags; every other flag is dropped.
    [[nodiscard]] std::uint32_t toCarbonModifiers(KeyModifierFlags flags) const;

    /// The same of the event_flag bits of an observed event.
    [[nodiscard]] std::uint32_t toCarbonModifiers(std::uint64_t eventFlags) const;
};

} // namespace tarvex
