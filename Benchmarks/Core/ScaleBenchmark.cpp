#include "Benchmarks/Core/CoreBenchmarks.h"
#include "Benchmarks/Core/DragRig.h"
#include "Benchmarks/Support/Stopwatch.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>

namespace tarvex::benchmark {

namespace {

constexpr Unit nanoseconds{"ns", 1e9, 1};

struct Layout {
    int columns;
    int rows;

    [[nodiscard]] int zones() const { return columns * rows; }
};

constexpr std::array layouts{Layout{2, 1}, Layout{4, 3}, Layout{10, 10}, Layout{40, 25}, Layout{100, 100}};

// Every event enters another zone, anywhere in the grid: the dearest kind, with a new picture.
Samples measureEvents(const Layout& layout, int runs) {
    DragRig rig(layout.columns, layout.rows);
    Samples samples;
    const int warmUp = runs / 10;
    const int stride = std::max(1, layout.zones() * 61 / 100);
    int zone = 0;
    for (int run = -warmUp; run < runs; ++run) {
        zone = (zone + stride) % layout.zones();
        const int column = zone % layout.columns;
        const int row = zone / layout.columns;
        const double time = secondsOf([&] { rig.dragTo(column, row); });
        rig.requireSelected(column, row);
        if (run >= 0) {
            samples.add(time);
        }
    }
    return samples;
}

} // namespace

void measureScale(const Options& options, Report& report) {
    report.begin(
        "Scale",
        "  One dragged event that enters another zone, settings re-read included, by number of zones;\n"
        "  below each line, what a zone more has cost since the line before.");
    std::optional<Layout> lastLayout;
    double lastMedian = 0;
    double exponent = 0;
    for (const Layout& layout : layouts) {
        const int runs = layout.zones() >= 1000 ? options.runs(1000, 20) : options.runs(10000, 100);
        const Samples samples = measureEvents(layout, runs);
        report.line(std::to_string(layout.zones()) + " zones", samples, microseconds);
        const double median = samples.median();
        if (lastLayout) {
            const double added = layout.zones() - lastLayout->zones();
            report.note("    " + format((median - lastMedian) / added, nanoseconds) + " per zone");
            exponent = std::log(median / lastMedian) /
                       std::log(static_cast<double>(layout.zones()) / lastLayout->zones());
        }
        lastLayout = layout;
        lastMedian = median;
    }
    // Linear growth is 1. What the caches no longer hold at ten thousand zones costs more per zone, which is
    // no fault of the algorithm; growth with the square would show as 2.
    constexpr double largestExponent = 1.25;
    report.verdict("time grows with the number of zones to the power " + format(exponent, Unit{"", 1, 2}) +
                       " from 1,000 to 10,000 zones (goal <= " + format(largestExponent, Unit{"", 1, 2}) +
                       ")",
                   exponent <= largestExponent);
}

} // namespace tarvex::benchmark
