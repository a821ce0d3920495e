#include "Benchmarks/Desktop/DesktopBenchmarks.h"
#include "Benchmarks/Desktop/FloorProgram.h"
#include "Benchmarks/Desktop/FrameObserver.h"
#include "Benchmarks/Desktop/ScreenProbe.h"

#include <array>
#include <stdexcept>

namespace tarvex::benchmark {

namespace {

// Four zones of four sizes, so that every snap moves and resizes.
ZoneLayout makeLayout() {
    ZoneLayout layout;
    layout.verticalSplits = {0.4};
    layout.horizontalSplits = {0.6};
    return layout;
}

class SnapRig {
public:
    SnapRig(const Programs& programs, test::WindowManagerKind windowManager, bool isComposited)
        : stage_(programs, makeLayout(), windowManager, isComposited),
          floor_(stage_.server(), programs.snapFloor),
          observer_(stage_.server().displayName(), stage_.window().id()) {
        stage_.freezeProgram();
    }

    /// The same drag for both, into the zone that the number stands for.
    void measure(int zone, bool isCounted) {
        const int column = zone % 2;
        const int row = zone / 2 % 2;
        const double floorTime = runFloor(column, row);
        stage_.resumeProgram();
        const double programTime = runProgram(column, row);
        stage_.freezeProgram();
        if (isCounted) {
            floorTimes.add(floorTime);
            programTimes.add(programTime);
        }
    }

    Samples floorTimes;
    Samples programTimes;

private:
    double runFloor(int column, int row) {
        const test::PixelRect target = stage_.layout().zone(column, row);
        stage_.sendWindowHome();
        stage_.drag(target.center());
        const test::PixelRect inside = test::shrunk(target, stage_.window().managed().frameExtents());
        floor_.command({stage_.window().id(), static_cast<std::uint32_t>(target.x),
                        static_cast<std::uint32_t>(target.y), static_cast<std::uint32_t>(inside.width),
                        static_cast<std::uint32_t>(inside.height)});
        const double time = release(target);
        floor_.command({});
        return time;
    }

    double runProgram(int column, int row) {
        const test::PixelRect target = stage_.layout().zone(column, row);
        ScreenProbe overlay(stage_.client(), stage_.layout().corner(column, row));
        stage_.sendWindowHome();
        stage_.drag(target.center());
        overlay.remember();
        stage_.keyboard().press(test::key::super);
        static_cast<void>(overlay.waitForChange());
        stage_.settle();
        const double time = release(target);
        stage_.keyboard().release(test::key::super);
        return time;
    }

    double release(const test::PixelRect& target) {
        const test::PixelRect inside = test::shrunk(target, stage_.window().managed().frameExtents());
        observer_.expect(target, inside.width, inside.height);
        const Instant start = std::chrono::steady_clock::now();
        stage_.pointer().release();
        static_cast<void>(observer_.waitForArrival());
        stage_.settle();
        // The last change counts: a window that came, went and came back was not there the first time.
        const std::optional<Instant> arrival = observer_.arrival();
        if (!arrival || stage_.window().managed().visibleFrame() != target) {
            throw std::runtime_error("the window did not stay at " + test::describe(target));
        }
        return secondsBetween(start, *arrival);
    }

    Stage stage_;
    FloorProgram floor_;
    FrameObserver observer_;
};

} // namespace

void measureSnap(const Programs& programs, const Options& options, Report& report) {
    report.begin(
        "Snap",
        "  From the button's release to the window's final frame, against a bare client that sends one\n"
        "  request for the same window on the same release. Floor and program take turns.");
    for (const auto windowManager : {test::WindowManagerKind::openbox, test::WindowManagerKind::xfwm4}) {
        SnapRig rig(programs, windowManager, false);
        const int runs = options.runs(400, 4);
        const int warmUp = options.runs(8, 1);
        for (int run = 0; run < warmUp + runs; ++run) {
            rig.measure(run, run >= warmUp);
        }
        report.line("floor, " + nameOf(windowManager), rig.floorTimes, milliseconds);
        Goal goal;
        goal.medianRatio = 1.3;
        goal.percentile95Ratio = 1.6;
        report.line("tarvex, " + nameOf(windowManager), rig.programTimes, milliseconds, &rig.floorTimes,
                    goal);
    }
}

} // namespace tarvex::benchmark
