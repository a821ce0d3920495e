#include "App/Snapping/SnapOverlayWindow.h"

#include "Tests/Support/Simulated/SceneText.h"
#include "Tests/Support/Simulated/SimulatedWindows.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarvex {
namespace {

using Lines = std::vector<std::string>;

class SnapOverlayWindowTest : public ::testing::Test {
protected:
    [[nodiscard]] const SimulatedNativeWindow& native() const { return *windows_.made().back(); }

    Journal journal_;
    SimulatedWindows windows_{journal_};
    const Rect visibleFrame_{1920, -120, 1280, 984};
    const GridDefinitionRef grid_ =
        std::make_shared<GridDefinition>("grid", "Grid", std::vector<double>{0.5}, std::vector<double>{});
};

TEST_F(SnapOverlayWindowTest, WindowIsClearFloatingClickThroughAndOnEverySpace) {
    const SnapOverlayWindow window(windows_, visibleFrame_);
    const WindowAttributes& attributes = native().attributes;
    EXPECT_EQ(attributes.contentRect, visibleFrame_);
    EXPECT_EQ(attributes.styleMask, 0U);
    EXPECT_EQ(attributes.backing, 2U);
    EXPECT_FALSE(attributes.isDeferred);
    EXPECT_FALSE(attributes.isOpaque);
    EXPECT_EQ(attributes.backgroundColor, (Color{ColorName::clear, 0}));
    EXPECT_EQ(attributes.level, 3);
    EXPECT_EQ(attributes.collectionBehavior, 257U);
    EXPECT_FALSE(attributes.hasShadow);
    EXPECT_TRUE(attributes.ignoresMouseEvents);
    EXPECT_FALSE(attributes.isReleasedWhenClosed);
}

TEST_F(SnapOverlayWindowTest, NewWindowIsHiddenAndEmpty) {
    const SnapOverlayWindow window(windows_, visibleFrame_);
    EXPECT_EQ(journal_.entries(), (Lines{"overlay 1 made"}));
    EXPECT_FALSE(native().isShown);
    EXPECT_EQ(window.frame(), visibleFrame_);
    EXPECT_EQ(window.overlayView().grid(), nullptr);
    EXPECT_TRUE(window.overlayView().cellFrames().empty());
    EXPECT_TRUE(window.overlayView().selectionFrames().empty());
}

TEST_F(SnapOverlayWindowTest, RectanglesAreMovedByTheWindowsOriginInTheirOrder) {
    SnapOverlayWindow window(windows_, visibleFrame_);
    window.update(grid_, {{2560, -112, 632, 968}, {1928, -112, 632, 968}}, {{1928, -112, 632, 968}});
    EXPECT_EQ(window.overlayView().grid(), grid_);
    EXPECT_EQ(window.overlayView().cellFrames(), (std::vector<Rect>{{640, 8, 632, 968}, {8, 8, 632, 968}}));
    EXPECT_EQ(window.overlayView().selectionFrames(), (std::vector<Rect>{{8, 8, 632, 968}}));
    EXPECT_EQ(describe(native().scene),
              (Lines{"fill 0,0 1280x984 clear 0", "stroke 640,8 632x968 white 0.22 width 1",
                     "stroke 8,8 632x968 white 0.22 width 1", "fill 8,8 632x968 accent 0.5"}));
}

TEST_F(SnapOverlayWindowTest, OriginIsThatOfTheWindowWhereItReallyIs) {
    windows_.displaceNewWindows(-20, 10);
    SnapOverlayWindow window(windows_, visibleFrame_);
    EXPECT_EQ(window.frame().origin(), (Point{1900, -110}));
    window.update(grid_, {{1928, -112, 632, 968}}, {});
    EXPECT_EQ(window.overlayView().cellFrames(), (std::vector<Rect>{{28, -2, 632, 968}}));
}

TEST_F(SnapOverlayWindowTest, EqualPictureIsNotDrawnAgain) {
    SnapOverlayWindow window(windows_, visibleFrame_);
    window.update(grid_, {{1928, -112, 632, 968}}, {});
    journal_.clear();
    window.update(grid_, {{1928, -112, 632, 968}}, {});
    EXPECT_TRUE(journal_.entries().empty());
    window.update(grid_, {}, {});
    EXPECT_EQ(journal_.entries(), (Lines{"overlay 1 picture"}));
    EXPECT_EQ(describe(native().scene), (Lines{"fill 0,0 1280x984 clear 0"}));
}

TEST_F(SnapOverlayWindowTest, ShowingAndHidingGoToTheNativeWindow) {
    SnapOverlayWindow window(windows_, visibleFrame_);
    journal_.clear();
    window.orderFront();
    EXPECT_TRUE(native().isShown);
    window.orderOut();
    EXPECT_FALSE(native().isShown);
    EXPECT_FALSE(native().isClosed);
    EXPECT_EQ(journal_.entries(), (Lines{"overlay 1 front", "overlay 1 out"}));
}

TEST_F(SnapOverlayWindowTest, DestroyedWindowIsClosed) {
    std::optional<SnapOverlayWindow> window(std::in_place, windows_, visibleFrame_);
    window->orderFront();
    window.reset();
    EXPECT_TRUE(native().isClosed);
    EXPECT_TRUE(windows_.shown().empty());
}

} // namespace
} // namespace tarvex
