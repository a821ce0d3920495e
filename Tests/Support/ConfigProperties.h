#pragma once

#include "Core/Configuration/TarvexConfig.h"

#include <optional>
#include <string>
#include <string_view>

namespace tarvex {

/// True when every field of the two records is equal, each grid by its content and not by its identity alone.
[[nodiscard]] bool haveSameFields(const TarvexConfig& first, const TarvexConfig& second);

/// What must hold of any text whatever as a configuration: it decodes or fails with a DecodingError of one
/// short line; if it decodes, then it survives an encoding, and its grids give cells inside the unit square
/// and frames inside the visible frame. Returns the first rule that is broken; none when all hold.
[[nodiscard]] std::optional<std::string> findBrokenConfigRule(std::string_view text);

} // namespace tarvex
