#include "App/Snapping/RectDescription.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace tarvex {

namespace {

std::string describeNumber(double number) {
    if (std::isnan(number)) {
        return "nan";
    }
    if (std::isinf(number)) {
        return number > 0 ? "inf" : "-inf";
    }
    return nlohmann::json(number).dump();
}

} // namespace

std::string describe(const Rect& rect) {
    return "(" + describeNumber(rect.x) + ", " + describeNumber(rect.y) + ", " + describeNumber(rect.width) +
           ", " + describeNumber(rect.height) + ")";
}

} // namespace tarvex
