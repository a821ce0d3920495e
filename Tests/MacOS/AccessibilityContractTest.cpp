#include "Tests/Contract/AccessibilityContract.h"

#include "Platform/MacOS/Accessibility/MacAccessibilityPlatform.h"
#include "Tests/MacOS/MacWindows.h"
#include "Tests/MacOS/MacWorld.h"

namespace tarvex::contract {
namespace {

class MacAccessibilityWorld final : public MacWorld<AccessibilityWorld> {
public:
    AccessibilityPlatform& platform() override { return platform_; }

    int openWindow(const Rect& frame) override {
        const int number = static_cast<int>(windows_.size());
        windows_.push_back(openMacWindow(number + 1, frame));
        return number;
    }

    int openWindowWithMinimumSize(const Rect& frame, Size minimum) override {
        const int window = openWindow(frame);
        tree().at(at(window).window).minimumSize = {minimum.width, minimum.height};
        return window;
    }

    Size minimumFrameSize(int window) override {
        const CGSize size = tree().at(at(window).window).minimumSize;
        return {size.width, size.height};
    }

    void openPanel(const Rect& frame) override { openMacPanel(100, frame); }

    void openMenu(const Rect& frame) override { openMacPanel(101, frame); }

    void openOwnOverlay(const Rect& frame) override { openMacPanel(102, frame, true); }

    void raise(int window) override { tree().raise(at(window).window); }

    void moveByHand(int window, Point origin) override {
        tree().at(at(window).window).attributes["AXPosition"] = CGPoint{origin.x, origin.y};
    }

    void maximize(int window) override {
        moveByHand(window, {0, 0});
        tree().at(at(window).window).attributes["AXSize"] = CGSize{1280, 800};
    }

    void freeze(int window) override { tree().freeze(at(window).program); }

    bool knowsFrozenWindows() override { return false; }

    double now() override { return fake::mac().runLoop.now(); }

    void close(int window) override {
        const MacWindow& closed = at(window);
        tree().hide(closed.window);
        tree().at(closed.window).exists = false;
        for (const fake::ElementId part : closed.parts) {
            tree().at(part).exists = false;
        }
    }

    Rect frame(int window) override {
        const CGRect frame = tree().frameOf(at(window).window);
        return {frame.origin.x, frame.origin.y, frame.size.width, frame.size.height};
    }

    Point titleBar(int window) override { return {frame(window).x + 50, frame(window).y + 10}; }

    Point emptySpot() override { return {1250, 780}; }

private:
    static fake::FakeAccessibility& tree() { return fake::mac().accessibility; }

    MacWindow& at(int window) { return windows_.at(static_cast<std::size_t>(window)); }

    MacAccessibilityPlatform platform_;
    std::vector<MacWindow> windows_;
};

INSTANTIATE_TEST_SUITE_P(MacOS, AccessibilityContract,
                         ::testing::Values(worldFactory<AccessibilityWorld, MacAccessibilityWorld>("Fake")),
                         worldName);

} // namespace
} // namespace tarvex::contract
