#pragma once

#include "Core/Configuration/JsonCoding.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarvex {

/// Strict typed reads of one JSON object. A boolean is not a number and null is no value. Throws
/// DecodingError naming the key. The object must outlive the reader.
class JsonObjectReader {
public:
    /// @param what the name of the type being read, for messages
    JsonObjectReader(const nlohmann::json& json, const char* what);

    [[nodiscard]] const nlohmann::json& required(const char* key) const;

    /// The value of an optional key; null when the key is missing or holds null.
    [[nodiscard]] const nlohmann::json* optional(const char* key) const;

    [[nodiscard]] std::string requiredString(const char* key) const;
    [[nodiscard]] double requiredNumber(const char* key) const;
    [[nodiscard]] std::vector<double> requiredNumbers(const char* key) const;
    [[nodiscard]] std::int64_t requiredInteger(const char* key) const;

    /// A whole number from 0 to 4294967295, written with or without a fraction of zero.
    [[nodiscard]] std::uint32_t requiredUInt32(const char* key) const;

    [[nodiscard]] std::optional<std::int64_t> optionalInteger(const char* key) const;
    [[nodiscard]] std::optional<bool> optionalBool(const char* key) const;

private:
    [[noreturn]] void fail(const char* key, const char* problem) const;

    const nlohmann::json* json_;
    const char* what_;
};

} // namespace tarvex
