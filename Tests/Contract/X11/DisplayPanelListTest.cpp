#include "Tests/Contract/X11/DisplayAdapters.h"
#include "Tests/Support/X11/Monitors.h"
#include "Tests/Support/X11/XClient.h"
#include "Tests/Support/X11/XServer.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace tarvex {
namespace {

constexpr test::PixelRect root{0, 0, 1500, 900};
constexpr test::PixelRect first{0, 0, 800, 600};
constexpr test::PixelRect second{800, 100, 640, 480};
const Rect firstFrame{0, 0, 800, 600};
const Rect secondFrame{800, 20, 640, 480};
const std::vector<Rect> allFrames{firstFrame, secondFrame};
const std::vector<Rect> belowTopPanel{{0, 0, 800, 560}, secondFrame};

constexpr std::uint32_t normalState = 1;
constexpr std::uint32_t iconicState = 3;

// The test is the window manager: it writes the list of windows, right or wrong.
class DisplayPanelList : public ::testing::Test {
protected:
    DisplayPanelList() {
        monitors_.set({{"First", first, true, true}, {"Second", second}});
        adapters_.catchUp();
    }

    void create(xcb_window_t window, const test::PixelRect& geometry) {
        const std::uint32_t overrideRedirect = 1;
        xcb_create_window(client_.connection(), XCB_COPY_FROM_PARENT, window, client_.root(),
                          static_cast<std::int16_t>(geometry.x), static_cast<std::int16_t>(geometry.y),
                          static_cast<std::uint16_t>(geometry.width),
                          static_cast<std::uint16_t>(geometry.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &overrideRedirect);
        xcb_map_window(client_.connection(), window);
    }

    xcb_window_t createOrdinary() {
        const xcb_window_t window = xcb_generate_id(client_.connection());
        create(window, {100, 100, 300, 200});
        return window;
    }

    // A dock along the top of the first monitor, without a strut.
    xcb_window_t createDock() {
        const xcb_window_t window = xcb_generate_id(client_.connection());
        create(window, {0, 0, 800, 40});
        setType(window, {"_NET_WM_WINDOW_TYPE_DOCK"});
        return window;
    }

    xcb_window_t createTopPanel() {
        const xcb_window_t window = createDock();
        setPartial(window, topStrut_);
        return window;
    }

    void setType(xcb_window_t window, const std::vector<std::string>& types) {
        std::vector<std::uint32_t> atoms;
        for (const std::string& type : types) {
            atoms.push_back(client_.atom(type));
        }
        client_.setWords(window, "_NET_WM_WINDOW_TYPE", "ATOM", atoms);
    }

    void setPartial(xcb_window_t window, const std::vector<std::uint32_t>& words) {
        client_.setWords(window, "_NET_WM_STRUT_PARTIAL", "CARDINAL", words);
    }

    void setState(xcb_window_t window, std::uint32_t state) {
        client_.setWords(window, "WM_STATE", "WM_STATE", {state, 0});
    }

    void list(const std::vector<xcb_window_t>& windows) {
        client_.setWords(client_.root(), "_NET_CLIENT_LIST", "WINDOW", windows);
    }

    std::vector<Rect> visible() {
        client_.sync();
        adapters_.catchUp();
        return adapters_.visibleFrames();
    }

    test::XServer server_{root.width, root.height};
    test::Monitors monitors_{server_.displayName()};
    test::XClient client_{server_.displayName()};
    XDisplayAdapters adapters_{server_.displayName()};
    const std::vector<std::uint32_t> topStrut_{0, 0, 40, 0, 0, 0, 0, 0, 0, 799, 0, 0};
};

TEST_F(DisplayPanelList, ListedPanelCountsAndUnlistedOneDoesNot) {
    const xcb_window_t panel = createTopPanel();
    EXPECT_EQ(visible(), allFrames);
    list({panel});
    EXPECT_EQ(visible(), belowTopPanel);
    list({});
    EXPECT_EQ(visible(), allFrames);
    list({panel});
    EXPECT_EQ(visible(), belowTopPanel);
    xcb_delete_property(client_.connection(), client_.root(), client_.atom("_NET_CLIENT_LIST"));
    EXPECT_EQ(visible(), allFrames);
}

TEST_F(DisplayPanelList, IconicPanelDoesNotCount) {
    const xcb_window_t panel = createTopPanel();
    setState(panel, normalState);
    list({panel});
    EXPECT_EQ(visible(), belowTopPanel);
    setState(panel, iconicState);
    EXPECT_EQ(visible(), allFrames);
    setState(panel, normalState);
    EXPECT_EQ(visible(), belowTopPanel);
}

TEST_F(DisplayPanelList, UnmappedPanelDoesNotCount) {
    const xcb_window_t panel = createTopPanel();
    list({panel});
    EXPECT_EQ(visible(), belowTopPanel);
    xcb_unmap_window(client_.connection(), panel);
    EXPECT_EQ(visible(), allFrames);
    xcb_map_window(client_.connection(), panel);
    EXPECT_EQ(visible(), belowTopPanel);
}

TEST_F(DisplayPanelList, WindowsOfAStaleListThatAreGoneAreIgnored) {
    const xcb_window_t panel = createTopPanel();
    const xcb_window_t gone = createTopPanel();
    list({gone, panel, 0x00DEAD01, XCB_WINDOW_NONE, client_.root()});
    EXPECT_EQ(visible(), belowTopPanel);
    xcb_destroy_window(client_.connection(), panel);
    xcb_destroy_window(client_.connection(), gone);
    EXPECT_EQ(visible(), allFrames);
    // Another window manager takes over, and has not written its own list yet.
    client_.setWords(client_.root(), "_NET_SUPPORTING_WM_CHECK", "WINDOW", {client_.root()});
    EXPECT_EQ(visible(), allFrames);
}

TEST_F(DisplayPanelList, IdOfAnOrdinaryWindowMayPassToAPanel) {
    const xcb_window_t window = createOrdinary();
    list({window});
    EXPECT_EQ(visible(), allFrames);
    xcb_destroy_window(client_.connection(), window);
    list({});
    create(window, {0, 0, 800, 40});
    setType(window, {"_NET_WM_WINDOW_TYPE_DOCK"});
    setPartial(window, topStrut_);
    list({window});
    EXPECT_EQ(visible(), belowTopPanel);
}

TEST_F(DisplayPanelList, IdOfAPanelMayPassToAnOrdinaryWindow) {
    const xcb_window_t window = createTopPanel();
    list({window});
    EXPECT_EQ(visible(), belowTopPanel);
    xcb_destroy_window(client_.connection(), window);
    create(window, {0, 0, 800, 40});
    EXPECT_EQ(visible(), allFrames);
    setPartial(window, topStrut_);
    list({window});
    EXPECT_EQ(visible(), belowTopPanel);
}

TEST_F(DisplayPanelList, DockAmongSeveralTypesIsKnownBeforehand) {
    const xcb_window_t panel = createDock();
    setType(panel, {"_TARVEX_TEST_TYPE", "_NET_WM_WINDOW_TYPE_DOCK", "_NET_WM_WINDOW_TYPE_NORMAL"});
    list({panel});
    EXPECT_EQ(visible(), allFrames);
    setPartial(panel, topStrut_);
    EXPECT_EQ(visible(), belowTopPanel);
}

TEST_F(DisplayPanelList, PlainStrutCoversTheWholeEdge) {
    const xcb_window_t panel = createDock();
    client_.setWords(panel, "_NET_WM_STRUT", "CARDINAL", {0, 0, 40, 0});
    list({panel});
    EXPECT_EQ(visible(), belowTopPanel);
}

TEST_F(DisplayPanelList, PartialStrutGoesBeforeThePlainOne) {
    const xcb_window_t panel = createDock();
    client_.setWords(panel, "_NET_WM_STRUT", "CARDINAL", {0, 0, 90, 0});
    setPartial(panel, topStrut_);
    list({panel});
    EXPECT_EQ(visible(), belowTopPanel);
    xcb_delete_property(client_.connection(), panel, client_.atom("_NET_WM_STRUT_PARTIAL"));
    EXPECT_EQ(visible(), (std::vector<Rect>{{0, 0, 800, 510}, secondFrame}));
}

TEST_F(DisplayPanelList, RangeThatWasNeverFilledInIsTheWholeEdge) {
    const xcb_window_t panel = createDock();
    setPartial(panel, {0, 0, 40, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    list({panel});
    EXPECT_EQ(visible(), belowTopPanel);
}

TEST_F(DisplayPanelList, MalformedStrutsCountAsNone) {
    const xcb_window_t panel = createDock();
    list({panel});
    setPartial(panel, {0, 0, 40});
    EXPECT_EQ(visible(), allFrames);
    setPartial(panel, {});
    EXPECT_EQ(visible(), allFrames);
    client_.setText(panel, "_NET_WM_STRUT_PARTIAL", "STRING", std::string(48, '\x01'));
    EXPECT_EQ(visible(), allFrames);
    setPartial(panel, std::vector<std::uint32_t>(12, 0xFFFFFFFF));
    EXPECT_EQ(visible(), allFrames);
    setPartial(panel, {0, 0, 40, 0xFFFFFFFF, 0, 0, 0, 0, 0, 0xFFFFFFFF, 0, 0xFFFFFFFF});
    EXPECT_EQ(visible(), belowTopPanel);
}

TEST_F(DisplayPanelList, HiddenHolderWindowActsWhereItsStrutReaches) {
    const xcb_window_t holder = xcb_generate_id(client_.connection());
    create(holder, {-10, -10, 1, 1});
    setPartial(holder, {850, 0, 0, 0, 0, 899, 0, 0, 0, 0, 0, 0});
    list({holder});
    EXPECT_EQ(visible(), (std::vector<Rect>{firstFrame, {850, 20, 590, 480}}));
}

TEST_F(DisplayPanelList, LargestOfSeveralPanelsCounts) {
    const xcb_window_t small = createTopPanel();
    const xcb_window_t large = createTopPanel();
    setPartial(large, {0, 0, 100, 0, 0, 0, 0, 0, 0, 799, 0, 0});
    list({small, large, small});
    EXPECT_EQ(visible(), (std::vector<Rect>{{0, 0, 800, 500}, secondFrame}));
    xcb_destroy_window(client_.connection(), large);
    EXPECT_EQ(visible(), belowTopPanel);
}

TEST_F(DisplayPanelList, BurstOfChangesCostsOneQuery) {
    const xcb_window_t panel = createTopPanel();
    list({panel});
    ASSERT_EQ(visible(), belowTopPanel);
    const auto use = [&] { EXPECT_EQ(adapters_.visibleFrames(), belowTopPanel); };
    setPartial(panel, topStrut_);
    client_.sync();
    adapters_.catchUp();
    const unsigned once = adapters_.requestsDuring(use);
    EXPECT_GT(once, 0U);
    for (int round = 0; round < 50; ++round) {
        setPartial(panel, topStrut_);
        setState(panel, normalState);
    }
    client_.sync();
    adapters_.catchUp();
    EXPECT_EQ(adapters_.requestsDuring(use), once);
    EXPECT_EQ(adapters_.requestsDuring(use), 0U);
}

TEST_F(DisplayPanelList, OtherPropertiesOfTheRootAndOfPanelsCostNothing) {
    const xcb_window_t panel = createTopPanel();
    list({panel});
    ASSERT_EQ(visible(), belowTopPanel);
    client_.setWords(client_.root(), "_NET_ACTIVE_WINDOW", "WINDOW", {panel});
    client_.setWords(client_.root(), "_NET_CLIENT_LIST_STACKING", "WINDOW", {panel});
    client_.setText(panel, "_NET_WM_NAME", "UTF8_STRING", "10:24");
    client_.sync();
    adapters_.catchUp();
    EXPECT_EQ(adapters_.requestsDuring([&] { EXPECT_EQ(adapters_.visibleFrames(), belowTopPanel); }), 0U);
}

TEST_F(DisplayPanelList, EventsThatOthersSelectedOnTheRootStaySelected) {
    const auto connection = XConnection::open(server_.displayName());
    const auto mask = [&] {
        return connection
            ->take(xcb_get_window_attributes_reply,
                   xcb_get_window_attributes(connection->get(), connection->root()))
            ->your_event_mask;
    };
    const std::uint32_t before = XCB_EVENT_MASK_FOCUS_CHANGE;
    xcb_change_window_attributes(connection->get(), connection->root(), XCB_CW_EVENT_MASK, &before);
    XEventPump pump(*connection);
    const MonitorTracker monitors(*connection, pump);
    const StrutTracker struts(*connection, pump);
    EXPECT_EQ(mask(), before | XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
}

class DisplayMainScreen : public DisplayPanelList {
protected:
    void activate(xcb_window_t window) {
        client_.setWords(client_.root(), "_NET_ACTIVE_WINDOW", "WINDOW", {window});
    }

    Rect mainFrame() {
        client_.sync();
        adapters_.catchUp();
        const auto main = adapters_.screens.mainScreen();
        return main ? main->frame : Rect{};
    }

    xcb_window_t createAt(int x, int width) {
        const xcb_window_t window = xcb_generate_id(client_.connection());
        create(window, {x, 200, width, 100});
        return window;
    }
};

TEST_F(DisplayMainScreen, WithoutAnActiveWindowItIsThePrimaryOne) {
    EXPECT_EQ(mainFrame(), firstFrame);
    activate(XCB_WINDOW_NONE);
    EXPECT_EQ(mainFrame(), firstFrame);
    activate(0x00DEAD01);
    EXPECT_EQ(mainFrame(), firstFrame);
    client_.setWords(client_.root(), "_NET_ACTIVE_WINDOW", "WINDOW", {});
    EXPECT_EQ(mainFrame(), firstFrame);
}

TEST_F(DisplayMainScreen, CentreOfTheActiveWindowDecides) {
    activate(createAt(698, 200));
    EXPECT_EQ(mainFrame(), firstFrame);
    activate(createAt(700, 200));
    EXPECT_EQ(mainFrame(), secondFrame);
}

TEST_F(DisplayMainScreen, DecorationsCountAndInvisibleBordersDoNot) {
    const xcb_window_t window = createAt(698, 200);
    activate(window);
    client_.setWords(window, "_NET_FRAME_EXTENTS", "CARDINAL", {0, 10, 20, 0});
    EXPECT_EQ(mainFrame(), secondFrame);
    client_.setWords(window, "_GTK_FRAME_EXTENTS", "CARDINAL", {0, 10, 0, 0});
    EXPECT_EQ(mainFrame(), firstFrame);
    client_.setWords(window, "_NET_FRAME_EXTENTS", "CARDINAL", {0xFFFFFFFF, 0, 0, 0});
    EXPECT_EQ(mainFrame(), firstFrame);
}

TEST_F(DisplayMainScreen, ActiveWindowOutsideOfAllScreensLeavesThePrimaryOne) {
    activate(createAt(-3000, 200));
    EXPECT_EQ(mainFrame(), firstFrame);
}

TEST_F(DisplayMainScreen, WithOneScreenNothingIsAsked) {
    monitors_.set({{"Only", first, true, true}});
    activate(createAt(698, 200));
    ASSERT_EQ(mainFrame(), firstFrame);
    EXPECT_EQ(adapters_.requestsDuring([&] { EXPECT_TRUE(adapters_.screens.mainScreen().has_value()); }), 0U);
}

} // namespace
} // namespace tarvex
