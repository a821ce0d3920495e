#include "Platform/Linux/X11/EventMask.h"
#include "Platform/Linux/X11/StackingWatch.h"
#include "Tests/Contract/X11/OverlayFixture.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace tarvex::contract {

namespace {

/// What the connection listens to on the root window.
std::uint32_t rootMask(XConnection& connection) {
    const auto attributes = connection.take(xcb_get_window_attributes_reply,
                                            xcb_get_window_attributes(connection.get(), connection.root()));
    return attributes ? attributes->your_event_mask : 0;
}

/// Whether it hears of what other programs show on the root window.
bool hearsOfOthers(XConnection& connection) {
    return (rootMask(connection) & XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY) != 0;
}

class OverlayStacking : public OverlayTest {
protected:
    /// A window over part of the overlay, which no window manager looks after.
    std::unique_ptr<test::TestWindow> openNotification() {
        test::TestWindowOptions options;
        options.geometry = {150, 250, 200, 100};
        options.isOverrideRedirect = true;
        return std::make_unique<test::TestWindow>(desktop_->server.displayName(), options);
    }

    bool isAbove(xcb_window_t higher, xcb_window_t lower) {
        const auto stack = desktop_->client.children(desktop_->client.root());
        return std::find(stack.begin(), stack.end(), higher) > std::find(stack.begin(), stack.end(), lower);
    }

    [[nodiscard]] bool isListening() { return hearsOfOthers(*desktop_->adapters.connection); }

    [[nodiscard]] std::vector<double> timers() const { return desktop_->adapters.mainLoop.timerIntervals(); }

    /// As when the pause is over.
    void endPause() {
        desktop_->adapters.mainLoop.advance(StackingWatch::pause);
        desktop_->adapters.catchUp();
    }
};

TEST_P(OverlayStacking, ComesAboveAWindowThatIsShownLater) {
    show(filled(whole_));
    const auto notification = openNotification();
    desktop_->settle();
    EXPECT_TRUE(isAbove(shownNative(), notification->id()));
    if (isComposited()) {
        EXPECT_EQ(pixel(100, 100), 0xFFFFFFU);
    }
}

TEST_P(OverlayStacking, ComesAboveAWindowThatIsRaised) {
    const auto other = openNotification();
    show(filled(whole_));
    ASSERT_TRUE(isAbove(shownNative(), other->id()));
    endPause();
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(other->client().connection(), other->id(), XCB_CONFIG_WINDOW_STACK_MODE, &above);
    other->client().sync();
    desktop_->settle();
    EXPECT_TRUE(isAbove(shownNative(), other->id()));
}

TEST_P(OverlayStacking, ComesAboveAtTheEndOfThePauseWhatWasShownInIt) {
    show(filled(whole_));
    const auto first = openNotification();
    desktop_->settle();
    ASSERT_FALSE(isListening());
    const auto second = openNotification();
    desktop_->settle();
    ASSERT_FALSE(isAbove(shownNative(), second->id()));
    endPause();
    EXPECT_TRUE(isAbove(shownNative(), second->id()));
    EXPECT_TRUE(isListening());
    EXPECT_EQ(timers(), std::vector<double>{});
}

TEST_P(OverlayStacking, WindowThatMovesOnAndOnIsHeardOfOnceAPause) {
    const auto dragged = openNotification();
    show(filled(whole_));
    endPause();
    const auto step = [&](std::uint32_t x) {
        xcb_configure_window(dragged->client().connection(), dragged->id(), XCB_CONFIG_WINDOW_X, &x);
        dragged->client().sync();
        desktop_->adapters.catchUp();
    };
    ASSERT_TRUE(isListening());
    step(151);
    EXPECT_FALSE(isListening());
    EXPECT_EQ(timers(), std::vector<double>{StackingWatch::pause});
    const unsigned requests = desktop_->adapters.requestsDuring([&] {
        for (std::uint32_t x = 152; x < 160; ++x) {
            dragged->client().sync();
            xcb_configure_window(dragged->client().connection(), dragged->id(), XCB_CONFIG_WINDOW_X, &x);
            dragged->client().sync();
            desktop_->adapters.pump.processPending();
        }
    });
    EXPECT_EQ(requests, 0U);
    EXPECT_EQ(timers(), std::vector<double>{StackingWatch::pause});
}

TEST_P(OverlayStacking, GivesInToAWindowThatInsistsOnTheTop) {
    const auto locker = openNotification();
    show(filled(whole_));
    const auto insist = [&] {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(locker->client().connection(), locker->id(), XCB_CONFIG_WINDOW_STACK_MODE,
                             &above);
        locker->client().sync();
        desktop_->settle();
        return !isAbove(shownNative(), locker->id());
    };
    int attempts = 1;
    while (attempts < 50 && !insist()) {
        endPause();
        ++attempts;
    }
    EXPECT_EQ(attempts, StackingWatch::maxRestackings + 1);
    endPause();
    EXPECT_FALSE(isAbove(shownNative(), locker->id()));
    EXPECT_FALSE(isListening());
    EXPECT_EQ(timers(), std::vector<double>{});

    // The next time is another matter.
    window_->orderOut();
    desktop_->settle();
    window_->orderFront();
    desktop_->settle();
    EXPECT_TRUE(isAbove(shownNative(), locker->id()));
    EXPECT_FALSE(insist());
}

TEST_P(OverlayStacking, HiddenItHearsOfNothing) {
    EXPECT_FALSE(isListening());
    show(filled(whole_));
    endPause();
    EXPECT_TRUE(isListening());
    window_->orderOut();
    desktop_->settle();
    EXPECT_FALSE(isListening());

    window_->orderFront();
    desktop_->settle();
    const auto other = openNotification();
    desktop_->settle();
    ASSERT_FALSE(timers().empty());
    window_->orderOut();
    desktop_->settle();
    EXPECT_TRUE(timers().empty());
    EXPECT_FALSE(isListening());
    EXPECT_FALSE(isAbove(desktop_->nativeWindows().back(), other->id()));
}

INSTANTIATE_TEST_SUITE_P(Composition, OverlayStacking,
                         ::testing::Values(Composition::none, Composition::picom, Composition::xfwm4),
                         compositionName);

TEST(RootEventSelectionX11, PartsThatListenToTheSameDoNotDisturbEachOther) {
    const test::XServer server(640, 480);
    PumpedConnection pumped(server.displayName());
    XConnection& connection = *pumped.connection;
    const RootEventSelection lasting(connection, XCB_EVENT_MASK_PROPERTY_CHANGE);
    {
        const RootEventSelection first(connection, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
        {
            const RootEventSelection second(connection, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY |
                                                            XCB_EVENT_MASK_STRUCTURE_NOTIFY);
            EXPECT_EQ(rootMask(connection), XCB_EVENT_MASK_PROPERTY_CHANGE |
                                                XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY |
                                                XCB_EVENT_MASK_STRUCTURE_NOTIFY);
        }
        EXPECT_EQ(rootMask(connection), static_cast<std::uint32_t>(XCB_EVENT_MASK_PROPERTY_CHANGE) |
                                            XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    }
    EXPECT_EQ(rootMask(connection), XCB_EVENT_MASK_PROPERTY_CHANGE);
}

TEST(RootEventSelectionX11, OneOfTwoThatListenToTheVerySameMayEnd) {
    const test::XServer server(640, 480);
    PumpedConnection pumped(server.displayName());
    XConnection& connection = *pumped.connection;
    std::optional<RootEventSelection> first(std::in_place, connection, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    std::optional<RootEventSelection> second(std::in_place, connection, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    first.reset();
    EXPECT_EQ(rootMask(connection), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    second.reset();
    EXPECT_EQ(rootMask(connection), XCB_EVENT_MASK_NO_EVENT);
}

} // namespace

} // namespace tarvex::contract
