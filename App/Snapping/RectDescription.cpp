#include "App/Snapping/RectDescription.h"

#include <cmath>
#include <limits>
#include <locale>
#include <sstream>

namespace tarvex {

namespace {

/// Enough for the smallest number above zero to be told from all others.
constexpr int mostFractionalDigits = std::numeric_limits<double>::max_digits10 -
                                     std::numeric_limits<double>::min_exponent10 +
                                     std::numeric_limits<double>::digits10;

std::string inFixedForm(double number, int fractionalDigits) {
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text.precision(fractionalDigits);
    text << std::fixed << number;
    return text.str();
}

double read(const std::string& text) {
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    double number = 0;
    stream >> number;
    return number;
}

std::string describeNumber(double number) {
    if (std::isnan(number)) {
        return "nan";
    }
    if (std::isinf(number)) {
        return number > 0 ? "inf" : "-inf";
    }
    // The oldest macOS that the program runs on has no std::to_chars for floating-point numbers.
    for (int digits = 1; digits < mostFractionalDigits; ++digits) {
        std::string text = inFixedForm(number, digits);
        if (read(text) == number) {
            return text;
        }
    }
    return inFixedForm(number, mostFractionalDigits);
}

} // namespace

std::string describe(const Rect& rect) {
    return "(" + describeNumber(rect.x) + ", " + describeNumber(rect.y) + ", " + describeNumber(rect.width) +
           ", " + describeNumber(rect.height) + ")";
}

} // namespace tarvex
