#pragma once

#include "Core/Configuration/TarvexConfig.h"
#include "Core/Displays/DisplayIdentifier.h"
#include "Core/Grid/GridModel.h"

#include <nlohmann/json_fwd.hpp>

#include <stdexcept>
#include <string>

namespace tarvex {

/// Text that is not the JSON of the wanted type: what() names the key and what is wrong with it, in one short
/// line.
class DecodingError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A value that JSON cannot hold: NaN or an infinity, whose key what() names, or text that is not UTF-8.
class EncodingError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The settings record from UTF-8 text. Throws DecodingError when the text is not JSON or is nested more
/// than 512 levels deep, or when a required key is missing, null or of the wrong type, or an optional one is
/// present and malformed. Unknown keys are passed over, of a key given twice the last value counts, and a
/// byte order mark at the start is no part of the text; nothing is clamped and no default is filled in.
[[nodiscard]] TarvexConfigRef decodeTarvexConfig(const std::string& text);

/// Compact JSON of the record. An absent optional leaves its key out. Throws EncodingError.
[[nodiscard]] std::string encodeTarvexConfig(const TarvexConfig& config);

/// The coding of the grid model and of display identities, each object with exactly its own keys. The
/// decoders throw DecodingError, the encoders EncodingError.
[[nodiscard]] GridDefinitionRef decodeGridDefinition(const nlohmann::json& json);
[[nodiscard]] nlohmann::ordered_json encodeJson(const GridDefinition& grid);
[[nodiscard]] GridCell decodeGridCell(const nlohmann::json& json);
[[nodiscard]] nlohmann::ordered_json encodeJson(const GridCell& cell);
[[nodiscard]] NormalizedRect decodeNormalizedRect(const nlohmann::json& json);
[[nodiscard]] nlohmann::ordered_json encodeJson(const NormalizedRect& rect);
[[nodiscard]] NormalizedPoint decodeNormalizedPoint(const nlohmann::json& json);
[[nodiscard]] nlohmann::ordered_json encodeJson(const NormalizedPoint& point);
[[nodiscard]] GridLineOrientation decodeGridLineOrientation(const nlohmann::json& json);
[[nodiscard]] nlohmann::ordered_json encodeJson(GridLineOrientation orientation);
[[nodiscard]] DisplayIdentifier decodeDisplayIdentifier(const nlohmann::json& json);
[[nodiscard]] nlohmann::ordered_json encodeJson(const DisplayIdentifier& identifier);

} // namespace tarvex
