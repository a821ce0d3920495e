#pragma once

#include <cstdint>

namespace tarvex {

/// Converts event flags to the modifier mask of hotkeys and of the configuration.
class ModifierMapper {
public:
    /// The mask of Command, Shift, Option and Control among the event_flag bits; every other flag is dropped.
    [[nodiscard]] std::uint32_t toCarbonModifiers(std::uint64_t eventFlags) const;
};

} // namespace tarvex
