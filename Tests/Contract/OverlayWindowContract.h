#pragma once

#include "App/Toolkit/Window.h"
#include "Tests/Contract/ContractWorld.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace tarvex::contract {

struct Pixel {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    bool operator==(const Pixel&) const = default;
};

/// A screen of at least 1000 by 700 points with its bottom-left corner at the origin, one pixel to the point,
/// and one plain dark colour all over. Rectangles and points are in screen space (y up).
class OverlayWindowWorld : public ContractWorld {
public:
    virtual WindowPlatform& windows() = 0;

    virtual Pixel background() = 0;

    /// What a person sees there, row by row from the top-left corner.
    virtual std::vector<Pixel> pixels(const Rect& area) = 0;

    /// Opens another program's ordinary window of the background's colour, in front of its like.
    virtual void openApplicationWindow(const Rect& frame) = 0;

    /// Clicks there; true when the click went to what lies below this program's windows.
    virtual bool clickPassesThrough(Point point) = 0;

    /// Whether a window of this program has the keyboard.
    virtual bool hasKeyboard() = 0;
};

class OverlayWindowContract : public ::testing::TestWithParam<WorldFactory<OverlayWindowWorld>> {
protected:
    void SetUp() override { world_ = GetParam().make(); }

    // Windows go before the desktop that they are on.
    void TearDown() override {
        window_.reset();
        world_.reset();
    }

    static WindowAttributes overlayAttributes(const Rect& frame) {
        WindowAttributes attributes;
        attributes.contentRect = frame;
        attributes.collectionBehavior =
            collection_behavior::canJoinAllSpaces | collection_behavior::fullScreenAuxiliary;
        attributes.ignoresMouseEvents = true;
        return attributes;
    }

    void makeWindow() {
        window_ = world_->windows().makeWindow(overlayAttributes(frame_));
        ASSERT_NE(window_, nullptr);
    }

    void show(Scene scene) {
        window_->setScene(std::move(scene));
        window_->orderFront();
    }

    std::size_t changedPixels(const Rect& area) {
        const std::vector<Pixel> seen = world_->pixels(area);
        const Pixel background = world_->background();
        return static_cast<std::size_t>(
            std::count_if(seen.begin(), seen.end(), [&](Pixel pixel) { return pixel != background; }));
    }

    bool isAll(const Rect& area, Pixel wanted) {
        const std::vector<Pixel> seen = world_->pixels(area);
        return !seen.empty() &&
               std::all_of(seen.begin(), seen.end(), [&](Pixel pixel) { return pixel == wanted; });
    }

    // The part of the view as a rectangle of the screen.
    [[nodiscard]] Rect onScreen(const Rect& inView) const { return inView.translated(frame_.x, frame_.y); }

    static Scene filled(const Rect& rect, Color color = {ColorName::white, 1}) {
        return {{FillRect{rect, color}}};
    }

    // Off the origin, so that a window at the wrong place shows.
    const Rect frame_{120, 90, 400, 300};
    const Rect whole_{0, 0, 400, 300};
    const Rect around_{100, 70, 440, 340};
    static constexpr Pixel white{255, 255, 255};

    std::unique_ptr<OverlayWindowWorld> world_;
    std::unique_ptr<Window> window_;
};

TEST_P(OverlayWindowContract, FrameIsExactlyTheOneAskedFor) {
    makeWindow();
    EXPECT_EQ(window_->frame(), frame_);
    show(filled(whole_));
    world_->settle();
    EXPECT_EQ(window_->frame(), frame_);
}

TEST_P(OverlayWindowContract, NewWindowIsHidden) {
    makeWindow();
    window_->setScene(filled(whole_));
    world_->settle();
    EXPECT_EQ(changedPixels(around_), 0U);
}

TEST_P(OverlayWindowContract, ShownWindowCoversItsFrameAndNothingElse) {
    makeWindow();
    show(filled(whole_));
    EXPECT_TRUE(world_->waitUntil([&] { return isAll(frame_, white); }));
    EXPECT_EQ(changedPixels(around_), static_cast<std::size_t>(frame_.width * frame_.height));
}

TEST_P(OverlayWindowContract, ViewGrowsUpwardsFromItsBottomLeftCorner) {
    makeWindow();
    const Rect corner{0, 0, 100, 50};
    show(filled(corner));
    EXPECT_TRUE(world_->waitUntil([&] { return isAll(onScreen(corner), white); }));
    EXPECT_EQ(changedPixels(around_), static_cast<std::size_t>(corner.width * corner.height));
}

TEST_P(OverlayWindowContract, EmptyAndClearScenesShowNothing) {
    makeWindow();
    show({});
    world_->settle();
    EXPECT_EQ(changedPixels(around_), 0U);
    window_->setScene(filled(whole_, {ColorName::clear, 0}));
    world_->settle();
    EXPECT_EQ(changedPixels(around_), 0U);
}

TEST_P(OverlayWindowContract, OutlineLiesOnTheEdgeAndLeavesTheInsideFree) {
    makeWindow();
    const Rect zone{50, 40, 200, 120};
    show({{StrokeRect{zone, {ColorName::white, 1}, 1}}});
    const Rect inside = onScreen({zone.x + 3, zone.y + 3, zone.width - 6, zone.height - 6});
    const Rect leftEdge = onScreen({zone.x - 2, zone.y + 10, 4, 50});
    const Rect topEdge = onScreen({zone.x + 10, zone.maxY() - 2, 50, 4});
    EXPECT_TRUE(
        world_->waitUntil([&] { return changedPixels(leftEdge) >= 50 && changedPixels(topEdge) >= 50; }));
    EXPECT_EQ(changedPixels(inside), 0U);
}

TEST_P(OverlayWindowContract, TranslucentFillShowsAndTintsOnlyItsOwnArea) {
    makeWindow();
    const Rect zone{50, 40, 200, 120};
    show(filled(zone, {ColorName::accent, 0.5}));
    EXPECT_TRUE(world_->waitUntil([&] { return changedPixels(onScreen(zone)) > 1000; }));
    EXPECT_EQ(changedPixels(around_), changedPixels(onScreen(zone)));
}

TEST_P(OverlayWindowContract, LaterPrimitivesLieOverEarlierOnes) {
    makeWindow();
    const Rect zone{50, 40, 200, 120};
    show({{FillRect{whole_, {ColorName::black, 1}}, FillRect{zone, {ColorName::white, 1}}}});
    EXPECT_TRUE(world_->waitUntil([&] { return isAll(onScreen(zone), white); }));
    EXPECT_TRUE(isAll(onScreen({0, 0, 40, 30}), Pixel{0, 0, 0}));
}

TEST_P(OverlayWindowContract, HiddenWindowShowsNothing) {
    makeWindow();
    show(filled(whole_));
    ASSERT_TRUE(world_->waitUntil([&] { return isAll(frame_, white); }));
    window_->orderOut();
    EXPECT_TRUE(world_->waitUntil([&] { return changedPixels(around_) == 0; }));
    window_->orderOut();
    world_->settle();
    EXPECT_EQ(changedPixels(around_), 0U);
}

TEST_P(OverlayWindowContract, SceneSetWhileShownReplacesThePicture) {
    makeWindow();
    const Rect first{0, 0, 100, 100};
    const Rect second{200, 150, 100, 100};
    show(filled(first));
    ASSERT_TRUE(world_->waitUntil([&] { return isAll(onScreen(first), white); }));
    window_->setScene(filled(second));
    EXPECT_TRUE(world_->waitUntil([&] { return isAll(onScreen(second), white); }));
    EXPECT_EQ(changedPixels(onScreen(first)), 0U);
}

TEST_P(OverlayWindowContract, WindowShownAgainHasItsNewPicture) {
    makeWindow();
    const Rect first{0, 0, 100, 100};
    const Rect second{200, 150, 100, 100};
    show(filled(first));
    ASSERT_TRUE(world_->waitUntil([&] { return isAll(onScreen(first), white); }));
    window_->orderOut();
    ASSERT_TRUE(world_->waitUntil([&] { return changedPixels(around_) == 0; }));
    window_->orderFront();
    window_->setScene(filled(second));
    EXPECT_TRUE(world_->waitUntil([&] { return isAll(onScreen(second), white); }));
    EXPECT_EQ(changedPixels(onScreen(first)), 0U);
}

TEST_P(OverlayWindowContract, WindowShownAgainUnchangedShowsItsPicture) {
    makeWindow();
    show(filled(whole_));
    ASSERT_TRUE(world_->waitUntil([&] { return isAll(frame_, white); }));
    window_->orderOut();
    ASSERT_TRUE(world_->waitUntil([&] { return changedPixels(around_) == 0; }));
    window_->orderFront();
    EXPECT_TRUE(world_->waitUntil([&] { return isAll(frame_, white); }));
}

TEST_P(OverlayWindowContract, ShownAndHiddenInOneTurnStaysHidden) {
    makeWindow();
    show(filled(whole_));
    window_->orderOut();
    world_->settle();
    EXPECT_EQ(changedPixels(around_), 0U);
}

TEST_P(OverlayWindowContract, WindowIsAboveApplicationWindows) {
    makeWindow();
    show(filled(whole_));
    ASSERT_TRUE(world_->waitUntil([&] { return isAll(frame_, white); }));
    world_->openApplicationWindow(around_);
    world_->settle();
    EXPECT_TRUE(world_->waitUntil([&] { return isAll(frame_, white); }));
}

TEST_P(OverlayWindowContract, ClicksPassThrough) {
    makeWindow();
    show(filled(whole_));
    ASSERT_TRUE(world_->waitUntil([&] { return isAll(frame_, white); }));
    EXPECT_TRUE(world_->clickPassesThrough({frame_.x + 200, frame_.y + 150}));
    EXPECT_TRUE(world_->clickPassesThrough({frame_.x + 1, frame_.y + 1}));
}

TEST_P(OverlayWindowContract, ShowingLeavesTheKeyboardWhereItWas) {
    makeWindow();
    show(filled(whole_));
    ASSERT_TRUE(world_->waitUntil([&] { return isAll(frame_, white); }));
    EXPECT_FALSE(world_->hasKeyboard());
}

TEST_P(OverlayWindowContract, DestroyedWindowIsGone) {
    makeWindow();
    show(filled(whole_));
    ASSERT_TRUE(world_->waitUntil([&] { return isAll(frame_, white); }));
    window_.reset();
    EXPECT_TRUE(world_->waitUntil([&] { return changedPixels(around_) == 0; }));
}

TEST_P(OverlayWindowContract, WindowsAreIndependent) {
    makeWindow();
    const Rect otherFrame{600, 300, 200, 200};
    const std::unique_ptr<Window> other = world_->windows().makeWindow(overlayAttributes(otherFrame));
    show(filled(whole_));
    other->setScene(filled({0, 0, 200, 200}));
    other->orderFront();
    ASSERT_TRUE(world_->waitUntil([&] { return isAll(frame_, white) && isAll(otherFrame, white); }));
    window_->orderOut();
    EXPECT_TRUE(world_->waitUntil([&] { return changedPixels(around_) == 0; }));
    EXPECT_TRUE(isAll(otherFrame, white));
}

} // namespace tarvex::contract
