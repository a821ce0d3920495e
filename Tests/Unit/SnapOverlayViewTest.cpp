#include "App/Snapping/SnapOverlayView.h"

#include "Tests/Support/Simulated/SceneText.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace tarvex {
namespace {

using Lines = std::vector<std::string>;

GridDefinitionRef makeGrid() {
    return std::make_shared<GridDefinition>("grid", "Grid", std::vector<double>{0.5}, std::vector<double>{});
}

TEST(SnapOverlayViewTest, NewViewHasNoGridAndShowsNothingButTheClearBackdrop) {
    const SnapOverlayView view({100, 50, 800, 600});
    EXPECT_EQ(view.grid(), nullptr);
    EXPECT_TRUE(view.cellFrames().empty());
    EXPECT_TRUE(view.selectionFrames().empty());
    EXPECT_EQ(describe(view.draw()), (Lines{"fill 0,0 800x600 clear 0"}));
}

TEST(SnapOverlayViewTest, UpdateWithEmptyArraysDrawsNothingButTheBackdrop) {
    SnapOverlayView view({0, 0, 800, 600});
    view.update(makeGrid(), {{10, 10, 20, 20}}, {{10, 10, 20, 20}});
    view.update(makeGrid(), {}, {});
    EXPECT_EQ(describe(view.draw()), (Lines{"fill 0,0 800x600 clear 0"}));
}

TEST(SnapOverlayViewTest, OutlinesComeBeforeTheSelectionEachInArrayOrder) {
    SnapOverlayView view({0, 0, 800, 600});
    view.update(makeGrid(), {{400, 8, 380, 580}, {8, 8, 380, 580}}, {{8, 8, 380, 580}, {400, 8, 380, 580}});
    EXPECT_EQ(describe(view.draw()),
              (Lines{"fill 0,0 800x600 clear 0", "stroke 400,8 380x580 white 0.22 width 1",
                     "stroke 8,8 380x580 white 0.22 width 1", "fill 8,8 380x580 accent 0.5",
                     "fill 400,8 380x580 accent 0.5"}));
}

TEST(SnapOverlayViewTest, OverlappingSelectionRectanglesAreFilledEach) {
    SnapOverlayView view({0, 0, 800, 600});
    view.update(nullptr, {}, {{0, 0, 100, 100}, {50, 50, 100, 100}, {0, 0, 100, 100}});
    EXPECT_EQ(describe(view.draw()), (Lines{"fill 0,0 800x600 clear 0", "fill 0,0 100x100 accent 0.5",
                                            "fill 50,50 100x100 accent 0.5", "fill 0,0 100x100 accent 0.5"}));
}

TEST(SnapOverlayViewTest, UpdateReplacesEverything) {
    SnapOverlayView view({0, 0, 800, 600});
    const GridDefinitionRef grid = makeGrid();
    view.update(makeGrid(), {{1, 2, 3, 4}}, {{5, 6, 7, 8}});
    view.update(grid, {{9, 10, 11, 12}}, {{13, 14, 15, 16}});
    EXPECT_EQ(view.grid(), grid);
    EXPECT_EQ(view.cellFrames(), (std::vector<Rect>{{9, 10, 11, 12}}));
    EXPECT_EQ(view.selectionFrames(), (std::vector<Rect>{{13, 14, 15, 16}}));
}

TEST(SnapOverlayViewTest, UpdateTellsWhetherThePictureChanged) {
    SnapOverlayView view({0, 0, 800, 600});
    const std::vector<Rect> cells = {{0, 0, 400, 600}, {400, 0, 400, 600}};
    EXPECT_TRUE(view.update(makeGrid(), cells, {}));
    EXPECT_FALSE(view.update(makeGrid(), cells, {}));
    EXPECT_TRUE(view.update(makeGrid(), cells, {cells[0]}));
    EXPECT_TRUE(view.update(makeGrid(), cells, {cells[1]}));
    EXPECT_FALSE(view.update(nullptr, cells, {cells[1]}));
    EXPECT_EQ(view.grid(), nullptr);
    EXPECT_TRUE(view.update(nullptr, {cells[0]}, {cells[1]}));
}

TEST(SnapOverlayViewTest, FractionalRectanglesAreDrawnAsTheyAre) {
    SnapOverlayView view({0, 0, 1366, 768});
    view.update(nullptr, {{455.3333333333333, 0.1, 455.3333333333333, 767.9}}, {});
    EXPECT_EQ(describe(view.draw()).at(1),
              "stroke 455.3333333333333,0.1 455.3333333333333x767.9 white 0.22 width 1");
}

} // namespace
} // namespace tarvex
