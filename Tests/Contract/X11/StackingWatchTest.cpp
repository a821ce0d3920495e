#include "Platform/Linux/X11/StackingWatch.h"

#include "Platform/Linux/X11/EventMask.h"
#include "Tests/Contract/X11/PumpedConnection.h"
#include "Tests/Support/Simulated/SimulatedMainLoop.h"
#include "Tests/Support/X11/TestWindow.h"
#include "Tests/Support/X11/XServer.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace tarvex::contract {

namespace {

/// A watch on a desktop where nobody looks after the windows.
class StackingWatchX11 : public ::testing::Test {
protected:
    StackingWatchX11() {
        errors_ = pumped_.pump.subscribe(0, [this](const xcb_generic_event_t&) { ++errorCount_; });
    }

    ~StackingWatchX11() override {
        catchUp();
        EXPECT_EQ(errorCount_, 0) << "errors of requests that nobody caught";
    }

    /// Returns when the watch has handled what other clients had finished before.
    void catchUp() {
        pumped_.pump.processPending();
        pumped_.awaitServer();
        pumped_.pump.processPending();
    }

    void start() {
        watch_->start();
        catchUp();
    }

    void endPause() {
        mainLoop_.advance(StackingWatch::pause);
        catchUp();
    }

    std::unique_ptr<test::TestWindow> open() {
        test::TestWindowOptions options;
        options.isOverrideRedirect = true;
        auto window = std::make_unique<test::TestWindow>(server_.displayName(), options);
        catchUp();
        return window;
    }

    void configure(test::TestWindow& window, xcb_config_window_t what, std::uint32_t value) {
        xcb_configure_window(window.client().connection(), window.id(), static_cast<std::uint16_t>(what),
                             &value);
        window.client().sync();
        catchUp();
    }

    void raise(test::TestWindow& window) {
        configure(window, XCB_CONFIG_WINDOW_STACK_MODE, XCB_STACK_MODE_ABOVE);
    }

    /// Brings a window that is not alone below all others and above them in turn, each time when the watch
    /// listens.
    void restack(test::TestWindow& window, int times) {
        for (int time = 0; time < times; ++time) {
            isLow_ = !isLow_;
            configure(window, XCB_CONFIG_WINDOW_STACK_MODE,
                      isLow_ ? XCB_STACK_MODE_BELOW : XCB_STACK_MODE_ABOVE);
            endPause();
        }
    }

    [[nodiscard]] bool isListening() {
        XConnection& connection = *pumped_.connection;
        const auto attributes = connection.take(
            xcb_get_window_attributes_reply, xcb_get_window_attributes(connection.get(), connection.root()));
        return attributes && (attributes->your_event_mask & XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY) != 0;
    }

    [[nodiscard]] std::vector<double> timers() const { return mainLoop_.timerIntervals(); }

    [[nodiscard]] bool isIdle() { return !isListening() && timers().empty(); }

    test::XServer server_{640, 480};
    PumpedConnection pumped_{server_.displayName()};
    std::unique_ptr<XEventPump::Subscription> errors_;
    int errorCount_ = 0;
    SimulatedMainLoop mainLoop_;
    bool isLow_ = false;
    int changes_ = 0;
    std::function<void()> onChange_ = [] {};
    std::optional<StackingWatch> watch_{std::in_place, *pumped_.connection, pumped_.pump, mainLoop_, [this] {
                                            ++changes_;
                                            onChange_();
                                        }};
};

TEST_F(StackingWatchX11, StartedTwiceItRunsOnce) {
    start();
    ASSERT_TRUE(isListening());
    EXPECT_EQ(pumped_.requestsDuring([this] { watch_->start(); }), 0U);
    watch_->stop();
    EXPECT_TRUE(isIdle());
    EXPECT_EQ(pumped_.requestsDuring([this] { watch_->stop(); }), 0U);
}

TEST_F(StackingWatchX11, StartedInThePauseItStillPauses) {
    start();
    const auto window = open();
    ASSERT_EQ(changes_, 1);
    ASSERT_EQ(timers(), std::vector<double>{StackingWatch::pause});
    start();
    EXPECT_FALSE(isListening());
    EXPECT_EQ(timers(), std::vector<double>{StackingWatch::pause});
    configure(*window, XCB_CONFIG_WINDOW_X, 7);
    EXPECT_EQ(changes_, 1);
    endPause();
    EXPECT_EQ(changes_, 2);
    EXPECT_TRUE(isListening());
    EXPECT_EQ(timers(), std::vector<double>{});
}

TEST_F(StackingWatchX11, StartedAfterItGaveInItLeavesTheWindowInPeace) {
    const auto other = open();
    const auto locker = open();
    start();
    restack(*locker, StackingWatch::maxRestackings);
    ASSERT_TRUE(isListening());
    restack(*locker, 1);
    ASSERT_TRUE(isIdle());
    // At once and at the end of each pause, but not at the last.
    EXPECT_EQ(changes_, 2 * StackingWatch::maxRestackings);
    start();
    const auto late = open();
    EXPECT_TRUE(isIdle());
    EXPECT_EQ(changes_, 2 * StackingWatch::maxRestackings);
    watch_->stop();
    start();
    restack(*locker, 1);
    EXPECT_EQ(changes_, 2 * StackingWatch::maxRestackings + 2);
}

TEST_F(StackingWatchX11, StopForgetsWhoRestackedItself) {
    const auto other = open();
    const auto locker = open();
    for (int round = 0; round < 3; ++round) {
        start();
        restack(*locker, StackingWatch::maxRestackings);
        EXPECT_TRUE(isListening()) << "round " << round;
        watch_->stop();
    }
}

TEST_F(StackingWatchX11, WhatAnotherPartListensToDoesNotEndOrLengthenThePause) {
    const RootEventSelection other(*pumped_.connection, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    auto first = open();
    EXPECT_EQ(changes_, 0);
    start();
    const auto second = open();
    ASSERT_EQ(changes_, 1);
    mainLoop_.advance(StackingWatch::pause / 2);
    raise(*first);
    const auto third = open();
    EXPECT_EQ(changes_, 1);
    EXPECT_EQ(timers().size(), 1U);
    mainLoop_.advance(StackingWatch::pause / 2);
    EXPECT_EQ(changes_, 2);
    EXPECT_TRUE(timers().empty());
    watch_->stop();
    raise(*first);
    EXPECT_EQ(changes_, 2);
    EXPECT_TRUE(timers().empty());
}

TEST_F(StackingWatchX11, EventsThatWereOnTheirWayWhenThePauseBeganAreNone) {
    const auto first = open();
    const auto second = open();
    start();
    for (test::TestWindow* window : {first.get(), second.get(), first.get()}) {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(window->client().connection(), window->id(), XCB_CONFIG_WINDOW_STACK_MODE,
                             &above);
        window->client().sync();
    }
    catchUp();
    EXPECT_EQ(changes_, 1);
    EXPECT_EQ(timers().size(), 1U);
}

TEST_F(StackingWatchX11, WindowThatMovesOrGrowsOnAndOnDoesNotInsist) {
    const auto dragged = open();
    start();
    for (std::uint32_t step = 1; step <= 4 * StackingWatch::maxRestackings; ++step) {
        configure(*dragged, step % 2 == 0 ? XCB_CONFIG_WINDOW_X : XCB_CONFIG_WINDOW_WIDTH, 200 + step);
        EXPECT_FALSE(isListening());
        endPause();
        ASSERT_TRUE(isListening()) << "step " << step;
    }
    EXPECT_EQ(changes_, 8 * StackingWatch::maxRestackings);
}

TEST_F(StackingWatchX11, WindowThatMovesBetweenItsRestackingsDoesNotInsist) {
    const auto other = open();
    const auto dragged = open();
    start();
    for (std::uint32_t round = 1; round <= 3; ++round) {
        configure(*dragged, XCB_CONFIG_WINDOW_X, 200 + round);
        endPause();
        restack(*dragged, StackingWatch::maxRestackings - 1);
        ASSERT_TRUE(isListening()) << "round " << round;
    }
}

TEST_F(StackingWatchX11, SeveralWindowsThatAreRaisedNowAndThenDoNotInsist) {
    std::vector<std::unique_ptr<test::TestWindow>> windows;
    for (int count = 0; count < 3 * StackingWatch::maxRestackings; ++count) {
        windows.push_back(open());
    }
    start();
    for (const auto& window : windows) {
        raise(*window);
        endPause();
        ASSERT_TRUE(isListening());
    }
}

TEST_F(StackingWatchX11, OwnWindowsAreNone) {
    start();
    xcb_connection_t* own = pumped_.connection->get();
    const xcb_window_t window = xcb_generate_id(own);
    xcb_create_window(own, XCB_COPY_FROM_PARENT, window, pumped_.connection->root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(own, window);
    const std::uint32_t x = 20;
    xcb_configure_window(own, window, XCB_CONFIG_WINDOW_X, &x);
    catchUp();
    EXPECT_EQ(changes_, 0);
    EXPECT_TRUE(isListening());
}

TEST_F(StackingWatchX11, WindowsWithinOtherWindowsAreNone) {
    const auto frame = open();
    test::XClient& client = frame->client();
    const xcb_window_t inner = xcb_generate_id(client.connection());
    xcb_create_window(client.connection(), XCB_COPY_FROM_PARENT, inner, frame->id(), 0, 0, 9, 9, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    client.sync();
    // As parts of the program do that wait for a window to be placed.
    const XWindowWatch placed(*pumped_.connection, inner);
    start();
    const std::uint32_t x = 5;
    xcb_configure_window(client.connection(), inner, XCB_CONFIG_WINDOW_X, &x);
    client.sync();
    catchUp();
    EXPECT_EQ(changes_, 0);
    EXPECT_TRUE(isListening());
}

TEST_F(StackingWatchX11, WindowThatGoesBeforeItsEventIsHandledIsToldOf) {
    start();
    open()->close();
    EXPECT_EQ(changes_, 1);
    endPause();
    test::TestWindowOptions options;
    options.isOverrideRedirect = true;
    test::TestWindow brief(server_.displayName(), options);
    brief.close();
    catchUp();
    EXPECT_EQ(changes_, 3);
    endPause();
    EXPECT_TRUE(isListening());
}

TEST_F(StackingWatchX11, MayBeStoppedByTheOneItTells) {
    const auto window = open();
    start();
    onChange_ = [this] { watch_->stop(); };
    configure(*window, XCB_CONFIG_WINDOW_X, 7);
    EXPECT_EQ(changes_, 1);
    EXPECT_TRUE(isIdle());

    onChange_ = [] {};
    start();
    configure(*window, XCB_CONFIG_WINDOW_X, 8);
    onChange_ = [this] { watch_->stop(); };
    endPause();
    EXPECT_EQ(changes_, 3);
    EXPECT_TRUE(isIdle());
}

TEST_F(StackingWatchX11, LeavesNothingBehind) {
    start();
    watch_.reset();
    EXPECT_TRUE(isIdle());

    watch_.emplace(*pumped_.connection, pumped_.pump, mainLoop_, [this] { ++changes_; });
    start();
    const auto window = open();
    ASSERT_EQ(timers().size(), 1U);
    watch_.reset();
    EXPECT_TRUE(isIdle());
    configure(*window, XCB_CONFIG_WINDOW_X, 7);
    mainLoop_.advance(StackingWatch::pause);
    EXPECT_EQ(changes_, 1);
}

} // namespace

} // namespace tarvex::contract
