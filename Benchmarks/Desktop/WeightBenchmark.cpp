#include "Benchmarks/Desktop/DesktopBenchmarks.h"
#include "Benchmarks/Desktop/FloorProgram.h"
#include "Benchmarks/Desktop/ProcessFigures.h"
#include "Benchmarks/Desktop/ScreenProbe.h"
#include "Benchmarks/Support/Stopwatch.h"

#include <stdexcept>

namespace tarvex::benchmark {

namespace {

struct Weight {
    Samples readiness;
    Samples resident;
    Samples proportional;
};

void weigh(test::ChildProcess& process, Weight& weight) {
    // Start-up work that was put off until the loop turns counts as well.
    constexpr std::chrono::milliseconds afterwards{100};
    const test::Deadline deadline;
    do {
        if (deadline.hasPassed()) {
            throw std::runtime_error("a started program does not come to rest");
        }
        pause(afterwards);
    } while (!isAsleep(process.pid()));
    const Memory memory = memoryOf(process.pid());
    weight.resident.add(memory.resident);
    weight.proportional.add(memory.proportional);
}

void startFloor(const test::XServer& server, const std::string& path, Weight& weight) {
    const Stopwatch stopwatch;
    const auto process = startWidgetsFloor(server, path);
    weight.readiness.add(stopwatch.seconds());
    weigh(*process, weight);
}

void startProgram(const test::XServer& server, const std::string& path, Weight& weight) {
    test::TarvexProgram program(server, path);
    const Stopwatch stopwatch;
    program.start();
    weight.readiness.add(stopwatch.seconds());
    weigh(program.process(), weight);
}

} // namespace

void measureWeight(const Programs& programs, const Options& options, Report& report) {
    report.begin(
        "Weight",
        "  Time from the start of the process to readiness, and memory once it waits, against a program\n"
        "  that makes one QApplication and no window. Starts take turns.");
    const test::XServer server;
    const test::WindowManager windowManager(server, test::WindowManagerKind::openbox);
    Weight floor;
    Weight program;
    Weight warmUp;
    startFloor(server, programs.widgetsFloor, warmUp);
    startProgram(server, programs.tarvex, warmUp);
    const int starts = options.runs(200, 2);
    for (int start = 0; start < starts; ++start) {
        startFloor(server, programs.widgetsFloor, floor);
        startProgram(server, programs.tarvex, program);
    }
    Goal goal;
    goal.medianRatio = 1.3;
    report.line("floor, time to readiness", floor.readiness, milliseconds);
    report.line("tarvex, time to readiness", program.readiness, milliseconds, &floor.readiness, goal);
    report.line("floor, resident memory", floor.resident, mebibytes);
    report.line("tarvex, resident memory", program.resident, mebibytes, &floor.resident, goal);
    report.line("floor, proportional share of memory", floor.proportional, mebibytes);
    report.line("tarvex, proportional share of memory", program.proportional, mebibytes, &floor.proportional,
                goal);
}

} // namespace tarvex::benchmark
