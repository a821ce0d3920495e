#pragma once

#include <vector>

namespace tarvex {

/// The one place where raw split lists are cleaned before use.
class GridSplitNormalizer {
public:
    /// The tolerance that the whole program uses, in normalized units.
    static constexpr double standardEpsilon = 0.0001;

    /// @param epsilon how close to an outer edge a split is dropped, and how close to another it is merged
    explicit GridSplitNormalizer(double epsilon) : epsilon_(epsilon) {}

    [[nodiscard]] double epsilon() const { return epsilon_; }

    /// A strictly increasing list of the splits that lie inside the unit interval, more than epsilon apart.
    /// Values on or near an outer edge, outside the interval, or NaN are dropped; of a cluster the smallest
    /// value survives.
    [[nodiscard]] std::vector<double> normalizeSplits(const std::vector<double>& splits) const;

private:
    [[nodiscard]] std::vector<double> deduplicate(const std::vector<double>& sorted) const;

    double epsilon_;
};

} // namespace tarvex
