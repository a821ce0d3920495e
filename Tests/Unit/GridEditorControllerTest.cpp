#include "Tests/Unit/GridEditorControllerFixture.h"

#include <string>
#include <vector>

namespace tarvex {

namespace {

TEST_F(GridEditorControllerTest, OpensOverTheVisibleFrameOfTheDisplay) {
    controller_->showEditor(left);
    const WindowAttributes& attributes = window().attributes;
    EXPECT_EQ(attributes.contentRect, (Rect{0, 0, 1280, 1000}));
    EXPECT_EQ(attributes.styleMask, 0U);
    EXPECT_EQ(attributes.backing, 2U);
    EXPECT_FALSE(attributes.isDeferred);
    EXPECT_FALSE(attributes.isOpaque);
    EXPECT_EQ(attributes.backgroundColor, (Color{ColorName::clear, 0}));
    EXPECT_EQ(attributes.level, 3);
    EXPECT_EQ(attributes.collectionBehavior, 257U);
    EXPECT_FALSE(attributes.hasShadow);
    EXPECT_FALSE(attributes.ignoresMouseEvents);
    EXPECT_TRUE(attributes.acceptsMouseMovedEvents);
    EXPECT_TRUE(attributes.canBecomeKey);
    EXPECT_TRUE(attributes.canBecomeMain);
    EXPECT_FALSE(attributes.isReleasedWhenClosed);
    EXPECT_TRUE(window().isShown);
    EXPECT_TRUE(window().isKey);
    EXPECT_EQ(desktop_.log().lines(), std::vector<std::string>{"GridEditorController.showEditor"});
}

TEST_F(GridEditorControllerTest, WindowComesUpBeforeTheProgramIsActivated) {
    controller_->showEditor(left);
    EXPECT_EQ(desktop_.journal().about({"view window", "activate"}),
              (std::vector<std::string>{"view window made", "view window key and front", "activate"}));
}

TEST_F(GridEditorControllerTest, PassesTheMarginOn) {
    store([](TarvexConfigFields& fields) { fields.cellMarginPoints = 20; });
    controller_->showEditor(right);
    const Scene scene = view().draw();
    EXPECT_EQ(std::get<StrokeRect>(scene.primitives.at(1)).rect.y, 20);
}

TEST_F(GridEditorControllerTest, RedrawsReachTheWindow) {
    controller_->showEditor(left);
    const int before = window().redraws;
    addVertical(0.25);
    EXPECT_EQ(window().redraws, before + 2);
}

TEST_F(GridEditorControllerTest, MainDisplayIsThatOfTheMainScreen) {
    controller_->showEditorForMainDisplay();
    EXPECT_EQ(window().attributes.contentRect, (Rect{0, 0, 1280, 1000}));
    EXPECT_EQ(desktop_.log().lines(),
              (std::vector<std::string>{"GridEditorController.showEditorForMainDisplay",
                                        "GridEditorController.showEditor"}));
}

TEST_F(GridEditorControllerTest, WithoutAMainDisplayTheFirstActiveOneIsEdited) {
    desktop_.displays().at(left).isNumberKnown = false;
    store([&](TarvexConfigFields& fields) {
        fields.grids = {makeGrid("a", {0.5}), makeGrid("b", {0.25})};
        fields.defaultGridByDisplayId = {{stableId(left), "b"}};
    });
    controller_->showEditorForMainDisplay();
    // The main screen does not say whose it is, but it is the one with room.
    EXPECT_EQ(window().attributes.contentRect, (Rect{0, 0, 1280, 1000}));
    EXPECT_EQ(view().grid()->id(), "b");
}

TEST_F(GridEditorControllerTest, WithoutAnyDisplayNothingOpens) {
    desktop_.unplugScreen(left);
    desktop_.unplugScreen(right);
    controller_->showEditorForMainDisplay();
    EXPECT_TRUE(windows_.made().empty());
    EXPECT_EQ(
        desktop_.log().lines(),
        (std::vector<std::string>{"GridEditorController.showEditorForMainDisplay", "No active display"}));
    desktop_.log().clear();
    controller_->showEditor(left);
    EXPECT_TRUE(windows_.made().empty());
    EXPECT_EQ(desktop_.log().lines(),
              (std::vector<std::string>{"GridEditorController.showEditor", "No visible frame"}));
}

TEST_F(GridEditorControllerTest, DisplayWithoutAScreenIsEditedOnTheMainScreen) {
    const std::string unknown = stableId(33);
    controller_->showEditor(33);
    EXPECT_EQ(window().attributes.contentRect, (Rect{0, 0, 1280, 1000}));
    accept();
    EXPECT_TRUE(stored()->defaultGridByDisplayId().contains(unknown));
}

TEST_F(GridEditorControllerTest, ChangedScreensCancel) {
    controller_->showEditor(left);
    addVertical(0.75);
    view().screensChanged();
    EXPECT_TRUE(windows_.open().empty());
    EXPECT_EQ(desktop_.configFiles().text(), "");
}

TEST_F(GridEditorControllerTest, OpeningClosesTheEditorThatIsOpen) {
    controller_->showEditor(left);
    addVertical(0.75);
    desktop_.journal().clear();
    controller_->showEditor(right);
    EXPECT_EQ(controller_->overlayCount(), 1U);
    EXPECT_EQ(window().attributes.contentRect, (Rect{1280, 0, 1920, 1080}));
    EXPECT_EQ(desktop_.configFiles().text(), "");
    EXPECT_EQ(
        desktop_.journal().about({"view window"}),
        (std::vector<std::string>{"view window close", "view window made", "view window key and front"}));
}

TEST_F(GridEditorControllerTest, EditorGoesWithItsController) {
    controller_->showEditor(left);
    controller_.reset();
    EXPECT_TRUE(windows_.open().empty());
}

} // namespace

} // namespace tarvex
