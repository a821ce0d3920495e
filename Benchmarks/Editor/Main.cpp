// How long the zone editor takes to follow the pointer.

#include "Benchmarks/Desktop/MotionStream.h"
#include "Benchmarks/Editor/EditorRig.h"
#include "Benchmarks/Support/Options.h"
#include "Benchmarks/Support/Report.h"
#include "Benchmarks/Support/Stopwatch.h"
#include "Tests/Support/X11/Pointer.h"

#include <QGuiApplication>

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <string>
#include <thread>

namespace tarvex::benchmark {

namespace {

struct Layout {
    int columns;
    int rows;
};

constexpr std::array layouts{Layout{4, 3}, Layout{5, 2}, Layout{10, 10}, Layout{20, 20}};

MouseEvent at(double x, double y) {
    return {{x * EditorRig::width, (1 - y) * EditorRig::height}, 0};
}

// A line that follows the pointer, the dearest of movements: zones, sizes and the line all change.
Samples measureRedraws(const Layout& layout, int runs) {
    EditorRig rig(layout.columns, layout.rows);
    // Beside the line in the middle of the lowest row, so that a new one is begun.
    const double start = 1 - 0.5 / layout.rows;
    rig.view().mouseDown(at(0.5 / layout.columns, start));
    rig.settle();
    Samples samples;
    for (int run = -10; run < runs; ++run) {
        const int picturesBefore = rig.pictures();
        const double y = start - 0.3 / layout.rows * (run + 11) / (runs + 11);
        const double time = secondsOf([&] {
            rig.view().mouseDragged(at(0.5 / layout.columns, y));
            rig.settle();
        });
        if (rig.pictures() != picturesBefore + 1) {
            throw std::runtime_error("not one picture was drawn");
        }
        if (run >= 0) {
            samples.add(time);
        }
    }
    return samples;
}

// Whether pictures keep up with a fast mouse, whatever they cost.
void measureFollowing(const Layout& layout, int events, Report& report) {
    EditorRig rig(layout.columns, layout.rows);
    test::Pointer pointer(rig.server().displayName());
    const int x = EditorRig::width / layout.columns / 2;
    const int y = EditorRig::height - EditorRig::height / layout.rows / 2;
    pointer.moveTo({x, y});
    pointer.press();
    rig.pumpUntil([&] { return rig.view().pendingSplit().has_value(); });
    const int before = rig.pictures();
    std::atomic<bool> isDone = false;
    const auto path = [&](int number) { return test::PixelPoint{x, y - 1 - number % 97}; };
    std::thread mouse([&] {
        MotionStream(rig.server().displayName()).run(events, path);
        isDone = true;
    });
    rig.pumpUntil([&] { return isDone.load(); });
    mouse.join();
    const auto newest = (path(events - 1).y + 0.5) / EditorRig::height;
    double lag =
        secondsOf([&] { rig.pumpUntil([&] { return rig.view().pendingSplit()->value == newest; }); });
    lag += secondsOf([&] { rig.settle(); });
    const int pictures = rig.pictures() - before;
    pointer.release();
    const std::string zones = std::to_string(layout.columns * layout.rows) + " zones: ";
    report.note("  " + zones + std::to_string(pictures) + " pictures for " + std::to_string(events) +
                " events at 1000 Hz");
    report.verdict("  " + zones + "the newest state stood " + format(lag, milliseconds) +
                       " after the last event (goal <= 20 ms)",
                   lag <= 0.020);
}

void measure(const Options& options, Report& report) {
    report.begin(
        "Editor",
        "  From one movement of a line being placed to the picture in the server, 2560 by 1440 pixels,\n"
        "  software-rendered; then how the pictures follow a thousand movements a second.");
    for (const Layout& layout : layouts) {
        Goal goal;
        if (layout.columns * layout.rows == 12) {
            goal.medianValue = 0.004;
        }
        report.line(std::to_string(layout.columns * layout.rows) + " zones",
                    measureRedraws(layout, options.runs(300, 5)), milliseconds, nullptr, goal);
    }
    for (const Layout& layout : layouts) {
        measureFollowing(layout, options.runs(2000, 50), report);
    }
}

} // namespace

} // namespace tarvex::benchmark

int main(int argc, char** argv) {
    using namespace tarvex::benchmark;
    // Fonts need an application; the windows are the adapter's own.
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const QGuiApplication application(argc, argv);
    try {
        const Options options = parseOptions(argc, argv, {"editor"});
        Report report;
        measure(options, report);
        report.end();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
