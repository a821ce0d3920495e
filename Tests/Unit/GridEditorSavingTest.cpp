// What an edit makes of the settings.
#include "Tests/Support/ConfigProperties.h"
#include "Tests/Unit/ConfigSamples.h"
#include "Tests/Unit/GridEditorControllerFixture.h"

namespace tarvex {

namespace {

class GridEditorSavingTest : public GridEditorControllerTest {};

TEST_F(GridEditorSavingTest, FirstEditOfADisplayStartsFromTheFirstGrid) {
    store([](TarvexConfigFields& fields) {
        fields.grids = {makeGrid("first", {0.4}, {0.6}), makeGrid("second", {0.1})};
    });
    controller_->showEditor(right);
    EXPECT_EQ(view().grid()->id(), "display-" + stableId(right));
    EXPECT_EQ(view().grid()->name(), "Name of first");
    EXPECT_EQ(view().grid()->verticalSplits(), Splits{0.4});
    EXPECT_EQ(view().grid()->horizontalSplits(), Splits{0.6});
    addVertical(0.75);
    accept();
    ASSERT_EQ(stored()->grids().size(), 3U);
    EXPECT_EQ(stored()->grids()[0]->verticalSplits(), Splits{0.4});
    EXPECT_EQ(stored()->grids()[2]->id(), "display-" + stableId(right));
    EXPECT_EQ(stored()->grids()[2]->name(), "Name of first");
    EXPECT_EQ(stored()->grids()[2]->verticalSplits(), (Splits{0.4, 0.75}));
    EXPECT_EQ(stored()->defaultGridByDisplayId(),
              (std::map<std::string, std::string>{{stableId(right), "display-" + stableId(right)}}));
}

TEST_F(GridEditorSavingTest, WithoutAnyGridItStartsFromTheDefault) {
    store([](TarvexConfigFields& fields) { fields.grids.clear(); });
    controller_->showEditor(left);
    EXPECT_EQ(view().grid()->verticalSplits(), Splits{0.5});
    EXPECT_EQ(view().grid()->name(), "Default");
    accept();
    ASSERT_EQ(stored()->grids().size(), 1U);
    EXPECT_EQ(stored()->grids()[0]->id(), "display-" + stableId(left));
}

TEST_F(GridEditorSavingTest, SecondEditReplacesTheGridInItsPlace) {
    store([&](TarvexConfigFields& fields) {
        fields.grids = {makeGrid("a", {0.5}), makeGrid("mine", {0.25}), makeGrid("z", {})};
        fields.defaultGridByDisplayId = {{stableId(left), "mine"}};
    });
    controller_->showEditor(left);
    EXPECT_EQ(view().grid()->id(), "mine");
    addVertical(0.75);
    accept();
    ASSERT_EQ(stored()->grids().size(), 3U);
    EXPECT_EQ(stored()->grids()[1]->id(), "mine");
    EXPECT_EQ(stored()->grids()[1]->verticalSplits(), (Splits{0.25, 0.75}));
    EXPECT_EQ(stored()->grids()[0]->id(), "a");
    EXPECT_EQ(stored()->grids()[2]->id(), "z");
}

TEST_F(GridEditorSavingTest, EveryGridOfThatIdIsReplaced) {
    store([&](TarvexConfigFields& fields) {
        fields.grids = {makeGrid("mine", {0.25}), makeGrid("other", {0.5}), makeGrid("mine", {0.1})};
        fields.defaultGridByDisplayId = {{stableId(left), "mine"}};
    });
    controller_->showEditor(left);
    EXPECT_EQ(view().grid()->verticalSplits(), Splits{0.25});
    addVertical(0.75);
    accept();
    ASSERT_EQ(stored()->grids().size(), 3U);
    EXPECT_EQ(stored()->grids()[0]->verticalSplits(), (Splits{0.25, 0.75}));
    EXPECT_EQ(stored()->grids()[1]->verticalSplits(), Splits{0.5});
    EXPECT_EQ(stored()->grids()[2]->verticalSplits(), (Splits{0.25, 0.75}));
}

TEST_F(GridEditorSavingTest, EntryThatPointsNowhereKeepsItsId) {
    store([&](TarvexConfigFields& fields) {
        fields.grids = {makeGrid("a", {0.5})};
        fields.defaultGridByDisplayId = {{stableId(left), "lost"}};
    });
    controller_->showEditor(left);
    EXPECT_EQ(view().grid()->id(), "display-" + stableId(left));
    accept();
    ASSERT_EQ(stored()->grids().size(), 2U);
    EXPECT_EQ(stored()->grids()[1]->id(), "lost");
    EXPECT_EQ(stored()->defaultGridByDisplayId().at(stableId(left)), "lost");
}

TEST_F(GridEditorSavingTest, TwoDisplaysMayShareAGrid) {
    store([&](TarvexConfigFields& fields) {
        fields.grids = {makeGrid("shared", {0.5})};
        fields.defaultGridByDisplayId = {{stableId(left), "shared"}, {stableId(right), "shared"}};
    });
    controller_->showEditor(left);
    addVertical(0.25);
    accept();
    controller_->showEditor(right);
    EXPECT_EQ(view().grid()->verticalSplits(), (Splits{0.25, 0.5}));
}

TEST_F(GridEditorSavingTest, EverythingElseIsKept) {
    store([](TarvexConfigFields& fields) { fields = everyField(); });
    const TarvexConfigRef before = stored();
    controller_->showEditor(left);
    accept();
    const TarvexConfigFields after = stored()->fields();
    for (const auto& [display, grid] : before->defaultGridByDisplayId()) {
        EXPECT_EQ(after.defaultGridByDisplayId.at(display), grid);
    }
    TarvexConfigFields rest = after;
    rest.grids = before->grids();
    rest.defaultGridByDisplayId = before->defaultGridByDisplayId();
    EXPECT_TRUE(haveSameFields(TarvexConfig(rest), *before));
}

TEST_F(GridEditorSavingTest, WhatWasSetWhileTheEditorWasOpenIsOverwritten) {
    store([](TarvexConfigFields& fields) { fields.cellMarginPoints = 3; });
    controller_->showEditor(left);
    store([](TarvexConfigFields& fields) { fields.cellMarginPoints = 30; });
    accept();
    EXPECT_EQ(stored()->cellMarginPoints(), 3);
}

TEST_F(GridEditorSavingTest, CancelLeavesTheFileAlone) {
    store([](TarvexConfigFields& fields) { fields.cellMarginPoints = 3; });
    const std::string before = desktop_.configFiles().text() + "  ";
    desktop_.configFiles().put(before);
    controller_->showEditor(left);
    addVertical(0.75);
    cancel();
    EXPECT_EQ(desktop_.configFiles().text(), before);
    EXPECT_TRUE(windows_.open().empty());
    EXPECT_EQ(controller_->overlayCount(), 0U);
}

TEST_F(GridEditorSavingTest, UnreadableSettingsAreReplacedOnAccepting) {
    desktop_.configFiles().put("{");
    controller_->showEditor(left);
    EXPECT_EQ(view().grid()->verticalSplits(), Splits{0.5});
    EXPECT_EQ(desktop_.configFiles().text(), "{");
    addVertical(0.75);
    accept();
    EXPECT_EQ(stored()->grids().size(), 2U);
    EXPECT_EQ(stored()->grids()[1]->verticalSplits(), (Splits{0.5, 0.75}));
    EXPECT_EQ(stored()->cellMarginPoints(), 8);
    EXPECT_EQ(desktop_.configFiles().keptText(), "{");
}

TEST_F(GridEditorSavingTest, FailureToSaveClosesTheEditorAllTheSame) {
    controller_->showEditor(left);
    desktop_.configFiles().setFolderBlocked(true);
    accept();
    EXPECT_TRUE(windows_.open().empty());
    EXPECT_EQ(controller_->overlayCount(), 0U);
}

TEST_F(GridEditorSavingTest, ClosingAllSavesNothing) {
    controller_->showEditor(left);
    addVertical(0.75);
    controller_->closeAllOverlays();
    EXPECT_TRUE(windows_.open().empty());
    EXPECT_EQ(desktop_.configFiles().text(), "");
    controller_->closeAllOverlays();
}

TEST_F(GridEditorSavingTest, HandEditedGridOpensAndIsSavedAsNormalisationLeavesIt) {
    Splits wild{0.7, 0.2, 0.2, -1, 5, 0.20005};
    for (int line = 0; line < 1000; ++line) {
        wild.push_back(line / 1000.0);
    }
    store([&](TarvexConfigFields& fields) {
        fields.grids = {makeGrid("mine", wild)};
        fields.defaultGridByDisplayId = {{stableId(left), "mine"}};
    });
    controller_->showEditor(left);
    EXPECT_EQ(view().grid()->verticalSplits(), wild);
    EXPECT_FALSE(view().draw().primitives.empty());
    // Takes up one of the lines, so close do they stand, and puts it in between.
    const MouseEvent event{{0.9005 * 1280, 300}, 0};
    view().mouseDown(event);
    view().mouseUp(event);
    accept();
    const Splits saved = stored()->grids().at(0)->verticalSplits();
    EXPECT_EQ(saved.size(), 999U);
    EXPECT_TRUE(std::is_sorted(saved.begin(), saved.end()));
}

} // namespace

} // namespace tarvex
