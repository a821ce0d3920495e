#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tarvex::fake {

/// None when the bytes are not UTF-8.
std::optional<std::u16string> decodeUtf8(std::string_view bytes);

/// Half a surrogate pair becomes the replacement.
std::string encodeUtf8(std::u16string_view text, char replacement);

/// As Unicode has it for Latin, Greek and Cyrillic letters; a sharp s becomes two letters.
std::u16string upperCased(std::u16string_view text);

} // namespace tarvex::fake
