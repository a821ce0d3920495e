#pragma once

#include "Core/Configuration/JsonCoding.h"
#include "Tests/Unit/ConfigSamples.h"

#include <nlohmann/json.hpp>

#include <string>

namespace tarvex {

/// The message of the failure; empty when the text decodes.
[[nodiscard]] inline std::string failure(const std::string& text) {
    try {
        static_cast<void>(decodeTarvexConfig(text));
    } catch (const DecodingError& error) {
        return error.what();
    }
    return "";
}

/// The minimal document with one key replaced by JSON text that the library itself could not hold.
[[nodiscard]] inline std::string documentWith(const std::string& key, const std::string& value) {
    nlohmann::json document = minimalDocument();
    document[key] = "@";
    std::string text = document.dump();
    return text.replace(text.find("\"@\""), 3, value);
}

} // namespace tarvex
