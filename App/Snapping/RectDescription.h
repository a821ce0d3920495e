#pragma once

#include "Core/Geometry.h"

#include <string>

namespace tarvex {

/// A rectangle for the log: "(x, y, width, height)", each number in the shortest decimal form that reads back
/// as the same number, with at least one fractional digit and without an exponent.
[[nodiscard]] std::string describe(const Rect& rect);

} // namespace tarvex
