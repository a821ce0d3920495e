#pragma once

#include <cstddef>
#include <vector>

namespace tarvex::benchmark {

/// The figures of repeated runs of one thing, all in the same unit.
class Samples {
public:
    void add(double value) { values_.push_back(value); }

    [[nodiscard]] std::size_t count() const { return values_.size(); }

    /// The smallest value that at least that share (0 to 1) of the runs do not exceed; 0 without runs.
    [[nodiscard]] double percentile(double share) const;

    [[nodiscard]] double median() const { return percentile(0.5); }

    [[nodiscard]] double percentile95() const { return percentile(0.95); }

    [[nodiscard]] double sum() const;

private:
    std::vector<double> values_;
};

} // namespace tarvex::benchmark
