#include "Benchmarks/Support/Samples.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace tarvex::benchmark {

double Samples::percentile(double share) const {
    if (values_.empty()) {
        return 0;
    }
    std::vector<double> sorted = values_;
    const auto rank = static_cast<std::size_t>(std::ceil(share * static_cast<double>(sorted.size())));
    const std::size_t index = rank == 0 ? 0 : rank - 1;
    std::nth_element(sorted.begin(), sorted.begin() + static_cast<std::ptrdiff_t>(index), sorted.end());
    return sorted[index];
}

double Samples::sum() const {
    return std::accumulate(values_.begin(), values_.end(), 0.0);
}

} // namespace tarvex::benchmark
