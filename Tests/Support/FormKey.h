#pragma once

#include <cstdint>

namespace tarvex {

/// A key that means something to a window with controls.
enum class FormKey : std::uint8_t { tab, space, enter, left, right, pageUp, pageDown, home, end };

} // namespace tarvex
