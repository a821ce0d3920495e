#pragma once

#include "Tests/Contract/StatusItemWorld.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tarvex::contract {

/// Owns an item and remembers what it is told.
class RecordingItemDelegate final : public StatusItemDelegate {
public:
    [[nodiscard]] Menu menuWillOpen() override {
        ++openings;
        return menu;
    }

    void menuItemChosen(const MenuItem& item) override {
        chosen.push_back(item);
        // It may be replaced by what it does.
        const std::function<void()> react = reaction;
        react();
    }

    Menu menu;
    int openings = 0;
    std::vector<MenuItem> chosen;
    std::function<void()> reaction = [] {};
};

inline MenuItem makeMenuItem(std::string title, std::string action) {
    MenuItem item;
    item.title = std::move(title);
    item.action = std::move(action);
    return item;
}

inline MenuItem makeMenuSeparator() {
    MenuItem item;
    item.isSeparator = true;
    return item;
}

class StatusItemContract : public ::testing::TestWithParam<WorldFactory<StatusItemWorld>> {
protected:
    void SetUp() override {
        world_ = GetParam().make();
        MenuItem display = makeMenuItem("R&D _1_", "open");
        display.representedObject = 4294967295U;
        MenuItem greyed = makeMenuItem("Nothing", "nothing");
        greyed.isEnabled = false;
        MenuItem submenu = makeMenuItem("Zone Editor\u2026", "");
        submenu.submenu = {display, makeMenuItem("\u6A5F 2", "open")};
        delegate_.menu = {{makeMenuItem("About & more", "about"), makeMenuSeparator(), greyed, submenu,
                           makeMenuItem("Quit", "quit")}};
    }

    // The item points at the delegate and the bar.
    void TearDown() override { item_.reset(); }

    void show() {
        item_ = world_->platform().makeStatusItem(delegate_);
        StatusItemAppearance appearance;
        appearance.symbolName = "rectangle.grid.2x2";
        appearance.toolTip = "Tarvex";
        item_->setAppearance(appearance);
        item_->setMenu(delegate_.menu);
    }

    ::testing::AssertionResult isShown(int count = 1) {
        return world_->waitUntil([&] { return world_->shownItems() == count; })
                   ? ::testing::AssertionSuccess()
                   : ::testing::AssertionFailure() << world_->shownItems() << " items are shown";
    }

    static std::vector<ShownItem> expectedMenu() {
        return {
            {"About & more", true, false, {}},
            {"", true, true, {}},
            {"Nothing", false, false, {}},
            {"Zone Editor\u2026", true, false, {{"R&D _1_", true, false, {}}, {"\u6A5F 2", true, false, {}}}},
            {"Quit", true, false, {}}};
    }

    std::unique_ptr<StatusItemWorld> world_;
    RecordingItemDelegate delegate_;
    std::unique_ptr<StatusItem> item_;
};

TEST_P(StatusItemContract, ItemIsShownUntilItIsDestroyed) {
    EXPECT_EQ(world_->shownItems(), 0);
    for (int round = 0; round < 3; ++round) {
        show();
        ASSERT_TRUE(isShown());
        EXPECT_EQ(world_->toolTip(), "Tarvex");
        item_.reset();
        EXPECT_TRUE(isShown(0));
    }
}

TEST_P(StatusItemContract, MenuShowsTheValue) {
    show();
    ASSERT_TRUE(isShown());
    EXPECT_EQ(world_->openMenu(), expectedMenu());
}

TEST_P(StatusItemContract, MenuIsAskedForAfreshWheneverItOpens) {
    show();
    ASSERT_TRUE(isShown());
    EXPECT_EQ(world_->openMenu(), expectedMenu());
    const int before = delegate_.openings;
    EXPECT_GE(before, 1);
    delegate_.menu.items[3].submenu->push_back(makeMenuItem("Third", "open"));
    std::vector<ShownItem> expected = expectedMenu();
    expected[3].submenu.push_back({"Third", true, false, {}});
    EXPECT_EQ(world_->openMenu(), expected);
    EXPECT_GT(delegate_.openings, before);
    delegate_.menu.items.resize(1);
    EXPECT_EQ(world_->openMenu(), (std::vector<ShownItem>{{"About & more", true, false, {}}}));
}

TEST_P(StatusItemContract, ChosenItemIsTheOneThatWasClicked) {
    show();
    ASSERT_TRUE(isShown());
    world_->choose({"About & more"});
    ASSERT_TRUE(world_->waitUntil([&] { return delegate_.chosen.size() == 1; }));
    EXPECT_EQ(delegate_.chosen.back(), delegate_.menu.items[0]);
    world_->choose({"Zone Editor\u2026", "R&D _1_"});
    ASSERT_TRUE(world_->waitUntil([&] { return delegate_.chosen.size() == 2; }));
    EXPECT_EQ(delegate_.chosen.back(), delegate_.menu.items[3].submenu->front());
    world_->choose({"Quit"});
    ASSERT_TRUE(world_->waitUntil([&] { return delegate_.chosen.size() == 3; }));
    EXPECT_EQ(delegate_.chosen.back(), delegate_.menu.items[4]);
}

TEST_P(StatusItemContract, DisabledItemCannotBeChosen) {
    show();
    ASSERT_TRUE(isShown());
    world_->choose({"Nothing"});
    world_->settle();
    world_->choose({"Quit"});
    ASSERT_TRUE(world_->waitUntil([&] { return !delegate_.chosen.empty(); }));
    EXPECT_EQ(delegate_.chosen, std::vector<MenuItem>{delegate_.menu.items[4]});
}

TEST_P(StatusItemContract, ChoiceMayDestroyTheItem) {
    delegate_.reaction = [this] { item_.reset(); };
    for (const auto& titles :
         {std::vector<std::string>{"Quit"}, std::vector<std::string>{"Zone Editor\u2026", "R&D _1_"}}) {
        show();
        ASSERT_TRUE(isShown());
        world_->choose(titles);
        EXPECT_TRUE(world_->waitUntil([&] { return item_ == nullptr; }));
        EXPECT_TRUE(isShown(0));
    }
    EXPECT_EQ(delegate_.chosen.size(), 2U);
}

TEST_P(StatusItemContract, WithoutATrayTheItemWaitsForOne) {
    world_->endTray();
    show();
    world_->settle();
    EXPECT_EQ(world_->shownItems(), 0);
    world_->startTray();
    ASSERT_TRUE(isShown());
    EXPECT_EQ(world_->toolTip(), "Tarvex");
    EXPECT_EQ(world_->openMenu(), expectedMenu());
    world_->choose({"Quit"});
    EXPECT_TRUE(world_->waitUntil([&] { return delegate_.chosen.size() == 1; }));
}

TEST_P(StatusItemContract, ItemComesBackWithItsTray) {
    show();
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(isShown());
        EXPECT_EQ(world_->openMenu(), expectedMenu());
        world_->endTray();
        EXPECT_TRUE(isShown(0));
        world_->startTray();
    }
    ASSERT_TRUE(isShown());
    world_->choose({"Quit"});
    EXPECT_TRUE(world_->waitUntil([&] { return delegate_.chosen.size() == 1; }));
}

TEST_P(StatusItemContract, ItemDestroyedWithoutATrayDoesNotComeBack) {
    show();
    ASSERT_TRUE(isShown());
    world_->endTray();
    item_.reset();
    world_->startTray();
    world_->settle();
    EXPECT_EQ(world_->shownItems(), 0);
}

} // namespace tarvex::contract
