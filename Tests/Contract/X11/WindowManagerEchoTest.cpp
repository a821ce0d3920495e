#include "Platform/Linux/X11/WindowManagerEcho.h"

#include "Tests/Contract/X11/MessageWitness.h"
#include "Tests/Contract/X11/PumpedConnection.h"
#include "Tests/Support/X11/XServer.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace tarvex::contract {

namespace {

/// The test itself answers in place of a window manager.
class WindowManagerEchoTest : public ::testing::Test {
protected:
    void ask(bool tellsBorders = true) {
        echo_->ask(tellsBorders);
        adapters_.connection->flush();
        adapters_.awaitServer();
    }

    /// The windows that the questions were about.
    [[nodiscard]] std::vector<xcb_window_t> asked() {
        std::vector<xcb_window_t> windows;
        for (const xcb_client_message_event_t& message : questions_.messages()) {
            windows.push_back(message.window);
        }
        return windows;
    }

    void answer(xcb_window_t window) {
        manager_.setWords(window, "_NET_FRAME_EXTENTS", "CARDINAL", {1, 1, 20, 1});
        manager_.sync();
        adapters_.awaitServer();
        adapters_.pump.processPending();
    }

    test::XServer server_;
    PumpedConnection adapters_{server_.displayName()};
    test::XClient manager_{server_.displayName()};
    MessageWitness questions_{server_.displayName(), "_NET_REQUEST_FRAME_EXTENTS"};
    int heard_ = 0;
    std::optional<WindowManagerEcho> echo_{std::in_place, *adapters_.connection, adapters_.pump,
                                           [this] { ++heard_; }};
};

TEST_F(WindowManagerEchoTest, AnswerIsHeardOnce) {
    ask();
    ASSERT_EQ(asked().size(), 1U);
    EXPECT_EQ(heard_, 0);
    answer(asked()[0]);
    EXPECT_EQ(heard_, 1);
    answer(asked()[0]);
    EXPECT_EQ(heard_, 1);
}

TEST_F(WindowManagerEchoTest, WindowServesAgainOnceItIsAnswered) {
    for (int round = 0; round < 3; ++round) {
        ask();
        answer(asked().back());
        EXPECT_EQ(heard_, round + 1);
    }
    const std::vector<xcb_window_t> windows = asked();
    EXPECT_EQ(std::set<xcb_window_t>(windows.begin(), windows.end()).size(), 1U);
}

TEST_F(WindowManagerEchoTest, AnswerToAnEarlierQuestionIsNoAnswerToTheLatest) {
    ask();
    ask();
    answer(asked()[0]);
    EXPECT_EQ(heard_, 0);
    answer(asked()[1]);
    EXPECT_EQ(heard_, 1);
}

TEST_F(WindowManagerEchoTest, ForgottenQuestionIsNotHeard) {
    ask();
    echo_->forget();
    answer(asked()[0]);
    EXPECT_EQ(heard_, 0);
}

TEST_F(WindowManagerEchoTest, WindowOfAnOpenQuestionStays) {
    ask();
    echo_->forget();
    ask();
    adapters_.awaitServer();
    EXPECT_TRUE(manager_.exists(asked()[0]));
    const xcb_window_t window = asked()[0];
    echo_.reset();
    adapters_.awaitServer();
    EXPECT_FALSE(manager_.exists(window));
}

TEST_F(WindowManagerEchoTest, QuestionsThatNobodyAnswersTakeFewWindows) {
    for (int round = 0; round < 50; ++round) {
        ask();
    }
    const std::vector<xcb_window_t> windows = asked();
    EXPECT_EQ(std::set<xcb_window_t>(windows.begin(), windows.end()).size(), 8U);
    answer(windows.back());
    EXPECT_EQ(heard_, 1);
}

TEST_F(WindowManagerEchoTest, VersionIsAskedForWhereTheBordersAreNotTold) {
    std::vector<xcb_window_t> requestors;
    manager_.setEventHandler([&](const xcb_generic_event_t& event) {
        if ((event.response_type & 0x7F) == XCB_SELECTION_REQUEST) {
            requestors.push_back(reinterpret_cast<const xcb_selection_request_event_t&>(event).requestor);
        }
    });
    const xcb_window_t office = xcb_generate_id(manager_.connection());
    xcb_create_window(manager_.connection(), XCB_COPY_FROM_PARENT, office, manager_.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(manager_.connection(), office, manager_.atom("WM_S0"), XCB_CURRENT_TIME);
    manager_.sync();
    // One that tells of borders may not stand the other question.
    ask(true);
    manager_.sync();
    manager_.handleEvents();
    EXPECT_TRUE(requestors.empty());
    ask(false);
    manager_.sync();
    manager_.handleEvents();
    ASSERT_EQ(requestors.size(), 1U);
    manager_.setWords(requestors[0], "VERSION", "INTEGER", {2, 0});
    manager_.sync();
    adapters_.awaitServer();
    adapters_.pump.processPending();
    EXPECT_EQ(heard_, 1);
}

} // namespace

} // namespace tarvex::contract
