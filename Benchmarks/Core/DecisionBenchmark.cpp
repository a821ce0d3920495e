#include "Benchmarks/Core/CoreBenchmarks.h"
#include "Benchmarks/Core/DragRig.h"
#include "Benchmarks/Support/Stopwatch.h"
#include "Platform/Posix/FileDescriptor.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <fcntl.h>
#include <stdexcept>
#include <string>

namespace tarvex::benchmark {

namespace {

// The least that can be done to have the settings: no question whether the file is there, and a buffer that
// is large enough from the start.
std::size_t openReadAndParse(const std::string& path, std::string& buffer) {
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    const ssize_t length = ::read(file.get(), buffer.data(), buffer.size());
    if (length <= 0 || static_cast<std::size_t>(length) == buffer.size()) {
        throw std::runtime_error("cannot read " + path);
    }
    return nlohmann::json::parse(buffer.data(), buffer.data() + length).size();
}

} // namespace

void measureDecision(const Options& options, Report& report) {
    constexpr int columns = 4;
    constexpr int rows = 3;
    DragRig rig(columns, rows);
    std::string buffer(std::size_t{1} << 16, '\0');
    Samples floor;
    Samples inside;
    Samples crossing;
    const int runs = options.runs(20000, 200);
    const int warmUp = options.runs(1000, 20);
    int pictures = 0;
    for (int run = -warmUp; run < runs; ++run) {
        const int column = (run + warmUp) % columns;
        const double floorTime = secondsOf([&] { openReadAndParse(rig.settingsPath(), buffer); });
        const double crossingTime = secondsOf([&] { rig.dragTo(column, 1); });
        const int before = rig.pictureCount();
        const double insideTime = secondsOf([&] { rig.dragTo(column, 1); });
        pictures += rig.pictureCount() - before;
        rig.requireSelected(column, 1);
        if (run >= 0) {
            floor.add(floorTime);
            crossing.add(crossingTime);
            inside.add(insideTime);
        }
    }
    report.begin(
        "Decision",
        "  One dragged event through the whole snap controller, 12 zones, settings re-read included,\n"
        "  against opening, reading and parsing the same settings file alone.");
    report.line("floor: open, read and parse once", floor, microseconds);
    Goal goal;
    goal.medianRatio = 3;
    report.line("event inside one zone", inside, microseconds, &floor, goal);
    report.line("event that enters another zone", crossing, microseconds, &floor, goal);
    report.verdict("pictures drawn for events inside one zone: " + std::to_string(pictures), pictures == 0);
}

} // namespace tarvex::benchmark
