#include "App/Snapping/RectDescription.h"

#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

namespace tarvex {

namespace {

// Beyond this a double has no fractional digits to show and a plain form would grow without bound.
constexpr double largestPlainNumber = 1e16;

std::string describeNumber(double number) {
    std::array<char, 64> digits{};
    const bool isPlain = std::abs(number) < largestPlainNumber;
    const auto format = isPlain ? std::chars_format::fixed : std::chars_format::general;
    auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number, format);
    if (result.ec != std::errc()) {
        result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    }
    std::string text(digits.data(), result.ptr);
    if (text.find_first_not_of("-0123456789") == std::string::npos) {
        text += ".0";
    }
    return text;
}

} // namespace

std::string describe(const Rect& rect) {
    return "(" + describeNumber(rect.x) + ", " + describeNumber(rect.y) + ", " + describeNumber(rect.width) +
           ", " + describeNumber(rect.height) + ")";
}

} // namespace tarvex
