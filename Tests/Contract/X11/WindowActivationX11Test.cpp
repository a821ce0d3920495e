#include "Platform/Linux/X11/XWindowActivation.h"
#include "Tests/Contract/X11/MessageWitness.h"
#include "Tests/Contract/X11/PumpedConnection.h"
#include "Tests/Support/X11/ManagedWindow.h"
#include "Tests/Support/X11/WindowManager.h"
#include "Tests/Support/X11/XClient.h"
#include "Tests/Support/X11/XServer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <vector>

namespace tarvex::contract {

namespace {

constexpr std::uint32_t thePersonHimself = 2;

using Words = std::vector<std::uint32_t>;

/// What a window manager is asked when windows are brought to the front.
class WindowActivationX11 : public ::testing::Test {
protected:
    /// A window that is not shown yet.
    xcb_window_t makeWindow() {
        xcb_connection_t* const connection = client_.connection();
        const xcb_window_t window = xcb_generate_id(connection);
        xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, client_.root(), 100, 100, 300, 200, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        client_.sync();
        return window;
    }

    void show(xcb_window_t window) {
        xcb_map_window(client_.connection(), window);
        client_.waitUntil([&] { return test::ManagedWindow(client_, window).isManagedAndViewable(); },
                          "the window is shown");
    }

    /// All that follows from what was done has happened.
    void settle() {
        for (int round = 0; round < 2; ++round) {
            adapter_.awaitServer();
            adapter_.pump.processPending();
            adapter_.awaitServer();
            manager_.barrier();
        }
    }

    static Words dataOf(const xcb_client_message_event_t& message) {
        return {std::begin(message.data.data32), std::end(message.data.data32)};
    }

    /// The server's time, by a property that nothing is added to.
    xcb_timestamp_t serverTime() {
        xcb_timestamp_t time = 0;
        client_.selectEvents(timekeeper_, XCB_EVENT_MASK_PROPERTY_CHANGE);
        client_.setEventHandler([&](const xcb_generic_event_t& event) {
            const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
            if ((event.response_type & 0x7F) == XCB_PROPERTY_NOTIFY && change.window == timekeeper_) {
                time = change.time;
            }
        });
        client_.setWords(timekeeper_, "_TEST_TIME", "CARDINAL", {});
        client_.waitUntil([&] { return time != 0; }, "the server tells its time");
        client_.setEventHandler({});
        return time;
    }

    test::XServer server_;
    test::WindowManager manager_{server_, test::WindowManagerKind::openbox};
    test::XClient client_{server_.displayName()};
    PumpedConnection adapter_{server_.displayName()};
    XWindowActivation activation_{*adapter_.connection, adapter_.pump};
    MessageWitness wishes_{server_.displayName(), "_NET_ACTIVE_WINDOW"};
    xcb_window_t timekeeper_ = makeWindow();
};

TEST_F(WindowActivationX11, WishIsThePersonsAndOfThisMoment) {
    const xcb_window_t window = makeWindow();
    show(window);
    const xcb_timestamp_t before = serverTime();
    activation_.activate(window);
    settle();
    const xcb_timestamp_t after = serverTime();
    ASSERT_EQ(wishes_.messages().size(), 1U);
    const xcb_client_message_event_t& wish = wishes_.messages().front();
    EXPECT_EQ(wish.format, 32);
    EXPECT_EQ(wish.window, window);
    const xcb_timestamp_t time = wish.data.data32[1];
    EXPECT_EQ(dataOf(wish), (Words{thePersonHimself, time, XCB_WINDOW_NONE, 0, 0}));
    EXPECT_GE(time, before);
    EXPECT_LE(time, after);
    EXPECT_EQ(client_.words(window, "_NET_WM_USER_TIME"), Words{time});
}

TEST_F(WindowActivationX11, WishWaitsUntilTheWindowIsShown) {
    const xcb_window_t window = makeWindow();
    activation_.activate(window);
    settle();
    EXPECT_TRUE(wishes_.messages().empty());
    show(window);
    settle();
    ASSERT_EQ(wishes_.messages().size(), 1U);
    EXPECT_EQ(wishes_.messages().front().window, window);
}

TEST_F(WindowActivationX11, WishIsFulfilledOnce) {
    const xcb_window_t window = makeWindow();
    activation_.activate(window);
    show(window);
    settle();
    ASSERT_EQ(wishes_.messages().size(), 1U);
    xcb_unmap_window(client_.connection(), window);
    client_.waitUntil([&] { return !test::ManagedWindow(client_, window).isManagedAndViewable(); },
                      "the window is hidden");
    show(window);
    settle();
    EXPECT_EQ(wishes_.messages().size(), 1U);
}

TEST_F(WindowActivationX11, WishThatWasTakenBackIsForgotten) {
    const xcb_window_t window = makeWindow();
    const xcb_window_t other = makeWindow();
    activation_.activate(window);
    activation_.cancel(other);
    settle();
    show(window);
    settle();
    EXPECT_EQ(wishes_.messages().size(), 1U) << "of another window nothing was wished";

    activation_.activate(other);
    activation_.cancel(other);
    settle();
    show(other);
    settle();
    EXPECT_EQ(wishes_.messages().size(), 1U);
}

TEST_F(WindowActivationX11, LaterWishTakesThePlaceOfAnEarlierOne) {
    const xcb_window_t first = makeWindow();
    const xcb_window_t second = makeWindow();
    activation_.activate(first);
    settle();
    activation_.activate(second);
    settle();
    show(first);
    show(second);
    settle();
    ASSERT_EQ(wishes_.messages().size(), 1U);
    EXPECT_EQ(wishes_.messages().front().window, second);
}

TEST_F(WindowActivationX11, WindowIsFetchedAndUnfoldedByThePersonToo) {
    MessageWitness moves(server_.displayName(), "_NET_WM_DESKTOP");
    MessageWitness states(server_.displayName(), "_NET_WM_STATE");
    client_.sendToWindowManager(client_.root(), "_NET_NUMBER_OF_DESKTOPS", {2, 0, 0, 0, 0});
    client_.waitUntil([&] { return client_.words(client_.root(), "_NET_NUMBER_OF_DESKTOPS") == Words{2}; },
                      "there are two desktops");
    const xcb_window_t window = makeWindow();
    show(window);
    client_.sendToWindowManager(window, "_NET_WM_STATE",
                                {1, client_.atom("_NET_WM_STATE_SHADED"), 0, thePersonHimself, 0});
    client_.sendToWindowManager(client_.root(), "_NET_CURRENT_DESKTOP", {1, 0, 0, 0, 0});
    client_.waitUntil(
        [&] {
            return test::ManagedWindow(client_, window).hasState("_NET_WM_STATE_SHADED") &&
                   client_.words(client_.root(), "_NET_CURRENT_DESKTOP") == Words{1};
        },
        "the window is shaded and elsewhere");
    activation_.activate(window);
    settle();
    ASSERT_EQ(moves.messages().size(), 1U);
    EXPECT_EQ(dataOf(moves.messages().front()), (Words{1, thePersonHimself, 0, 0, 0}));
    ASSERT_EQ(states.messages().size(), 2U) << "the test's own and the activation's";
    constexpr std::uint32_t removal = 0;
    EXPECT_EQ(dataOf(states.messages().back()),
              (Words{removal, client_.atom("_NET_WM_STATE_SHADED"), XCB_ATOM_NONE, thePersonHimself, 0}));
    EXPECT_GE(wishes_.messages().size(), 1U);
}

} // namespace

} // namespace tarvex::contract
