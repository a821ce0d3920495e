#pragma once

#include <algorithm>
#include <cmath>

namespace tarvex {

/// Maps the values of a slider to the whole steps that the toolkit's slider goes in, a thousand to the unit
/// and ten thousand to the slider at least, so that a person cannot tell them from none at all.
class SliderScale {
public:
    SliderScale() = default;

    /// What is no number counts as 0.
    SliderScale(double minimum, double maximum)
        : minimum_(finite(minimum)), maximum_(std::max(finite(maximum), minimum_)) {
        const double range = maximum_ - minimum_;
        if (range > 0) {
            perUnit_ = std::clamp(stepsPerUnit, leastSteps / range, mostSteps / range);
            last_ = rounded(range * perUnit_);
        }
    }

    /// The step at the maximum; the minimum's is 0.
    [[nodiscard]] int last() const { return last_; }

    /// One unit, or a tenth of a shorter slider.
    [[nodiscard]] int keyStep() const { return std::max(std::min(rounded(perUnit_), last_ / 10), 1); }

    /// Five times that.
    [[nodiscard]] int pageStep() const { return 5 * keyStep(); }

    /// The nearest step; a value beyond the ends counts as the end.
    [[nodiscard]] int stepOf(double value) const {
        return std::clamp(rounded((std::clamp(finite(value), minimum_, maximum_) - minimum_) * perUnit_), 0,
                          last_);
    }

    [[nodiscard]] double valueOf(int step) const {
        return step >= last_ ? maximum_ : minimum_ + std::max(step, 0) / perUnit_;
    }

    [[nodiscard]] double minimum() const { return minimum_; }

    [[nodiscard]] double maximum() const { return maximum_; }

private:
    static constexpr double stepsPerUnit = 1000;
    static constexpr double leastSteps = 10000;
    static constexpr double mostSteps = 1e8;
    static constexpr double farthest = 1e9;

    [[nodiscard]] static double finite(double value) {
        return std::isnan(value) ? 0 : std::clamp(value, -farthest, farthest);
    }

    [[nodiscard]] static int rounded(double value) {
        return static_cast<int>(std::lround(std::min(value, mostSteps)));
    }

    double minimum_ = 0;
    double maximum_ = 0;
    double perUnit_ = stepsPerUnit;
    int last_ = 0;
};

} // namespace tarvex
