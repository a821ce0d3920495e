#pragma once

#include <chrono>

namespace tarvex::benchmark {

/// Seconds since it was made.
class Stopwatch {
public:
    [[nodiscard]] double seconds() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
    }

private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/// How long a call takes, in seconds.
template <typename Call>
[[nodiscard]] double secondsOf(Call&& call) {
    const Stopwatch stopwatch;
    call();
    return stopwatch.seconds();
}

} // namespace tarvex::benchmark
