#include "Tests/MacOS/MacSnapping.h"
#include "Tests/MacOS/MacWindows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

// Desktops on which another display reaches above the primary one, so that the top of the desktop, where
// accessibility space begins, is not the top of the primary display, where the system's own space begins.
namespace tarvex {
namespace {

/// One arrangement of a primary display of 1440 by 900 points and another one.
struct Desktop {
    const char* name;
    /// The other display, in the system's own space.
    Rect other;
    /// The left half of the other display with its margin, in the system's own space.
    Rect leftZone;
    /// A point in that zone, in screen space.
    Point inLeftZone;

    friend void PrintTo(const Desktop& desktop, std::ostream* stream) { *stream << desktop.name; }
};

class MacTallDesktop : public testing::TestWithParam<Desktop> {
protected:
    MacTallDesktop() {
        fake::mac().displays.all = {{.number = 1, .bounds = nativeRect({0, 0, 1440, 900})},
                                    {.number = 2, .bounds = nativeRect(GetParam().other)}};
        window_ = openMacWindow(1, windowFrame);
        snapping_.controller().start();
    }

    [[nodiscard]] CGRect frame() const { return fake::mac().accessibility.frameOf(window_.window); }

    void snapToTheOtherDisplay() {
        snapping_.press(titleBar);
        snapping_.hold(kCGEventFlagMaskCommand);
        snapping_.dragTo(GetParam().inLeftZone);
        snapping_.release();
    }

    static void expectFrame(const CGRect& frame, const Rect& expected) {
        EXPECT_EQ((Rect{frame.origin.x, frame.origin.y, frame.size.width, frame.size.height}), expected);
    }

    /// On the primary display, in the system's own space, and a point on its title bar in screen space.
    static constexpr Rect windowFrame{300, 200, 400, 300};
    static constexpr Point titleBar{400, 695};

    MacWindow window_;
    MacSnapping snapping_;
};

TEST_P(MacTallDesktop, WindowUnderThePointIsFoundWhereItIs) {
    snapping_.press(titleBar);
    EXPECT_NE(snapping_.controller().activeWindow(), nullptr);
    EXPECT_EQ(snapping_.controller().originalWindowFrame(), (Rect{300, 400, 400, 300}));
    snapping_.release();
    snapping_.press({400, 705});
    EXPECT_EQ(snapping_.controller().activeWindow(), nullptr);
    snapping_.release();
}

TEST_P(MacTallDesktop, DragLandsToThePointOnTheOtherDisplay) {
    snapToTheOtherDisplay();
    expectFrame(frame(), GetParam().leftZone);
}

TEST_P(MacTallDesktop, DragLandsToThePointOnThePrimaryDisplay) {
    snapping_.press(titleBar);
    snapping_.hold(kCGEventFlagMaskCommand);
    snapping_.dragTo({100, 400});
    snapping_.release();
    expectFrame(frame(), {8, 8, 708, 884});
}

TEST_P(MacTallDesktop, ReleasedModifiersPutTheWindowBackToThePoint) {
    snapping_.press(titleBar);
    fake::mac().accessibility.at(window_.window).attributes["AXPosition"] = CGPoint{500, 400};
    snapping_.hold(kCGEventFlagMaskCommand);
    snapping_.hold(0);
    expectFrame(frame(), windowFrame);
    snapping_.release();
}

TEST_P(MacTallDesktop, DisplayThatGoesIsNoticedAtOnce) {
    snapToTheOtherDisplay();
    fake::mac().displays.all.pop_back();
    fake::mac().accessibility.at(window_.window).attributes["AXPosition"] = CGPoint{300, 200};
    fake::mac().accessibility.at(window_.window).attributes["AXSize"] = CGSize{400, 300};
    snapping_.hold(0);
    snapping_.press(titleBar);
    EXPECT_EQ(snapping_.controller().originalWindowFrame(), (Rect{300, 400, 400, 300}));
    snapping_.release();
}

INSTANTIATE_TEST_SUITE_P(
    Desktops, MacTallDesktop,
    testing::Values(Desktop{"TallerBeside", {1440, -540, 2560, 1440}, {1448, -532, 1268, 1424}, {1500, 700}},
                    Desktop{"Above", {-200, -1080, 1920, 1080}, {-192, -1072, 948, 1064}, {0, 1200}},
                    Desktop{"LevelAtTheTop", {1440, 0, 1280, 800}, {1448, 8, 628, 784}, {1500, 500}},
                    Desktop{"Below", {0, 900, 1280, 800}, {8, 908, 628, 784}, {100, -400}}),
    [](const testing::TestParamInfo<Desktop>& instance) { return instance.param.name; });

} // namespace
} // namespace tarvex
