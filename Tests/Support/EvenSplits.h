#pragma once

#include <cstddef>
#include <vector>

namespace tarvex {

/// So many splits that divide the unit interval evenly, in rising order.
[[nodiscard]] inline std::vector<double> evenSplits(std::size_t count) {
    std::vector<double> splits;
    splits.reserve(count);
    for (std::size_t index = 1; index <= count; ++index) {
        splits.push_back(static_cast<double>(index) / static_cast<double>(count + 1));
    }
    return splits;
}

} // namespace tarvex
