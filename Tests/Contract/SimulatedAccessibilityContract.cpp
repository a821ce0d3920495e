#include "Tests/Contract/AccessibilityContract.h"
#include "Tests/Contract/SimulatedWorld.h"

namespace tarvex::contract {
namespace {

class SimulatedAccessibilityWorld final : public SimulatedWorld<AccessibilityWorld> {
public:
    SimulatedAccessibilityWorld() { desktop_.plugScreen({.number = 1, .frame = {0, 0, 1280, 800}}); }

    AccessibilityPlatform& platform() override { return windows(); }

    int openWindow(const Rect& frame) override { return open(frame, SimulatedWindowKind::application); }

    int openWindowWithMinimumSize(const Rect& frame, Size minimum) override {
        const int window = open(frame, SimulatedWindowKind::application);
        windows().at(window).minimumSize = minimum;
        return window;
    }

    Size minimumFrameSize(int window) override { return windows().at(window).minimumSize; }

    void openPanel(const Rect& frame) override { open(frame, SimulatedWindowKind::panel); }

    void openMenu(const Rect& frame) override { open(frame, SimulatedWindowKind::menu); }

    void openOwnOverlay(const Rect& frame) override { open(frame, SimulatedWindowKind::ownOverlay); }

    void raise(int window) override { windows().raise(window); }

    void moveByHand(int window, Point origin) override {
        const Rect frame = windows().at(window).frame;
        windows().at(window).frame = {origin.x, origin.y, frame.width, frame.height};
    }

    void maximize(int window) override {
        windows().at(window).frame = {0, 0, 1280, 800};
        windows().at(window).isMaximized = true;
    }

    // Nothing here ever waits for a program.
    void freeze(int /*window*/) override {}

    void close(int window) override { desktop_.closeWindow(window); }

    Rect frame(int window) override { return windows().at(window).frame; }

    Point titleBar(int window) override {
        const Rect frame = windows().at(window).frame;
        return {frame.x + frame.width / 2, frame.y + SimulatedDesktop::titleBarHeight / 2};
    }

    Point emptySpot() override { return {1250, 780}; }

private:
    SimulatedAccessibility& windows() { return desktop_.accessibility(); }

    int open(const Rect& frame, SimulatedWindowKind kind) {
        SimulatedWindowState window;
        window.frame = frame;
        window.kind = kind;
        window.partDepth = 4;
        return windows().open(window);
    }
};

INSTANTIATE_TEST_SUITE_P(
    Simulated, AccessibilityContract,
    ::testing::Values(worldFactory<AccessibilityWorld, SimulatedAccessibilityWorld>("Simulated")), worldName);

} // namespace
} // namespace tarvex::contract
