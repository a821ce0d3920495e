#pragma once

#include "App/Toolkit/FormWindow.h"
#include "Tests/Contract/ContractWorld.h"
#include "Tests/Contract/RecordingFormOwner.h"
#include "Tests/Support/FormKey.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace tarvex::contract {

/// What a person sees of a control.
struct SeenControl {
    std::string text;
    double value = 0;
    bool isEnabled = false;
    bool isHidden = false;

    bool operator==(const SeenControl&) const = default;
};

inline std::ostream& operator<<(std::ostream& stream, const SeenControl& control) {
    return stream << '"' << control.text << "\" " << control.value << (control.isEnabled ? "" : " disabled")
                  << (control.isHidden ? " hidden" : "");
}

/// A desktop with the program's titled windows, which are told apart by their titles, and another program.
class FormWindowWorld : public ContractWorld {
public:
    virtual FormWindowPlatform& windows() = 0;

    /// None when the window has no control of that id.
    virtual std::optional<SeenControl> seen(const std::string& title, const std::string& id) = 0;

    /// Where the window is with its borders, and what panels leave of its screen; points, y up.
    virtual Rect windowFrame(const std::string& title) = 0;
    virtual Rect visibleScreen() = 0;

    virtual Size contentSize(const std::string& title) = 0;

    virtual bool hasKeyboard(const std::string& title) = 0;

    /// Presses the button on the middle of a control of a window that is shown.
    virtual void click(const std::string& title, const std::string& id) = 0;

    /// Pulls the handle of a slider from its left end to its right one in so many movements.
    virtual void dragAcross(const std::string& title, const std::string& id, int movements) = 0;

    virtual void press(FormKey key) = 0;

    /// The button of the title bar that closes.
    virtual void closeByTitleBar(const std::string& title) = 0;

    virtual void giveKeyboardToAnotherProgram() = 0;
};

/// A window of 400 by 300 points with a control of each kind.
class FormWindowContract : public ::testing::TestWithParam<WorldFactory<FormWindowWorld>> {
protected:
    using Uses = std::vector<RecordingFormOwner::Use>;

    void SetUp() override {
        owner_.add(ControlKind::label, "label", {20, 250, 120, 22});
        owner_.add(ControlKind::slider, "slider", {20, 200, 360, 24}, 8);
        owner_.add(ControlKind::checkbox, "box", {20, 150, 200, 24});
        owner_.add(ControlKind::pushButton, "button", {20, 100, 100, 30});
        owner_.add(ControlKind::pushButton, "last", {140, 100, 100, 30});
        world_ = GetParam().make();
        FormWindowAttributes attributes;
        attributes.title = "Window";
        attributes.contentSize = {400, 300};
        window_ = world_->windows().makeFormWindow(attributes, owner_);
    }

    void TearDown() override {
        window_.reset();
        world_.reset();
    }

    void show() {
        window_->center();
        window_->makeKeyAndOrderFront();
        world_->windows().activateIgnoringOtherApps();
        ASSERT_TRUE(world_->waitUntil([&] { return world_->hasKeyboard("Window"); }));
        world_->settle();
    }

    /// How often the owner is asked for the form by what is done.
    int askedDuring(const std::function<void()>& deed) {
        const int before = owner_.asked;
        deed();
        world_->settle();
        return owner_.asked - before;
    }

    std::optional<SeenControl> seen(const std::string& id) { return world_->seen("Window", id); }

    void click(const std::string& id) {
        world_->click("Window", id);
        world_->settle();
    }

    void press(FormKey key) {
        world_->press(key);
        world_->settle();
    }

    RecordingFormOwner owner_;
    std::unique_ptr<FormWindowWorld> world_;
    std::unique_ptr<FormWindow> window_;
};

TEST_P(FormWindowContract, IsHiddenWhenMade) {
    world_->settle();
    EXPECT_FALSE(window_->isVisible());
    EXPECT_FALSE(world_->hasKeyboard("Window"));
    window_->setNeedsLayout();
    window_->close();
    world_->settle();
    EXPECT_FALSE(window_->isVisible());
}

TEST_P(FormWindowContract, HasAskedForItsFormWhenItIsShown) {
    show();
    EXPECT_EQ(owner_.asked, 1);
    EXPECT_EQ(owner_.lastSize, (Size{400, 300}));
    EXPECT_EQ(seen("button"), (SeenControl{"button", 0, true, false}));
}

TEST_P(FormWindowContract, ShowsItselfWithTheKeyboard) {
    world_->giveKeyboardToAnotherProgram();
    show();
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(world_->contentSize("Window"), (Size{400, 300}));
    world_->giveKeyboardToAnotherProgram();
    EXPECT_FALSE(world_->hasKeyboard("Window"));
    EXPECT_TRUE(window_->isVisible());
    window_->makeKeyAndOrderFront();
    EXPECT_TRUE(world_->waitUntil([&] { return world_->hasKeyboard("Window"); }));
}

TEST_P(FormWindowContract, IsCenteredWithItsBorders) {
    show();
    const auto isCentered = [&] {
        const Rect frame = world_->windowFrame("Window");
        const Rect screen = world_->visibleScreen();
        return std::abs(frame.minX() - screen.minX() - (screen.maxX() - frame.maxX())) <= 1 &&
               std::abs(frame.minY() - screen.minY() - (screen.maxY() - frame.maxY())) <= 1;
    };
    EXPECT_TRUE(world_->waitUntil(isCentered));
    EXPECT_GT(world_->windowFrame("Window").height, 300);
}

TEST_P(FormWindowContract, LaysOutAnewWhenTold) {
    show();
    owner_.control("label").text = "other";
    owner_.control("slider").value = 12.5;
    owner_.control("box").value = 1;
    EXPECT_EQ(askedDuring([&] { window_->setNeedsLayout(); }), 1);
    EXPECT_TRUE(world_->waitUntil([&] { return seen("label") == SeenControl{"other", 0, true, false}; }));
    EXPECT_EQ(seen("slider")->value, 12.5);
    EXPECT_EQ(seen("box")->value, 1);
    EXPECT_EQ(owner_.uses, Uses{}) << "what the form sets is no use of a control";
}

TEST_P(FormWindowContract, ButtonReportsAndTheFormIsAskedForAnew) {
    show();
    owner_.reaction = [&](const std::string& /*id*/) { owner_.control("label").text = "pressed"; };
    EXPECT_GE(askedDuring([&] { click("button"); }), 1);
    EXPECT_EQ(owner_.uses, (Uses{{"button", 0}}));
    EXPECT_EQ(seen("label")->text, "pressed");
}

TEST_P(FormWindowContract, CheckboxReportsItsNewState) {
    show();
    click("box");
    click("box");
    EXPECT_EQ(owner_.uses, (Uses{{"box", 1}, {"box", 0}}));
}

TEST_P(FormWindowContract, CheckboxShowsWhatTheFormMakesOfItsUse) {
    owner_.takesValues = false;
    show();
    click("box");
    EXPECT_EQ(seen("box")->value, 0);
    click("box");
    EXPECT_EQ(owner_.uses, (Uses{{"box", 1}, {"box", 1}}));
}

TEST_P(FormWindowContract, DisabledAndHiddenControlsAreNotUsed) {
    owner_.control("box").isEnabled = false;
    owner_.control("button").isHidden = true;
    window_->setNeedsLayout();
    show();
    EXPECT_EQ(seen("box"), (SeenControl{"box", 0, false, false}));
    EXPECT_TRUE(seen("button")->isHidden);
    click("box");
    click("button");
    EXPECT_EQ(owner_.uses, Uses{});
    owner_.control("box").isEnabled = true;
    owner_.control("button").isHidden = false;
    window_->setNeedsLayout();
    world_->settle();
    click("box");
    click("button");
    EXPECT_EQ(owner_.uses, (Uses{{"box", 1}, {"button", 0}}));
}

TEST_P(FormWindowContract, DragReportsEveryMovementOfTheSlider) {
    owner_.control("slider").value = 0;
    window_->setNeedsLayout();
    show();
    constexpr int movements = 30;
    world_->dragAcross("Window", "slider", movements);
    ASSERT_TRUE(world_->waitUntil([&] { return !owner_.uses.empty() && owner_.uses.back().value == 40; }));
    EXPECT_GE(owner_.uses.size(), static_cast<std::size_t>(movements) - 1);
    EXPECT_TRUE(std::is_sorted(owner_.uses.begin(), owner_.uses.end(),
                               [](const auto& one, const auto& other) { return one.value < other.value; }));
    EXPECT_TRUE(std::any_of(owner_.uses.begin(), owner_.uses.end(), [](const auto& use) {
        return use.value != std::round(use.value);
    })) << "the values are continuous";
    EXPECT_EQ(seen("slider")->value, 40);
}

TEST_P(FormWindowContract, KeyboardReachesTheControlsInTheOrderOfTheForm) {
    show();
    // The first control that takes keys has them from the start.
    press(FormKey::right);
    for (int control = 0; control < 3; ++control) {
        press(FormKey::tab);
        press(FormKey::space);
    }
    press(FormKey::tab);
    press(FormKey::right);
    std::vector<std::string> used;
    for (const RecordingFormOwner::Use& use : owner_.uses) {
        used.push_back(use.id);
    }
    EXPECT_EQ(used, (std::vector<std::string>{"slider", "box", "button", "last", "slider"}));
}

TEST_P(FormWindowContract, KeyboardPassesOverWhatCannotBeUsed) {
    owner_.control("box").isEnabled = false;
    owner_.control("button").isHidden = true;
    window_->setNeedsLayout();
    show();
    press(FormKey::tab);
    press(FormKey::space);
    EXPECT_EQ(owner_.uses, (Uses{{"last", 0}}));
}

TEST_P(FormWindowContract, ControlThatStaysKeepsTheKeyboardWhileOthersComeAndGo) {
    show();
    press(FormKey::tab);
    owner_.controls.erase(owner_.controls.begin() + 1);
    Control added = owner_.control("button");
    added.id = "new";
    added.frame = {260, 100, 100, 30};
    // Behind the label and the checkbox.
    owner_.controls.insert(owner_.controls.begin() + 2, added);
    owner_.control("box").text = "renamed";
    window_->setNeedsLayout();
    world_->settle();
    EXPECT_TRUE(world_->waitUntil([&] { return !seen("slider") && seen("new"); }));
    press(FormKey::space);
    press(FormKey::tab);
    press(FormKey::space);
    EXPECT_EQ(owner_.uses, (Uses{{"box", 1}, {"new", 0}}));
}

TEST_P(FormWindowContract, ControlMayGoWhenItIsUsed) {
    show();
    owner_.reaction = [&](const std::string& id) {
        std::erase_if(owner_.controls, [&](const Control& control) { return control.id == id; });
    };
    owner_.takesValues = false;
    click("button");
    click("box");
    EXPECT_FALSE(seen("button"));
    EXPECT_FALSE(seen("box"));
    EXPECT_EQ(owner_.uses, (Uses{{"button", 0}, {"box", 1}}));
}

TEST_P(FormWindowContract, TitleBarHidesItAndItComesBackAsItWas) {
    show();
    click("box");
    world_->closeByTitleBar("Window");
    EXPECT_TRUE(world_->waitUntil([&] { return !window_->isVisible(); }));
    EXPECT_TRUE(world_->waitUntil([&] { return !world_->hasKeyboard("Window"); }));
    show();
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(world_->contentSize("Window"), (Size{400, 300}));
    EXPECT_EQ(seen("box")->value, 1);
    click("button");
    EXPECT_EQ(owner_.uses, (Uses{{"box", 1}, {"button", 0}}));
}

TEST_P(FormWindowContract, MayBeClosedByTheUseOfAControl) {
    show();
    owner_.reaction = [&](const std::string& /*id*/) { window_->close(); };
    click("button");
    EXPECT_FALSE(window_->isVisible());
    EXPECT_TRUE(world_->waitUntil([&] { return !world_->hasKeyboard("Window"); }));
    show();
    click("box");
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(owner_.uses, (Uses{{"button", 0}, {"box", 1}}));
}

TEST_P(FormWindowContract, LastWindowOrderedFrontIsTheOneActivated) {
    RecordingFormOwner otherOwner;
    FormWindowAttributes attributes;
    attributes.title = "Other";
    attributes.contentSize = {200, 100};
    const auto other = world_->windows().makeFormWindow(attributes, otherOwner);
    show();
    other->makeKeyAndOrderFront();
    EXPECT_TRUE(world_->waitUntil([&] { return world_->hasKeyboard("Other"); }));
    EXPECT_FALSE(world_->hasKeyboard("Window"));
    other->close();
    window_->makeKeyAndOrderFront();
    world_->windows().activateIgnoringOtherApps();
    EXPECT_TRUE(world_->waitUntil([&] { return world_->hasKeyboard("Window"); }));
}

} // namespace tarvex::contract
