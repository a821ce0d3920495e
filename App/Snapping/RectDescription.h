#pragma once

#include "Core/Geometry.h"

#include <string>

namespace tarvex {

/// A rectangle for the log: "(x, y, width, height)", each number in a short decimal form that reads back as
/// the same number: with at least one fractional digit, very large and very small ones with an exponent.
[[nodiscard]] std::string describe(const Rect& rect);

} // namespace tarvex
