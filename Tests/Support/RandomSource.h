#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace tarvex {

/// Random values that are the same on every run with the same seed. A test names the seed in a SCOPED_TRACE.
class RandomSource {
public:
    explicit RandomSource(std::uint32_t seed) : engine_(seed) {}

    /// A value of [low, high).
    [[nodiscard]] double between(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(engine_);
    }

    /// A value of [0, 1).
    [[nodiscard]] double unit() { return between(0, 1); }

    /// A whole number of [low, high].
    template <typename Integer>
    [[nodiscard]] Integer integer(Integer low, Integer high) {
        return std::uniform_int_distribution<Integer>(low, high)(engine_);
    }

    [[nodiscard]] bool coin() { return integer(0, 1) == 1; }

    /// Split positions as a file may hold them: unsorted, repeated, clustered, on and beyond the edges.
    [[nodiscard]] std::vector<double> splits(std::size_t maxCount) {
        std::vector<double> values(integer(std::size_t{0}, maxCount));
        for (std::size_t index = 0; index < values.size(); ++index) {
            const double earlier = index == 0 ? unit() : values[integer(std::size_t{0}, index - 1)];
            switch (integer(0, 5)) {
            case 0:
                values[index] = earlier;
                break;
            case 1:
                values[index] = earlier + between(-0.0003, 0.0003);
                break;
            case 2:
                values[index] = between(-2, 3);
                break;
            case 3:
                values[index] = coin() ? between(0, 0.0003) : between(0.9997, 1);
                break;
            default:
                values[index] = unit();
                break;
            }
        }
        return values;
    }

    /// Text of any characters, from no length at all.
    [[nodiscard]] std::string text() {
        static const std::vector<std::string> characters = {
            "a", "Z", "0", " ", "\"",     "\\",     "\n",     "\x01", "\u00e4",
            "/", "_", "{", "}", "\u00df", "\u2028", "\u65e5", "\t",   "\U0001F600"};
        std::string result;
        for (int remaining = integer(0, 12); remaining > 0; --remaining) {
            result += characters[integer(std::size_t{0}, characters.size() - 1)];
        }
        return result;
    }

private:
    std::mt19937 engine_;
};

} // namespace tarvex
