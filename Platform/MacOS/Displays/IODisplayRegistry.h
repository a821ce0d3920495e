#pragma once

#include "Core/Displays/DisplayPlatform.h"

#include <memory>

namespace tarvex {

/// A walk over the "IODisplayConnect" services of the I/O registry; null when the registry cannot be
/// searched.
[[nodiscard]] std::unique_ptr<DisplayRegistryIterator> openIODisplayRegistry();

} // namespace tarvex
