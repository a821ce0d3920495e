#include "Core/Configuration/JsonReading.h"

#include <cmath>
#include <limits>

namespace tarvex {

namespace {

// A number as an integer of the given type; none when it has a fraction or does not fit.
template <typename Integer>
std::optional<Integer> exactInteger(const nlohmann::json& value) {
    using Limits = std::numeric_limits<Integer>;
    if (value.is_number_unsigned()) {
        const auto number = value.get<std::uint64_t>();
        return number <= static_cast<std::uint64_t>(Limits::max())
                   ? std::optional<Integer>(static_cast<Integer>(number))
                   : std::nullopt;
    }
    if (value.is_number_integer()) {
        const auto number = value.get<std::int64_t>();
        const bool fits =
            number >= static_cast<std::int64_t>(Limits::min()) &&
            (number < 0 || static_cast<std::uint64_t>(number) <= static_cast<std::uint64_t>(Limits::max()));
        return fits ? std::optional<Integer>(static_cast<Integer>(number)) : std::nullopt;
    }
    if (value.is_number_float()) {
        const auto number = value.get<double>();
        // One past the largest value is a power of two and so exact as a double, which the largest of 64 bits
        // is not.
        const double end = std::ldexp(1.0, Limits::digits);
        const bool fits =
            std::trunc(number) == number && number < end && number >= static_cast<double>(Limits::min());
        return fits ? std::optional<Integer>(static_cast<Integer>(number)) : std::nullopt;
    }
    return std::nullopt;
}

} // namespace

JsonObjectReader::JsonObjectReader(const nlohmann::json& json, const char* what) : json_(&json), what_(what) {
    if (!json.is_object()) {
        throw DecodingError(std::string(what) + " is not an object");
    }
}

const nlohmann::json& JsonObjectReader::required(const char* key) const {
    const nlohmann::json* value = optional(key);
    if (value == nullptr) {
        fail(key, "is missing");
    }
    return *value;
}

const nlohmann::json* JsonObjectReader::optional(const char* key) const {
    const auto found = json_->find(key);
    return found == json_->end() || found->is_null() ? nullptr : &*found;
}

std::string JsonObjectReader::requiredString(const char* key) const {
    const nlohmann::json& value = required(key);
    if (!value.is_string()) {
        fail(key, "is not a string");
    }
    return value.get<std::string>();
}

double JsonObjectReader::requiredNumber(const char* key) const {
    const nlohmann::json& value = required(key);
    if (!value.is_number()) {
        fail(key, "is not a number");
    }
    return value.get<double>();
}

std::vector<double> JsonObjectReader::requiredNumbers(const char* key) const {
    const nlohmann::json& value = required(key);
    if (!value.is_array()) {
        fail(key, "is not an array");
    }
    std::vector<double> numbers;
    numbers.reserve(value.size());
    for (const nlohmann::json& element : value) {
        if (!element.is_number()) {
            fail(key, "holds something that is not a number");
        }
        numbers.push_back(element.get<double>());
    }
    return numbers;
}

std::int64_t JsonObjectReader::requiredInteger(const char* key) const {
    const std::optional<std::int64_t> number = exactInteger<std::int64_t>(required(key));
    if (!number) {
        fail(key, "is not a 64-bit integer");
    }
    return *number;
}

std::uint32_t JsonObjectReader::requiredUInt32(const char* key) const {
    const std::optional<std::uint32_t> number = exactInteger<std::uint32_t>(required(key));
    if (!number) {
        fail(key, "is not an unsigned 32-bit integer");
    }
    return *number;
}

std::optional<std::int64_t> JsonObjectReader::optionalInteger(const char* key) const {
    return optional(key) == nullptr ? std::nullopt : std::optional(requiredInteger(key));
}

std::optional<bool> JsonObjectReader::optionalBool(const char* key) const {
    const nlohmann::json* value = optional(key);
    if (value == nullptr) {
        return std::nullopt;
    }
    if (!value->is_boolean()) {
        fail(key, "is not a boolean");
    }
    return value->get<bool>();
}

void JsonObjectReader::fail(const char* key, const char* problem) const {
    throw DecodingError("\"" + std::string(key) + "\" of " + what_ + " " + problem);
}

} // namespace tarvex
