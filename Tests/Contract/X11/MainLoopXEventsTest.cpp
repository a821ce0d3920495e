#include "Platform/Linux/Qt/QtMainLoop.h"
#include "Platform/Linux/Qt/QtXEventSource.h"
#include "Tests/Contract/X11/MainLoopApplication.h"
#include "Tests/Contract/X11/OverlayAdapters.h"
#include "Tests/Contract/X11/ScopedVariable.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

namespace tarvex::contract {

namespace {

/// Counts the changes of properties of the root window, as the adapters' connection is told of them.
class RootChanges {
public:
    explicit RootChanges(XOverlayAdapters& adapters)
        : subscription_(adapters.pump.subscribe(XCB_PROPERTY_NOTIFY,
                                                [this](const xcb_generic_event_t&) { ++count_; })) {
        constexpr std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        XConnection& connection = *adapters.connection;
        EXPECT_EQ(connection.check(xcb_change_window_attributes_checked(connection.get(), connection.root(),
                                                                        XCB_CW_EVENT_MASK, &mask)),
                  0);
    }

    [[nodiscard]] int count() const { return count_; }

private:
    int count_ = 0;
    std::unique_ptr<XEventPump::Subscription> subscription_;
};

void changeRoot(test::XClient& client, int times) {
    for (int index = 0; index < times; ++index) {
        client.setWords(client.root(), "_TEST_CHANGE", "CARDINAL", {static_cast<std::uint32_t>(index)});
    }
    client.sync();
}

class MainLoopXEvents : public ::testing::Test {
protected:
    test::XServer server_;
    test::XClient client_{server_.displayName()};
    MainLoopApplication application_;
    XOverlayAdapters adapters_{server_.displayName()};
    RootChanges changes_{adapters_};
    QtXEventSource source_{adapters_.pump};
    QtMainLoop loop_;
};

TEST_F(MainLoopXEvents, EventsAreHandledAsTheyArrive) {
    changeRoot(client_, 1);
    EXPECT_TRUE(application_.waitUntil([&] { return changes_.count() == 1; }));
    changeRoot(client_, 2);
    EXPECT_TRUE(application_.waitUntil([&] { return changes_.count() == 3; }));
}

TEST_F(MainLoopXEvents, EventsTakenInByAWaitForAReplyAreHandled) {
    changeRoot(client_, 3);
    // The descriptor has nothing to read any more.
    xcb_connection_t* connection = adapters_.connection->get();
    ASSERT_TRUE(adapters_.connection->take(xcb_get_input_focus_reply, xcb_get_input_focus(connection)));
    EXPECT_TRUE(application_.waitUntil([&] { return changes_.count() == 3; }));
}

TEST_F(MainLoopXEvents, BurstOfEventsLeavesTimersTheirTurn) {
    int ticks = 0;
    const auto timer = loop_.scheduleRepeating(0.005, [&ticks] { ++ticks; });
    int bursts = 0;
    EXPECT_TRUE(application_.waitUntil([&] {
        changeRoot(client_, 200);
        ++bursts;
        return ticks >= 5 || bursts == 2000;
    }));
    EXPECT_GE(ticks, 5);
    EXPECT_TRUE(application_.waitUntil([&] { return changes_.count() == bursts * 200; }));
}

TEST_F(MainLoopXEvents, WindowShownFromATimerIsOnTheScreenWithoutAnyEvent) {
    WindowAttributes attributes;
    attributes.contentRect = {100, 100, 200, 100};
    const auto window = adapters_.windows.makeWindow(attributes);
    window->setScene({{FillRect{{0, 0, 200, 100}, {ColorName::white, 1}}}});
    const auto timer = loop_.scheduleOnce(0.02, [&] { window->orderFront(); });
    EXPECT_TRUE(application_.waitUntil([&] {
        return test::Screenshot(client_).pixel({150, 850}) == 0xFFFFFF;
    }));
}

class MainLoopScaleFactor : public ::testing::TestWithParam<const char*> {
protected:
    test::XServer server_{OverlayDesktop::width, OverlayDesktop::height};
    ScopedVariable display_{"DISPLAY", server_.displayName()};
    ScopedVariable scale_{"QT_SCALE_FACTOR", std::string(GetParam())};
    MainLoopApplication application_{"xcb"};
    XOverlayAdapters adapters_{server_.displayName()};
    QtXEventSource source_{adapters_.pump};
};

TEST_P(MainLoopScaleFactor, OfQtNeverReachesTheOverlay) {
    ASSERT_DOUBLE_EQ(qApp->devicePixelRatio(), std::stod(GetParam()));
    WindowAttributes attributes;
    attributes.contentRect = {101, 203, 305, 407};
    const auto window = adapters_.windows.makeWindow(attributes);
    window->setScene({{FillRect{{0, 0, 305, 407}, {ColorName::white, 1}}}});
    window->orderFront();
    test::XClient client(server_.displayName());
    constexpr test::PixelRect expected{101, OverlayDesktop::height - 203 - 407, 305, 407};
    const auto whitePixels = [&] {
        const test::Screenshot screen(client);
        int inside = 0;
        int outside = 0;
        for (int y = 0; y < screen.height(); ++y) {
            for (int x = 0; x < screen.width(); ++x) {
                const bool isInside = x >= expected.x && x < expected.x + expected.width && y >= expected.y &&
                                      y < expected.y + expected.height;
                (isInside ? inside : outside) += screen.pixel({x, y}) == 0xFFFFFF ? 1 : 0;
            }
        }
        return std::pair(inside, outside);
    };
    EXPECT_TRUE(
        application_.waitUntil([&] { return whitePixels().first == expected.width * expected.height; }));
    EXPECT_EQ(whitePixels().second, 0);
}

INSTANTIATE_TEST_SUITE_P(Of, MainLoopScaleFactor, ::testing::Values("1", "1.25", "2"), [](const auto& info) {
    return std::string(info.param) == "1" ? "One" : std::string(info.param) == "2" ? "Two" : "OneAndAQuarter";
});

} // namespace

} // namespace tarvex::contract
