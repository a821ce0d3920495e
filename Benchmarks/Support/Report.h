#pragma once

#include "Benchmarks/Support/Samples.h"

#include <optional>
#include <string>
#include <string_view>

namespace tarvex::benchmark {

/// How the figures of a line are printed: the value is multiplied by the scale.
struct Unit {
    const char* name = "";
    double scale = 1;
    int decimals = 2;
};

inline constexpr Unit microseconds{"us", 1e6, 1};
inline constexpr Unit milliseconds{"ms", 1e3, 2};
inline constexpr Unit mebibytes{"MiB", 1.0 / 1024 / 1024, 1};

/// The most that a line may reach. An absent limit does not count.
struct Goal {
    /// Against the floor's median and 95th percentile.
    std::optional<double> medianRatio;
    std::optional<double> percentile95Ratio;
    /// In the unit of the line.
    std::optional<double> medianValue;
    std::optional<double> percentile95Value;
};

/// Prints the figures as a table on standard output, one line as soon as it is measured.
class Report {
public:
    /// Starts a table: its name, and one line per sentence on what is measured.
    void begin(std::string_view title, std::string_view meaning);

    /// A line without a goal, such as the floor that others are compared with.
    void line(std::string_view name, const Samples& samples, Unit unit);

    /// A line with a goal; the floor may be left out where the goal has no ratio.
    void line(std::string_view name, const Samples& samples, Unit unit, const Samples* floor,
              const Goal& goal);

    /// A line of text within the table.
    void note(std::string_view text);

    /// A line of text that says whether a goal was reached.
    void verdict(std::string_view text, bool isReached);

    /// The closing line: how many goals were reached.
    void end() const;

private:
    int goals_ = 0;
    int reached_ = 0;
};

/// The figure with the decimals and the name of its unit.
[[nodiscard]] std::string format(double value, Unit unit);

} // namespace tarvex::benchmark
