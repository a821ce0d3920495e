#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tarvex {

/// What a key symbol of X shows when it is typed, as UTF-8; for a dead key, the accent that it waits to put
/// on a letter, standing by itself. None for symbols that show nothing: functions, cursor keys, control
/// characters, and accents that no character stands for.
[[nodiscard]] std::optional<std::string> textOfKeySymbol(std::uint32_t keySymbol);

} // namespace tarvex
