#include "App/ZoneEditor/GridEditorController.h"

#include "Core/Configuration/JsonCoding.h"
#include "Tests/Support/Simulated/SimulatedDesktop.h"
#include "Tests/Support/Simulated/SimulatedViewWindows.h"

#include <gtest/gtest.h>

#include <functional>

namespace tarvex {

namespace {

using Splits = std::vector<double>;

GridDefinitionRef makeGrid(const std::string& id, Splits vertical, Splits horizontal = {}) {
    return std::make_shared<const GridDefinition>(id, "Name of " + id, std::move(vertical),
                                                  std::move(horizontal));
}

class GridEditorControllerTest : public ::testing::Test {
protected:
    static constexpr std::uint32_t left = 7;
    static constexpr std::uint32_t right = 9;

    GridEditorControllerTest() {
        desktop_.plugScreen({.number = left, .frame = {0, 0, 1280, 1024}, .topPanel = 24, .serial = 1});
        desktop_.plugScreen({.number = right, .frame = {1280, 0, 1920, 1080}, .serial = 2});
        makeController();
    }

    void makeController() {
        const LoggerFactory loggers(desktop_.log());
        displayService_ = std::make_shared<DisplayService>(loggers.makeLogger("DisplayService"),
                                                           desktop_.displays(), desktop_.displays());
        controller_ = std::make_shared<GridEditorController>(
            std::make_shared<ConfigStore>(loggers.makeLogger("ConfigStore"), desktop_.configFiles()),
            displayService_, std::make_shared<DisplayFrameService>(desktop_.displays()),
            GridEditorPlatform{desktop_.displays(), windows_, desktop_.mainLoop(), textMeasurer_,
                               desktop_.log()});
    }

    [[nodiscard]] std::string stableId(std::uint32_t display) {
        return displayService_->getIdentifier(display).stableId();
    }

    /// The settings that the editor finds, the defaults with these fields changed.
    void store(const std::function<void(TarvexConfigFields&)>& change) {
        TarvexConfigFields fields = TarvexConfig::makeDefault()->fields();
        change(fields);
        desktop_.configFiles().put(encodeTarvexConfig(TarvexConfig(fields)));
    }

    [[nodiscard]] TarvexConfigRef stored() { return decodeTarvexConfig(desktop_.configFiles().text()); }

    /// The one editor that is open.
    SimulatedViewWindow& window() {
        if (windows_.open().size() != 1) {
            throw std::logic_error("not one editor is open");
        }
        return *windows_.open().front();
    }

    GridEditorOverlayView& view() { return dynamic_cast<GridEditorOverlayView&>(*window().view); }

    /// Adds a vertical line in the open editor.
    void addVertical(double x) {
        const Rect frame = window().attributes.contentRect;
        const MouseEvent event{{x * frame.width, frame.height / 3}, event_flag::shift};
        view().mouseDown(event);
        view().mouseUp(event);
    }

    void accept() { static_cast<void>(view().keyDown({36, 0})); }

    void cancel() { static_cast<void>(view().keyDown({53, 0})); }

    SimulatedDesktop desktop_;
    SimulatedViewWindows windows_{desktop_.journal()};
    SimulatedTextMeasurer textMeasurer_;
    std::shared_ptr<DisplayService> displayService_;
    std::shared_ptr<GridEditorController> controller_;
};

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

TEST_F(GridEditorControllerTest, FirstEditOfADisplayStartsFromTheFirstGrid) {
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

TEST_F(GridEditorControllerTest, WithoutAnyGridItStartsFromTheDefault) {
    store([](TarvexConfigFields& fields) { fields.grids.clear(); });
    controller_->showEditor(left);
    EXPECT_EQ(view().grid()->verticalSplits(), Splits{0.5});
    EXPECT_EQ(view().grid()->name(), "Default");
    accept();
    ASSERT_EQ(stored()->grids().size(), 1U);
    EXPECT_EQ(stored()->grids()[0]->id(), "display-" + stableId(left));
}

TEST_F(GridEditorControllerTest, SecondEditReplacesTheGridInItsPlace) {
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

TEST_F(GridEditorControllerTest, EveryGridOfThatIdIsReplaced) {
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

TEST_F(GridEditorControllerTest, EntryThatPointsNowhereKeepsItsId) {
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

TEST_F(GridEditorControllerTest, TwoDisplaysMayShareAGrid) {
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

TEST_F(GridEditorControllerTest, EverythingElseIsKept) {
    store([](TarvexConfigFields& fields) {
        fields.cellMarginPoints = 3.5;
        fields.openEditorHotkey = HotkeyDefinition{1, 256};
        fields.openPreferencesHotkey = HotkeyDefinition{2, 512};
        fields.singleSnapModifiers = ModifierDefinition{2048};
        fields.multiSnapModifiers = ModifierDefinition{4096};
        fields.launchAtLogin = true;
        fields.hideMenuBarIcon = true;
        fields.restoreWindowSizeOnUnsnap = false;
        fields.defaultGridByDisplayId = {{"another", "default"}};
    });
    const TarvexConfigRef before = stored();
    controller_->showEditor(left);
    accept();
    const TarvexConfigRef after = stored();
    EXPECT_EQ(after->cellMarginPoints(), before->cellMarginPoints());
    EXPECT_EQ(after->openEditorHotkey(), before->openEditorHotkey());
    EXPECT_EQ(after->openPreferencesHotkey(), before->openPreferencesHotkey());
    EXPECT_EQ(after->singleSnapModifiers(), before->singleSnapModifiers());
    EXPECT_EQ(after->multiSnapModifiers(), before->multiSnapModifiers());
    EXPECT_EQ(after->launchAtLogin(), before->launchAtLogin());
    EXPECT_EQ(after->hideMenuBarIcon(), before->hideMenuBarIcon());
    EXPECT_EQ(after->restoreWindowSizeOnUnsnap(), before->restoreWindowSizeOnUnsnap());
    EXPECT_EQ(after->defaultGridByDisplayId().at("another"), "default");
}

TEST_F(GridEditorControllerTest, WhatWasSetWhileTheEditorWasOpenIsOverwritten) {
    store([](TarvexConfigFields& fields) { fields.cellMarginPoints = 3; });
    controller_->showEditor(left);
    store([](TarvexConfigFields& fields) { fields.cellMarginPoints = 30; });
    accept();
    EXPECT_EQ(stored()->cellMarginPoints(), 3);
}

TEST_F(GridEditorControllerTest, CancelLeavesTheFileAlone) {
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

TEST_F(GridEditorControllerTest, UnreadableSettingsAreReplacedOnAccepting) {
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

TEST_F(GridEditorControllerTest, FailureToSaveClosesTheEditorAllTheSame) {
    controller_->showEditor(left);
    desktop_.configFiles().setFolderBlocked(true);
    accept();
    EXPECT_TRUE(windows_.open().empty());
    EXPECT_EQ(controller_->overlayCount(), 0U);
}

TEST_F(GridEditorControllerTest, ClosingAllSavesNothing) {
    controller_->showEditor(left);
    addVertical(0.75);
    controller_->closeAllOverlays();
    EXPECT_TRUE(windows_.open().empty());
    EXPECT_EQ(desktop_.configFiles().text(), "");
    controller_->closeAllOverlays();
}

TEST_F(GridEditorControllerTest, EditorGoesWithItsController) {
    controller_->showEditor(left);
    controller_.reset();
    EXPECT_TRUE(windows_.open().empty());
}

TEST_F(GridEditorControllerTest, HandEditedGridOpensAndIsSavedAsNormalisationLeavesIt) {
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
