#include "Platform/MacOS/AppKit/AppKitWindowPlatform.h"
#include "Tests/MacOS/GNUstep/AppKitTest.h"

#include <memory>
#include <utility>

namespace tarvex::test {
namespace {

constexpr Rect frame{120, 90, 300, 200};

class WindowTest : public AppKitTest {
protected:
    static WindowAttributes attributes() {
        WindowAttributes attributes;
        attributes.contentRect = frame;
        attributes.collectionBehavior =
            collection_behavior::canJoinAllSpaces | collection_behavior::fullScreenAuxiliary;
        attributes.ignoresMouseEvents = true;
        return attributes;
    }

    /// Makes the window of the test and gives the toolkit's.
    NSWindow* make(const WindowAttributes& attributes) {
        window_ = platform_.makeWindow(attributes);
        return newestWindow();
    }

    static Scene filled(const Rect& rect) { return {{FillRect{rect, {ColorName::white, 1}}}}; }

    AppKitWindowPlatform platform_{loop_};
    std::unique_ptr<Window> window_;
};

TEST_F(WindowTest, HasTheAttributesThatItWasGiven) {
    NSWindow* const native = make(attributes());
    EXPECT_EQ([native styleMask], 0U);
    EXPECT_EQ([native level], 3);
    EXPECT_EQ([native collectionBehavior], 257U);
    EXPECT_FALSE([native isOpaque]);
    EXPECT_FALSE([native hasShadow]);
    EXPECT_TRUE([native ignoresMouseEvents]);
    EXPECT_FALSE([native acceptsMouseMovedEvents]);
    EXPECT_FALSE([native canBecomeKeyWindow]);
    EXPECT_FALSE([native canBecomeMainWindow]);
    EXPECT_FALSE([native isReleasedWhenClosed]);
    EXPECT_EQ([[native backgroundColor] alphaComponent], 0);
}

TEST_F(WindowTest, HasTheOppositeAttributesWhenGivenThose) {
    WindowAttributes opposite = attributes();
    opposite.level = 0;
    opposite.collectionBehavior = 0;
    opposite.isOpaque = true;
    opposite.backgroundColor = {ColorName::black, 1};
    opposite.hasShadow = true;
    opposite.ignoresMouseEvents = false;
    opposite.acceptsMouseMovedEvents = true;
    opposite.canBecomeKey = true;
    opposite.canBecomeMain = true;
    NSWindow* const native = make(opposite);
    EXPECT_EQ([native level], 0);
    EXPECT_EQ([native collectionBehavior], 0U);
    EXPECT_TRUE([native isOpaque]);
    EXPECT_TRUE([native hasShadow]);
    EXPECT_FALSE([native ignoresMouseEvents]);
    EXPECT_TRUE([native acceptsMouseMovedEvents]);
    EXPECT_TRUE([native canBecomeKeyWindow]);
    EXPECT_TRUE([native canBecomeMainWindow]);
    EXPECT_EQ([[native backgroundColor] alphaComponent], 1);
}

TEST_F(WindowTest, StaysWhenTheProgramIsHidden) {
    EXPECT_FALSE([make(attributes()) canHide]);
}

TEST_F(WindowTest, IsForAssistiveTechnologyOnlyWhatItIsForTheMouse) {
    EXPECT_FALSE([make(attributes()) isAccessibilityElement]);
    WindowAttributes heard = attributes();
    heard.ignoresMouseEvents = false;
    EXPECT_TRUE([make(heard) isAccessibilityElement]);
}

TEST_F(WindowTest, StandsWhereItWasPut) {
    NSWindow* const native = make(attributes());
    EXPECT_EQ(window_->frame(), frame);
    const NSRect content = [[native contentView] frame];
    EXPECT_EQ(content.size.width, frame.width);
    EXPECT_EQ(content.size.height, frame.height);
}

TEST_F(WindowTest, IsHiddenUntilItIsOrderedFront) {
    NSWindow* const native = make(attributes());
    window_->setScene(filled({0, 0, 300, 200}));
    endTurn();
    EXPECT_FALSE([native isVisible]);
    window_->orderFront();
    endTurn();
    EXPECT_TRUE([native isVisible]);
    EXPECT_FALSE([native isKeyWindow]);
}

TEST_F(WindowTest, WhatBelongsToOneTurnHappensAtItsEnd) {
    NSWindow* const native = make(attributes());
    window_->orderFront();
    window_->setScene(filled({0, 0, 300, 200}));
    EXPECT_FALSE([native isVisible]);
    window_->orderOut();
    endTurn();
    EXPECT_FALSE([native isVisible]);
}

TEST_F(WindowTest, OrderOutHidesIt) {
    NSWindow* const native = make(attributes());
    window_->orderFront();
    endTurn();
    window_->orderOut();
    endTurn();
    EXPECT_FALSE([native isVisible]);
    window_->orderOut();
    endTurn();
    EXPECT_FALSE([native isVisible]);
}

TEST_F(WindowTest, ShowsItsNewestScene) {
    NSWindow* const native = make(attributes());
    window_->setScene(filled({0, 0, 300, 200}));
    window_->orderFront();
    endTurn();
    EXPECT_EQ(ViewPixels([native contentView]).countOthers({0, 0, 300, 200}, "ffffff"), 0);
    window_->setScene({{FillRect{{0, 0, 300, 200}, {ColorName::black, 1}},
                        FillRect{{10, 20, 50, 40}, {ColorName::white, 1}}}});
    endTurn();
    const ViewPixels pixels([native contentView]);
    EXPECT_EQ(pixels.countOthers({10, 20, 50, 40}, "ffffff"), 0);
    EXPECT_EQ(pixels.countOthers({0, 0, 300, 200}, "000000"), 50 * 40);
}

TEST_F(WindowTest, PictureThatWasReplacedWhileHiddenIsNeverSeenAgain) {
    NSWindow* const native = make(attributes());
    window_->setScene(filled({0, 0, 300, 200}));
    window_->orderFront();
    endTurn();
    window_->orderOut();
    endTurn();
    window_->orderFront();
    window_->setScene({{FillRect{{0, 0, 300, 200}, {ColorName::black, 1}}}});
    endTurn();
    EXPECT_EQ(ViewPixels([native contentView]).countOthers({0, 0, 300, 200}, "000000"), 0);
}

TEST_F(WindowTest, PictureIsHandedOverBeforeTheWindowShowsItself) {
    NSWindow* const native = make(attributes());
    window_->setScene(filled({0, 0, 300, 200}));
    window_->orderFront();
    endTurn();
    window_->orderOut();
    endTurn();
    const HandOvers handOvers(native);
    window_->orderFront();
    window_->setScene(filled({10, 20, 50, 40}));
    endTurn();
    EXPECT_TRUE([native isVisible]);
    EXPECT_EQ(handOvers.all(), 1);
    EXPECT_EQ(handOvers.good(), 1);
}

TEST_F(WindowTest, NewPictureAloneDoesNotBringItToTheFront) {
    NSWindow* const native = make(attributes());
    const int before = frontings(native);
    window_->setScene({{FillRect{{0, 0, 300, 200}, {ColorName::black, 1}}}});
    window_->orderFront();
    endTurn();
    EXPECT_EQ(frontings(native), before + 1);
    window_->setScene(filled({0, 0, 300, 200}));
    endTurn();
    EXPECT_EQ(frontings(native), before + 1);
    EXPECT_EQ(ViewPixels([native contentView]).countOthers({0, 0, 300, 200}, "ffffff"), 0);
    window_->orderFront();
    endTurn();
    EXPECT_EQ(frontings(native), before + 2);
}

TEST_F(WindowTest, FrontThatWasAskedForBeforeItWasHiddenIsForgotten) {
    NSWindow* const native = make(attributes());
    const int before = frontings(native);
    window_->orderFront();
    window_->orderOut();
    window_->setScene(filled({0, 0, 300, 200}));
    endTurn();
    EXPECT_EQ(frontings(native), before);
    EXPECT_FALSE([native isVisible]);
}

TEST_F(WindowTest, ComesAndGoesWithoutAnimation) {
    EXPECT_EQ([make(attributes()) animationBehavior], NSWindowAnimationBehaviorNone);
}

TEST_F(WindowTest, DestroyingItClosesItAndForgetsWhatWasPosted) {
    const std::size_t before = windowCount();
    NSWindow* const native = [make(attributes()) retain];
    EXPECT_EQ(windowCount(), before + 1);
    window_->orderFront();
    endTurn();
    EXPECT_TRUE([native isVisible]);
    window_->setScene(filled({0, 0, 10, 10}));
    window_->orderFront();
    window_.reset();
    endTurn();
    EXPECT_FALSE([native isVisible]);
    [native release];
}

} // namespace
} // namespace tarvex::test
