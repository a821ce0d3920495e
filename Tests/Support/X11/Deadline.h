#pragma once

#include <algorithm>
#include <chrono>

namespace tarvex::test {

/// How long a test waits for a condition before it fails. Generous, because a loaded machine is slow; a test
/// that passes never waits for it.
inline constexpr std::chrono::milliseconds defaultPatience{20000};

/// A point in time that waiting must not pass.
class Deadline {
public:
    explicit Deadline(std::chrono::milliseconds patience = defaultPatience)
        : end_{std::chrono::steady_clock::now() + patience} {}

    [[nodiscard]] bool hasPassed() const { return std::chrono::steady_clock::now() >= end_; }

    /// Milliseconds left for a call to poll, at most `limit` and never negative.
    [[nodiscard]] int pollTimeout(int limit) const {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(end_ - std::chrono::steady_clock::now()).count();
        return static_cast<int>(std::clamp<long long>(left, 0, limit));
    }

private:
    std::chrono::steady_clock::time_point end_;
};

} // namespace tarvex::test
