#include "Benchmarks/Desktop/DesktopBenchmarks.h"
#include "Benchmarks/Desktop/FloorProgram.h"
#include "Benchmarks/Desktop/MotionStream.h"
#include "Benchmarks/Desktop/ProcessFigures.h"
#include "Benchmarks/Desktop/ScreenProbe.h"

#include <functional>
#include <optional>

namespace tarvex::benchmark {

namespace {

// Long enough for the clock, and for one crossing when there are two in a second.
constexpr int eventsPerRun = 500;

ZoneLayout makeLayout() {
    ZoneLayout layout;
    layout.verticalSplits = {0.25, 0.5, 0.75};
    layout.horizontalSplits = {1.0 / 3, 2.0 / 3};
    return layout;
}

// A drag that goes on with the zones shown, in the middle row, and a bare client that follows it too.
class DragRig {
public:
    DragRig(const Programs& programs, bool isComposited)
        : stage_(programs, makeLayout(), test::WindowManagerKind::openbox, isComposited),
          floor_(stage_.server(), programs.motionFloor),
          motion_(stage_.server().displayName()) {
        ScreenProbe probe(stage_.client(), stage_.layout().corner(1, 1));
        stage_.sendWindowHome();
        stage_.drag(stage_.layout().zone(1, 1).center());
        probe.remember();
        stage_.keyboard().press(test::key::super);
        static_cast<void>(probe.waitForChange());
        stage_.settle();
        floor_.command({1});
    }

    // Seconds of processor time per thousand events.
    void measureProcessor(int runs, const std::function<test::PixelPoint(int)>& path, Samples& program,
                          Samples& floor) {
        motion_.run(eventsPerRun, path);
        for (int run = 0; run < runs; ++run) {
            const double programBefore = processorSeconds(stage_.program().process().pid());
            const double floorBefore = processorSeconds(floor_.pid());
            motion_.run(eventsPerRun, [&](int number) { return path(number + run * eventsPerRun); });
            constexpr double share = 1000.0 / eventsPerRun;
            program.add((processorSeconds(stage_.program().process().pid()) - programBefore) * share);
            floor.add((processorSeconds(floor_.pid()) - floorBefore) * share);
        }
    }

    // From the first event inside the other zone until that zone is seen to be selected.
    void measureLag(int crossings, Samples& lag);

    [[nodiscard]] test::PixelPoint insideOneZone(int number) const {
        constexpr int length = 200;
        const test::PixelPoint center = stage_.layout().zone(1, 1).center();
        return backAndForth(number, {center.x - length / 2, center.y}, length);
    }

    [[nodiscard]] test::PixelPoint acrossTwoZones(int number) const {
        return backAndForth(number, {boundary() - eventsPerRun / 2, stage_.layout().zone(1, 1).center().y},
                            eventsPerRun);
    }

private:
    // The first column of pixels of the zone on the right.
    [[nodiscard]] int boundary() const { return stage_.layout().width / 2; }

    Stage stage_;
    FloorProgram floor_;
    MotionStream motion_;
};

void DragRig::measureLag(int crossings, Samples& lag) {
    constexpr int eventsPerCrossing = 100;
    floor_.command({});
    const int y = stage_.layout().zone(1, 1).center().y;
    for (int crossing = 0; crossing < crossings; ++crossing) {
        const bool isToRight = crossing % 2 == 0;
        const int direction = isToRight ? 1 : -1;
        ScreenProbe entered(stage_.client(), stage_.layout().corner(isToRight ? 2 : 1, 1));
        // The last pixel of the zone that is left.
        const int start = isToRight ? boundary() - 1 : boundary();
        const auto away = [&](int number) {
            return test::PixelPoint{start - direction * (eventsPerCrossing - number), y};
        };
        motion_.run(eventsPerCrossing, away);
        stage_.settle();
        entered.remember();
        const auto path = [&](int number) { return test::PixelPoint{start + direction * number, y}; };
        Instant crossedAt;
        std::optional<Instant> seenAt;
        int next = 0;
        motion_.run(
            eventsPerCrossing,
            [&](int number) {
                next = number;
                if (number == 1) {
                    crossedAt = std::chrono::steady_clock::now();
                }
                return path(number);
            },
            [&](int number) {
                if (number >= 1 && !seenAt && entered.hasChanged()) {
                    seenAt = std::chrono::steady_clock::now();
                }
            });
        lag.add(secondsBetween(crossedAt, seenAt ? *seenAt : entered.waitForChange()));
    }
}

} // namespace

void measureDrag(const Programs& programs, const Options& options, Report& report) {
    report.begin(
        "Drag",
        "  Processor time of the program per 1,000 motion events at 1000 Hz, 12 zones shown; beside it a\n"
        "  bare client that follows the same drag and asks for the position once per event.\n"
        "  Lag: from the first event inside another zone to the first pixel of its selection.");
    const int runs = options.runs(200, 2);
    for (const bool isComposited : {false, true}) {
        DragRig rig(programs, isComposited);
        report.note(describe(test::WindowManagerKind::openbox, isComposited));
        Goal processorGoal;
        processorGoal.medianValue = 0.050;
        const auto measure = [&](const char* name, const std::function<test::PixelPoint(int)>& path) {
            Samples program;
            Samples floor;
            rig.measureProcessor(runs, path, program, floor);
            report.line(std::string("floor, ") + name, floor, milliseconds);
            report.line(std::string("tarvex, ") + name, program, milliseconds, &floor, processorGoal);
        };
        measure("inside one zone", [&](int number) { return rig.insideOneZone(number); });
        measure("two crossings a second", [&](int number) { return rig.acrossTwoZones(number); });
        Samples lag;
        rig.measureLag(runs, lag);
        Goal lagGoal;
        if (!isComposited) {
            lagGoal.percentile95Value = 0.005;
        }
        report.line(isComposited ? "lag, with the compositor's own" : "lag", lag, milliseconds, nullptr,
                    lagGoal);
    }
}

} // namespace tarvex::benchmark
