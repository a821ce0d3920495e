#include "Benchmarks/Desktop/DesktopBenchmarks.h"
#include "Benchmarks/Desktop/FloorProgram.h"
#include "Benchmarks/Desktop/MotionStream.h"
#include "Benchmarks/Desktop/ProcessFigures.h"
#include "Benchmarks/Desktop/ScreenProbe.h"

#include <string>

namespace tarvex::benchmark {

namespace {

constexpr Unit perSecond{"/s", 1, 0};
constexpr int eventsPerSecond = 1000;

ZoneLayout makeLayout() {
    ZoneLayout layout;
    layout.verticalSplits = {0.5};
    return layout;
}

// A whole drag first: what it leaves behind must be quiet too.
void dragOnce(Stage& stage) {
    ScreenProbe probe(stage.client(), stage.layout().corner(0, 0));
    stage.drag(stage.layout().zone(0, 0).center());
    probe.remember();
    stage.keyboard().press(test::key::super);
    static_cast<void>(probe.waitForChange());
    stage.pointer().release();
    stage.keyboard().release(test::key::super);
    stage.settle();
}

// One value per second: how often the program woke.
Samples measureSeconds(Stage& stage, int seconds, bool isPointerMoving) {
    MotionStream motion(stage.server().displayName());
    const pid_t program = stage.program().process().pid();
    constexpr int length = 500;
    Samples samples;
    for (int second = 0; second < seconds; ++second) {
        const long before = wakeUps(program);
        if (isPointerMoving) {
            motion.run(eventsPerSecond, [&](int number) { return backAndForth(number, {400, 800}, length); });
        } else {
            pause(std::chrono::seconds(1));
        }
        samples.add(static_cast<double>(wakeUps(program) - before));
    }
    return samples;
}

} // namespace

void measureIdle(const Programs& programs, const Options& options, Report& report) {
    report.begin("Idle",
                 "  Wake-ups of all threads of the program in every second, with no button down, and its\n"
                 "  processor time while the pointer moves, beside an empty Qt program's.");
    Stage stage(programs, makeLayout(), test::WindowManagerKind::openbox, false);
    const auto empty = startWidgetsFloor(stage.server(), programs.widgetsFloor);
    dragOnce(stage);
    const int seconds = options.runs(30, 2);
    const Samples still = measureSeconds(stage, seconds, false);
    const pid_t program = stage.program().process().pid();
    const double programBefore = processorSeconds(program);
    const double emptyBefore = processorSeconds(empty->pid());
    const Samples moving = measureSeconds(stage, seconds, true);
    Samples programTime;
    programTime.add(processorSeconds(program) - programBefore);
    Samples emptyTime;
    emptyTime.add(processorSeconds(empty->pid()) - emptyBefore);
    report.line("floor: pointer still", still, perSecond);
    report.line("pointer moving at 1000 Hz", moving, perSecond);
    report.verdict("in " + std::to_string(seconds) + " s: still " + format(still.sum(), Unit{"", 1, 0}) +
                       ", moving " + format(moving.sum(), Unit{"", 1, 0}) + " wake-ups (goal: no more)",
                   moving.sum() <= still.sum());
    report.line("processor time of an empty Qt program, pointer moving", emptyTime, milliseconds);
    report.line("processor time of tarvex, pointer moving", programTime, milliseconds);
    const double share = programTime.sum() / seconds;
    report.verdict("which is " + format(share, Unit{"%", 100, 3}) + " of a core (goal: under 0.1)",
                   share < 0.001);
}

} // namespace tarvex::benchmark
