#include "Benchmarks/Desktop/DesktopBenchmarks.h"

#include <cstdio>
#include <exception>
#include <sys/prctl.h>

int main(int argc, char** argv) {
    using namespace tarvex::benchmark;
    // Pauses of a tenth of a millisecond are to last that long.
    ::prctl(PR_SET_TIMERSLACK, 1UL);
    try {
        const Options options = parseOptions(argc, argv, {"snap", "overlay", "drag", "idle", "weight"});
        const Programs programs{TARVEX_PROGRAM, TARVEX_SNAP_FLOOR, TARVEX_OVERLAY_FLOOR, TARVEX_MOTION_FLOOR,
                                TARVEX_WIDGETS_FLOOR};
        Report report;
        if (options.wants("snap")) {
            measureSnap(programs, options, report);
        }
        if (options.wants("overlay")) {
            measureOverlay(programs, options, report);
        }
        if (options.wants("drag")) {
            measureDrag(programs, options, report);
        }
        if (options.wants("idle")) {
            measureIdle(programs, options, report);
        }
        if (options.wants("weight")) {
            measureWeight(programs, options, report);
        }
        report.end();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
