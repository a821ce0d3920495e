#include "Tests/Contract/X11/DisplayAdapters.h"
#include "Tests/Support/X11/Monitors.h"
#include "Tests/Support/X11/XServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace tarvex {
namespace {

constexpr int rootWidth = 1800;
constexpr int rootHeight = 1200;

class DisplayMonitor : public ::testing::Test {
protected:
    std::vector<std::uint32_t> numbers() { return adapters_.displays.activeDisplays(100).displays; }

    std::vector<Rect> bounds() {
        std::vector<Rect> result;
        for (const std::uint32_t number : numbers()) {
            result.push_back(adapters_.displays.bounds(number));
        }
        return result;
    }

    void set(const std::vector<test::MonitorLayout>& layouts) {
        monitors_.set(layouts);
        adapters_.catchUp();
    }

    test::XServer server_{rootWidth, rootHeight};
    test::Monitors monitors_{server_.displayName()};
    XDisplayAdapters adapters_{server_.displayName()};
    // The server names its own monitor after its output; a monitor laid over it keeps the output's name.
    const std::string outputName_ = monitors_.names().at(0);
};

TEST_F(DisplayMonitor, ServerWithoutVirtualMonitorsHasOneDisplay) {
    EXPECT_EQ(bounds(), (std::vector<Rect>{{0, 0, rootWidth, rootHeight}}));
    EXPECT_EQ(adapters_.frames(), (std::vector<Rect>{{0, 0, rootWidth, rootHeight}}));
    EXPECT_EQ(adapters_.names(), monitors_.names());
    EXPECT_NE(numbers().front(), 0U);
}

TEST_F(DisplayMonitor, MonitorsOnAllSidesOfThePrimaryKeepTheirPlaces) {
    set({{"Left", {0, 300, 640, 480}},
         {"Middle", {640, 200, 800, 600}, true, true},
         {"Above", {700, 0, 320, 200}},
         {"Right", {1440, 500, 360, 640}}});
    EXPECT_EQ(bounds(),
              (std::vector<Rect>{
                  {0, 0, 800, 600}, {-640, 100, 640, 480}, {60, -200, 320, 200}, {800, 300, 360, 640}}));
    EXPECT_EQ(adapters_.frames(),
              (std::vector<Rect>{
                  {0, 0, 800, 600}, {-640, 20, 640, 480}, {60, 600, 320, 200}, {800, -340, 360, 640}}));
    EXPECT_EQ(adapters_.names(), (std::vector<std::string>{outputName_, "Left", "Above", "Right"}));
    EXPECT_EQ(adapters_.monitors.layout(), (DesktopLayout{640, 800, 0}));
}

TEST_F(DisplayMonitor, TopOfTheDesktopIsTheHighestMonitor) {
    set({{"Low", {0, 400, 640, 480}, true, true}, {"High", {640, 150, 800, 600}}});
    EXPECT_EQ(adapters_.monitors.layout(), (DesktopLayout{0, 880, 150}));
}

TEST_F(DisplayMonitor, WithoutAPrimaryTheFirstIsPrimary) {
    set({{"First", {800, 0, 640, 480}, false, true}, {"Second", {0, 0, 800, 600}}});
    EXPECT_EQ(bounds(), (std::vector<Rect>{{0, 0, 640, 480}, {-800, 0, 800, 600}}));
}

TEST_F(DisplayMonitor, SpaceFollowsTheChangeOfThePrimary) {
    set({{"One", {0, 0, 800, 600}, true, true}, {"Two", {800, 100, 640, 480}}});
    const std::vector<std::uint32_t> before = numbers();
    set({{"One", {0, 0, 800, 600}, false, true}, {"Two", {800, 100, 640, 480}, true}});
    EXPECT_EQ(numbers(), (std::vector<std::uint32_t>{before.at(1), before.at(0)}));
    EXPECT_EQ(bounds(), (std::vector<Rect>{{0, 0, 640, 480}, {-800, -100, 800, 600}}));
    EXPECT_EQ(adapters_.frames(), (std::vector<Rect>{{0, 0, 640, 480}, {-800, -20, 800, 600}}));
    EXPECT_EQ(adapters_.monitors.layout(), (DesktopLayout{800, 580, 0}));
}

TEST_F(DisplayMonitor, MirrorsAreOneDisplay) {
    set({{"One", {0, 0, 800, 600}, false, true}, {"Copy", {0, 0, 800, 600}}, {"Two", {800, 0, 640, 480}}});
    EXPECT_EQ(adapters_.names(), (std::vector<std::string>{outputName_, "Two"}));
    set({{"One", {0, 0, 800, 600}, false, true},
         {"Copy", {0, 0, 800, 600}, true},
         {"Two", {800, 0, 640, 480}}});
    EXPECT_EQ(adapters_.names(), (std::vector<std::string>{"Copy", "Two"}));
}

TEST_F(DisplayMonitor, NumberLastsWhileOtherMonitorsComeAndGo) {
    set({{"One", {0, 0, 800, 600}, true, true}, {"Two", {800, 0, 640, 480}}});
    const std::vector<std::uint32_t> before = numbers();
    monitors_.remove("One");
    adapters_.catchUp();
    const std::vector<std::uint32_t> after = numbers();
    EXPECT_EQ(std::count(after.begin(), after.end(), before.at(0)), 0);
    EXPECT_TRUE(adapters_.displays.bounds(before.at(0)).isEmpty());
    EXPECT_EQ(adapters_.displays.bounds(before.at(1)).size(), (Size{640, 480}));
    set({{"Three", {0, 600, 300, 300}}, {"One", {0, 0, 800, 600}, true, true}, {"Two", {800, 0, 500, 400}}});
    EXPECT_EQ(adapters_.displays.bounds(before.at(0)), (Rect{0, 0, 800, 600}));
    EXPECT_EQ(adapters_.displays.bounds(before.at(1)), (Rect{800, 0, 500, 400}));
}

TEST_F(DisplayMonitor, ChangesWhileInUseAreSeenEachTime) {
    for (int width = 400; width <= 900; width += 100) {
        set({{"One", {0, 0, width, 600}, true, true}, {"Two", {width, 0, 640, 480}}});
        ASSERT_EQ(bounds(), (std::vector<Rect>{{0, 0, static_cast<double>(width), 600},
                                               {static_cast<double>(width), 0, 640, 480}}));
    }
}

TEST_F(DisplayMonitor, NothingIsAskedWhileNothingChanges) {
    set({{"One", {0, 0, 800, 600}, true, true}, {"Two", {800, 0, 640, 480}}});
    ASSERT_EQ(bounds().size(), 2U);
    ASSERT_EQ(adapters_.frames().size(), 2U);
    EXPECT_EQ(adapters_.requestsDuring([&] {
        for (int round = 0; round < 1000; ++round) {
            EXPECT_EQ(bounds().size(), 2U);
            EXPECT_EQ(adapters_.frames().size(), 2U);
            EXPECT_EQ(adapters_.monitors.layout().primaryBottom, 600);
        }
    }),
              0U);
}

TEST_F(DisplayMonitor, BurstOfChangesCostsOneQuery) {
    const std::vector<test::MonitorLayout> layouts{{"One", {0, 0, 800, 600}, true, true},
                                                   {"Two", {800, 0, 640, 480}}};
    const auto useOnce = [&] { ASSERT_EQ(bounds().size(), 2U); };
    monitors_.set(layouts);
    adapters_.catchUp();
    const unsigned once = adapters_.requestsDuring(useOnce);
    EXPECT_GT(once, 0U);
    for (int round = 0; round < 20; ++round) {
        monitors_.set(layouts);
    }
    adapters_.catchUp();
    EXPECT_EQ(adapters_.requestsDuring(useOnce), once);
}

TEST_F(DisplayMonitor, NothingIsAskedBeforeSomebodyWantsToKnow) {
    ASSERT_EQ(bounds().size(), 1U);
    monitors_.set({{"One", {0, 0, 800, 600}, true, true}, {"Two", {800, 0, 640, 480}}});
    adapters_.catchUp();
    EXPECT_EQ(adapters_.requestsDuring([&] { adapters_.pump.processPending(); }), 0U);
}

TEST(DisplayWithoutRandr, WholeRootIsTheOneDisplay) {
    test::ChildProcess server({{"Xvfb", "-displayfd", "1", "-extension", "RANDR", "-screen", "0",
                                "900x700x24", "-nolisten", "tcp", "-noreset"},
                               {},
                               {}});
    ASSERT_TRUE(server.waitForOutput([&] { return server.standardOutput().ends_with('\n'); }));
    const std::string number = server.standardOutput().substr(0, server.standardOutput().find('\n'));
    XDisplayAdapters adapters(":" + number);
    const ActiveDisplayList list = adapters.displays.activeDisplays(5);
    EXPECT_EQ(list.count, 1U);
    ASSERT_EQ(list.displays.size(), 1U);
    EXPECT_NE(list.displays.front(), 0U);
    EXPECT_EQ(adapters.displays.bounds(list.displays.front()), (Rect{0, 0, 900, 700}));
    EXPECT_EQ(adapters.frames(), (std::vector<Rect>{{0, 0, 900, 700}}));
    EXPECT_EQ(adapters.names(), std::vector<std::string>{"Screen"});
    EXPECT_EQ(adapters.monitors.layout(), (DesktopLayout{0, 700, 0}));
}

TEST(DisplayWithoutServer, LostConnectionIsAnErrorAndNoDisplay) {
    auto server = std::make_unique<test::XServer>(rootWidth, rootHeight);
    XDisplayAdapters adapters(server->displayName());
    ASSERT_EQ(adapters.displays.activeDisplays(0).count, 1U);
    server.reset();
    ASSERT_TRUE(adapters.waitUntil([&] { return adapters.connection->isBroken(); }));
    const ActiveDisplayList list = adapters.displays.activeDisplays(5);
    EXPECT_EQ(list.error, XConnection::connectionLost);
    EXPECT_EQ(list.count, 0U);
    EXPECT_TRUE(list.displays.empty());
    EXPECT_EQ(adapters.screens.mainScreen().has_value(), !adapters.screens.screens().empty());
}

} // namespace
} // namespace tarvex
