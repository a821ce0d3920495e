#include "Benchmarks/Desktop/Stage.h"

#include "Benchmarks/Desktop/ProcessFigures.h"
#include "Benchmarks/Desktop/ScreenProbe.h"

#include <csignal>
#include <stdexcept>
#include <utility>

namespace tarvex::benchmark {

namespace {

constexpr test::PixelRect home{300, 250, 500, 350};
constexpr std::uint32_t northWest = 1;
constexpr std::uint32_t allFour = 0xF00;
constexpr std::uint32_t fromPager = 0x2000;

test::TestWindowOptions windowOptions() {
    test::TestWindowOptions options;
    options.geometry = home;
    return options;
}

} // namespace

Stage::Stage(const Programs& programs, ZoneLayout layout, test::WindowManagerKind windowManager,
             bool isComposited)
    : server_(layout.width, layout.height),
      windowManager_(server_, windowManager),
      compositor_(isComposited ? std::make_unique<test::Compositor>(server_) : nullptr),
      layout_(std::move(layout)),
      program_(server_, programs.tarvex),
      client_(server_.displayName()),
      pointer_(server_.displayName()),
      keyboard_(server_.displayName()),
      window_(server_.displayName(), windowOptions()) {
    program_.writeConfig(layout_.settings());
    program_.start();
    sendWindowHome();
    settle();
}

void Stage::sendWindowHome() {
    window_.client().sendToWindowManager(
        window_.id(), "_NET_MOVERESIZE_WINDOW",
        {northWest | allFour | fromPager, home.x, home.y, home.width, home.height});
    const auto isHome = [this] {
        const auto frame = window_.managed().visibleFrame();
        const auto inside = window_.managed().clientGeometry();
        return frame && inside && frame->x == home.x && frame->y == home.y && inside->width == home.width &&
               inside->height == home.height;
    };
    window_.client().waitUntil(isHome, "the window is back home");
}

void Stage::drag(test::PixelPoint target) {
    constexpr int steps = 8;
    pointer_.moveTo(window_.managed().titleBarPoint());
    pointer_.press();
    windowManager_.barrier();
    pointer_.glideTo(target, steps);
    settle();
}

void Stage::settle() {
    windowManager_.barrier();
    client_.sync();
    // What wakes it on the way is seen as sleep no more; the pause lets a message reach it first.
    constexpr std::chrono::milliseconds onTheWay{3};
    const test::Deadline deadline;
    do {
        if (deadline.hasPassed()) {
            throw std::runtime_error("the program does not come to rest");
        }
        pause(onTheWay);
    } while (!isFrozen_ && !isAsleep(program_.process().pid()));
}

void Stage::freezeProgram() {
    program_.process().signal(SIGSTOP);
    isFrozen_ = true;
}

void Stage::resumeProgram() {
    program_.process().signal(SIGCONT);
    isFrozen_ = false;
    settle();
}

std::string describe(test::WindowManagerKind windowManager, bool isComposited) {
    return nameOf(windowManager) + (isComposited ? " with picom" : "");
}

} // namespace tarvex::benchmark
