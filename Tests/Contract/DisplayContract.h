#pragma once

#include "Core/Displays/DisplayPlatform.h"
#include "Core/Displays/ScreenPlatform.h"
#include "Tests/Contract/ContractWorld.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tarvex::contract {

/// What a display says of itself, measured past the ports.
struct DisplayIdentity {
    std::uint32_t vendor = 0;
    std::uint32_t model = 0;
    std::uint32_t serial = 0;
    bool isBuiltin = false;
    std::string name;
};

/// A desktop whose displays can be rearranged.
class DisplayWorld : public ContractWorld {
public:
    virtual DisplayPlatform& displays() = 0;
    virtual ScreenPlatform& screens() = 0;

    /// Plugs and unplugs until exactly these displays are there, the primary one first; a display that keeps
    /// its place in the list is the same display. Bounds have their origin at the top-left of the primary
    /// display, y down, and do not overlap; none lies left of or above it.
    virtual void arrange(const std::vector<Rect>& bounds) = 0;

    /// What the display at that place in the list is.
    virtual DisplayIdentity identity(std::size_t index) = 0;

    /// Puts a panel along the whole top, or the whole left edge, of the display at that place in the list;
    /// takes all panels away.
    virtual void addTopPanel(std::size_t index, double height) = 0;
    virtual void addLeftPanel(std::size_t index, double width) = 0;
    virtual void removePanels() = 0;
};

class DisplayContract : public ::testing::TestWithParam<WorldFactory<DisplayWorld>> {
protected:
    void SetUp() override { world_ = GetParam().make(); }

    DisplayPlatform& displays() { return world_->displays(); }

    ScreenPlatform& screens() { return world_->screens(); }

    void arrange(const std::vector<Rect>& bounds) {
        world_->arrange(bounds);
        ASSERT_TRUE(world_->waitUntil([&] { return currentBounds() == bounds; }));
        ASSERT_TRUE(world_->waitUntil([&] { return screens().screens().size() == bounds.size(); }));
    }

    std::vector<std::uint32_t> numbers() {
        return displays().activeDisplays(displays().activeDisplays(0).count).displays;
    }

    std::vector<Rect> currentBounds() {
        std::vector<Rect> bounds;
        for (const std::uint32_t number : numbers()) {
            bounds.push_back(displays().bounds(number));
        }
        return bounds;
    }

    std::vector<Rect> visibleFrames() {
        std::vector<Rect> frames;
        for (const Screen& screen : screens().screens()) {
            frames.push_back(screen.visibleFrame);
        }
        return frames;
    }

    bool waitForVisibleFrames(const std::vector<Rect>& expected) {
        return world_->waitUntil([&] { return visibleFrames() == expected; });
    }

    // A number that no display has.
    std::uint32_t unknownNumber() {
        const std::vector<std::uint32_t> known = numbers();
        std::uint32_t number = 0xABCD1234;
        while (std::find(known.begin(), known.end(), number) != known.end()) {
            ++number;
        }
        return number;
    }

    const std::vector<Rect> one_ = {{0, 0, 800, 600}};
    // Different in size, with the second one's top below the first one's.
    const std::vector<Rect> two_ = {{0, 0, 800, 600}, {800, 100, 640, 480}};

    std::unique_ptr<DisplayWorld> world_;
};

TEST_P(DisplayContract, CapacityOfZeroAsksForTheCount) {
    arrange(two_);
    const ActiveDisplayList counted = displays().activeDisplays(0);
    EXPECT_EQ(counted.error, 0);
    EXPECT_EQ(counted.count, 2U);
    EXPECT_TRUE(counted.displays.empty());
}

TEST_P(DisplayContract, CapacityLimitsTheList) {
    arrange(two_);
    const ActiveDisplayList first = displays().activeDisplays(1);
    EXPECT_EQ(first.error, 0);
    ASSERT_EQ(first.displays.size(), 1U);
    const ActiveDisplayList all = displays().activeDisplays(10);
    EXPECT_EQ(all.error, 0);
    EXPECT_EQ(all.count, 2U);
    ASSERT_EQ(all.displays.size(), 2U);
    EXPECT_EQ(all.displays.front(), first.displays.front());
}

TEST_P(DisplayContract, PrimaryDisplayComesFirst) {
    arrange(two_);
    EXPECT_EQ(currentBounds(), two_);
    EXPECT_EQ(screens().screens().front().frame, (Rect{0, 0, 800, 600}));
}

TEST_P(DisplayContract, NumbersTellDisplaysApart) {
    arrange(two_);
    const std::vector<std::uint32_t> found = numbers();
    EXPECT_EQ(std::set<std::uint32_t>(found.begin(), found.end()).size(), 2U);
    EXPECT_EQ(numbers(), found);
}

TEST_P(DisplayContract, EachScreenNamesItsDisplay) {
    arrange(two_);
    std::vector<std::uint32_t> named;
    for (const Screen& screen : screens().screens()) {
        ASSERT_TRUE(screen.displayNumber.has_value());
        named.push_back(*screen.displayNumber);
    }
    EXPECT_EQ(named, numbers());
}

TEST_P(DisplayContract, ScreenFramesHaveTheirOriginAtTheBottomOfThePrimaryDisplay) {
    arrange(two_);
    std::vector<Rect> frames;
    for (const Screen& screen : screens().screens()) {
        frames.push_back(screen.frame);
    }
    EXPECT_EQ(frames, (std::vector<Rect>{{0, 0, 800, 600}, {800, 20, 640, 480}}));
}

TEST_P(DisplayContract, DisplaySaysWhatItIs) {
    arrange(two_);
    const std::vector<std::uint32_t> found = numbers();
    for (std::size_t index = 0; index < found.size(); ++index) {
        const DisplayIdentity expected = world_->identity(index);
        EXPECT_EQ(displays().vendorNumber(found[index]), expected.vendor);
        EXPECT_EQ(displays().modelNumber(found[index]), expected.model);
        EXPECT_EQ(displays().serialNumber(found[index]), expected.serial);
        EXPECT_EQ(displays().isBuiltin(found[index]), expected.isBuiltin);
        EXPECT_EQ(screens().screens().at(index).localizedName, expected.name);
    }
}

TEST_P(DisplayContract, UnknownNumberYieldsNothing) {
    arrange(one_);
    const std::uint32_t number = unknownNumber();
    EXPECT_EQ(displays().vendorNumber(number), 0U);
    EXPECT_EQ(displays().modelNumber(number), 0U);
    EXPECT_EQ(displays().serialNumber(number), 0U);
    EXPECT_TRUE(displays().bounds(number).isEmpty());
    EXPECT_FALSE(displays().isBuiltin(number));
}

TEST_P(DisplayContract, MainScreenIsOneOfTheScreens) {
    arrange(two_);
    const std::optional<Screen> main = screens().mainScreen();
    ASSERT_TRUE(main.has_value());
    const std::vector<Screen> all = screens().screens();
    EXPECT_NE(std::find(all.begin(), all.end(), *main), all.end());
}

TEST_P(DisplayContract, WithoutPanelsTheWholeScreenIsVisible) {
    arrange(two_);
    EXPECT_TRUE(waitForVisibleFrames({{0, 0, 800, 600}, {800, 20, 640, 480}}));
}

TEST_P(DisplayContract, PanelTakesSpaceOnItsOwnScreenOnly) {
    arrange(two_);
    world_->addTopPanel(0, 30);
    EXPECT_TRUE(waitForVisibleFrames({{0, 0, 800, 570}, {800, 20, 640, 480}}));
}

TEST_P(DisplayContract, PanelOnTheLowerScreenTakesSpaceThere) {
    arrange(two_);
    world_->addTopPanel(1, 40);
    EXPECT_TRUE(waitForVisibleFrames({{0, 0, 800, 600}, {800, 20, 640, 440}}));
}

TEST_P(DisplayContract, PanelsOfSeveralEdgesAddUp) {
    arrange(two_);
    world_->addTopPanel(0, 30);
    world_->addLeftPanel(0, 50);
    EXPECT_TRUE(waitForVisibleFrames({{50, 0, 750, 570}, {800, 20, 640, 480}}));
}

TEST_P(DisplayContract, PanelThatGoesGivesItsSpaceBack) {
    arrange(one_);
    world_->addTopPanel(0, 30);
    ASSERT_TRUE(waitForVisibleFrames({{0, 0, 800, 570}}));
    world_->removePanels();
    EXPECT_TRUE(waitForVisibleFrames({{0, 0, 800, 600}}));
}

TEST_P(DisplayContract, PluggedDisplayAppearsAndGoesAgain) {
    arrange(one_);
    const std::vector<std::uint32_t> before = numbers();
    arrange(two_);
    ASSERT_EQ(numbers().size(), 2U);
    EXPECT_EQ(numbers().front(), before.front());
    const std::uint32_t plugged = numbers().back();
    arrange(one_);
    EXPECT_EQ(numbers(), before);
    EXPECT_TRUE(displays().bounds(plugged).isEmpty());
}

TEST_P(DisplayContract, ResizedDisplayIsReadAfresh) {
    arrange(two_);
    const std::vector<Rect> changed = {{0, 0, 800, 600}, {800, 0, 500, 600}};
    arrange(changed);
    EXPECT_TRUE(waitForVisibleFrames({{0, 0, 800, 600}, {800, 0, 500, 600}}));
}

TEST_P(DisplayContract, RegistryWalkEnds) {
    arrange(two_);
    const std::unique_ptr<DisplayRegistryIterator> walk = displays().displayRegistry();
    std::size_t steps = 0;
    while (walk && walk->next()) {
        ASSERT_LT(++steps, 1000U);
    }
    const std::unique_ptr<DisplayRegistryIterator> again = displays().displayRegistry();
    EXPECT_EQ(again == nullptr, walk == nullptr);
    while (const auto service = again ? again->next() : nullptr) {
        EXPECT_EQ(service->integerProperty("NoSuchProperty"), std::nullopt);
    }
}

TEST_P(DisplayContract, LocaleIsLanguageAndTerritoryAlone) {
    const std::string locale = displays().currentLocaleIdentifier();
    EXPECT_EQ(locale.find_first_of(".@- "), std::string::npos) << locale;
}

} // namespace tarvex::contract
