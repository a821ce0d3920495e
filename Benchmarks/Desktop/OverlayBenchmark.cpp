#include "Benchmarks/Desktop/DesktopBenchmarks.h"
#include "Benchmarks/Desktop/FloorProgram.h"
#include "Benchmarks/Desktop/ScreenProbe.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tarvex::benchmark {

namespace {

struct FloorWay {
    std::uint32_t number;
    const char* name;
};

// The numbers are those of the floor's own list.
constexpr std::array ways{FloorWay{1, "mapped with a background"},
                          FloorWay{2, "mapped and filled by a request"},
                          FloorWay{3, "mapped beforehand, unshaped"}};

ZoneLayout makeLayout() {
    ZoneLayout layout;
    layout.verticalSplits = {0.5};
    return layout;
}

class OverlayRig {
public:
    OverlayRig(const Programs& programs, bool isComposited)
        : stage_(programs, makeLayout(), test::WindowManagerKind::openbox, isComposited),
          floor_(stage_.server(), programs.overlayFloor),
          probe_(stage_.client(), stage_.layout().corner(0, 0)) {
        stage_.freezeProgram();
    }

    void measure(bool isCounted) {
        for (std::size_t index = 0; index < ways.size(); ++index) {
            const double time = runFloor(ways[index]);
            if (isCounted) {
                floorTimes[index].add(time);
            }
        }
        stage_.resumeProgram();
        const double time = runProgram();
        stage_.freezeProgram();
        if (isCounted) {
            programTimes.add(time);
        }
    }

    [[nodiscard]] const Samples& bestFloor() const {
        return *std::min_element(floorTimes.begin(), floorTimes.end(),
                                 [](const Samples& a, const Samples& b) { return a.median() < b.median(); });
    }

    std::array<Samples, ways.size()> floorTimes;
    Samples programTimes;

private:
    double runFloor(const FloorWay& way) {
        const ZoneLayout& layout = stage_.layout();
        floor_.command({way.number, 0, 0, static_cast<std::uint32_t>(layout.width),
                        static_cast<std::uint32_t>(layout.height)});
        stage_.settle();
        const double time = press();
        stage_.keyboard().release(test::key::super);
        floor_.command({});
        probe_.waitForReturn();
        return time;
    }

    double runProgram() {
        stage_.sendWindowHome();
        stage_.drag(stage_.layout().zone(0, 0).center());
        const double time = press();
        stage_.keyboard().release(test::key::super);
        probe_.waitForReturn();
        stage_.pointer().release();
        stage_.settle();
        return time;
    }

    double press() {
        probe_.remember();
        const Instant start = std::chrono::steady_clock::now();
        stage_.keyboard().press(test::key::super);
        return secondsBetween(start, probe_.waitForChange());
    }

    Stage stage_;
    FloorProgram floor_;
    ScreenProbe probe_;
};

} // namespace

void measureOverlay(const Programs& programs, const Options& options, Report& report) {
    report.begin(
        "Overlay",
        "  From the modifier's press to the first overlay pixel on the screen, looked for every 0.1 ms,\n"
        "  against the quickest of three bare windows of the same size with an alpha channel.");
    for (const bool isComposited : {false, true}) {
        OverlayRig rig(programs, isComposited);
        const int runs = options.runs(200, 3);
        const int warmUp = options.runs(5, 1);
        for (int run = 0; run < warmUp + runs; ++run) {
            rig.measure(run >= warmUp);
        }
        const std::string desktop = describe(test::WindowManagerKind::openbox, isComposited);
        report.note(desktop);
        for (std::size_t index = 0; index < ways.size(); ++index) {
            report.line(std::string("floor: ") + ways[index].name, rig.floorTimes[index], milliseconds);
        }
        Goal goal;
        goal.medianRatio = 1.5;
        report.line("tarvex, against the quickest", rig.programTimes, milliseconds, &rig.bestFloor(), goal);
    }
}

} // namespace tarvex::benchmark
