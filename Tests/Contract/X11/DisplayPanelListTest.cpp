#include "Tests/Contract/X11/DisplayPanelListFixture.h"

#include <string>
#include <vector>

namespace tarvex {
namespace {

constexpr std::uint32_t normalState = 1;
constexpr std::uint32_t iconicState = 3;

TEST_F(DisplayPanelList, ListedPanelCountsAndOneThatNobodyHoldsDoesNot) {
    const xcb_window_t panel = createTopPanel();
    EXPECT_EQ(visible(), allFrames_);
    list({panel});
    EXPECT_EQ(visible(), belowTopPanel_);
    list({});
    EXPECT_EQ(visible(), allFrames_);
    list({panel});
    EXPECT_EQ(visible(), belowTopPanel_);
    xcb_delete_property(client_.connection(), client_.root(), client_.atom("_NET_CLIENT_LIST"));
    EXPECT_EQ(visible(), allFrames_);
}

TEST_F(DisplayPanelList, IconicPanelDoesNotCount) {
    const xcb_window_t panel = createTopPanel();
    setState(panel, normalState);
    list({panel});
    EXPECT_EQ(visible(), belowTopPanel_);
    setState(panel, iconicState);
    EXPECT_EQ(visible(), allFrames_);
    setState(panel, normalState);
    EXPECT_EQ(visible(), belowTopPanel_);
}

TEST_F(DisplayPanelList, UnmappedPanelDoesNotCount) {
    const xcb_window_t panel = createTopPanel();
    list({panel});
    EXPECT_EQ(visible(), belowTopPanel_);
    xcb_unmap_window(client_.connection(), panel);
    EXPECT_EQ(visible(), allFrames_);
    xcb_map_window(client_.connection(), panel);
    EXPECT_EQ(visible(), belowTopPanel_);
}

TEST_F(DisplayPanelList, WindowsOfAStaleListThatAreGoneAreIgnored) {
    const xcb_window_t panel = createTopPanel();
    const xcb_window_t gone = createTopPanel();
    list({gone, panel, 0x00DEAD01, XCB_WINDOW_NONE, client_.root()});
    EXPECT_EQ(visible(), belowTopPanel_);
    xcb_destroy_window(client_.connection(), panel);
    xcb_destroy_window(client_.connection(), gone);
    EXPECT_EQ(visible(), allFrames_);
    // Another window manager takes over, and has not written its own list yet.
    client_.setWords(client_.root(), "_NET_SUPPORTING_WM_CHECK", "WINDOW", {client_.root()});
    EXPECT_EQ(visible(), allFrames_);
}

TEST_F(DisplayPanelList, ListIsReadAfreshWhenTheWindowManagerChanges) {
    const xcb_window_t window = createOrdinary();
    list({window});
    EXPECT_EQ(visible(), allFrames_);
    // Nobody listens to an ordinary window.
    setPartial(window, topStrut_);
    EXPECT_EQ(visible(), allFrames_);
    client_.setWords(client_.root(), "_NET_SUPPORTING_WM_CHECK", "WINDOW", {client_.root()});
    EXPECT_EQ(visible(), belowTopPanel_);
}

TEST_F(DisplayPanelList, IdOfAnOrdinaryWindowMayPassToAPanel) {
    const xcb_window_t window = createOrdinary();
    list({window});
    EXPECT_EQ(visible(), allFrames_);
    xcb_destroy_window(client_.connection(), window);
    list({});
    create(window, {0, 0, 800, 40});
    setType(window, {"_NET_WM_WINDOW_TYPE_DOCK"});
    setPartial(window, topStrut_);
    list({window});
    EXPECT_EQ(visible(), belowTopPanel_);
}

TEST_F(DisplayPanelList, IdOfAPanelMayPassToAnOrdinaryWindow) {
    const xcb_window_t window = createTopPanel();
    list({window});
    EXPECT_EQ(visible(), belowTopPanel_);
    xcb_destroy_window(client_.connection(), window);
    create(window, {0, 0, 800, 40});
    EXPECT_EQ(visible(), allFrames_);
    setPartial(window, topStrut_);
    list({window});
    EXPECT_EQ(visible(), belowTopPanel_);
}

TEST_F(DisplayPanelList, DockAmongSeveralTypesIsKnownBeforehand) {
    const xcb_window_t panel = createDock();
    setType(panel, {"_TARVEX_TEST_TYPE", "_NET_WM_WINDOW_TYPE_DOCK", "_NET_WM_WINDOW_TYPE_NORMAL"});
    list({panel});
    EXPECT_EQ(visible(), allFrames_);
    setPartial(panel, topStrut_);
    EXPECT_EQ(visible(), belowTopPanel_);
}

TEST_F(DisplayPanelList, PlainStrutCoversTheWholeEdge) {
    const xcb_window_t panel = createDock();
    client_.setWords(panel, "_NET_WM_STRUT", "CARDINAL", {0, 0, 40, 0});
    list({panel});
    EXPECT_EQ(visible(), belowTopPanel_);
}

TEST_F(DisplayPanelList, PartialStrutGoesBeforeThePlainOne) {
    const xcb_window_t panel = createDock();
    client_.setWords(panel, "_NET_WM_STRUT", "CARDINAL", {0, 0, 90, 0});
    setPartial(panel, topStrut_);
    list({panel});
    EXPECT_EQ(visible(), belowTopPanel_);
    xcb_delete_property(client_.connection(), panel, client_.atom("_NET_WM_STRUT_PARTIAL"));
    EXPECT_EQ(visible(), (std::vector<Rect>{{0, 0, 800, 510}, secondFrame}));
}

TEST_F(DisplayPanelList, RangeThatWasNeverFilledInIsTheWholeEdge) {
    const xcb_window_t panel = xcb_generate_id(client_.connection());
    create(panel, {second.x, second.y, second.width, 40});
    setPartial(panel, {0, 0, 140, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    list({panel});
    EXPECT_EQ(visible(), (std::vector<Rect>{firstFrame, {800, 20, 640, 440}}));
}

TEST_F(DisplayPanelList, MalformedStrutsCountAsNone) {
    const xcb_window_t panel = createDock();
    list({panel});
    setPartial(panel, {0, 0, 40});
    EXPECT_EQ(visible(), allFrames_);
    setPartial(panel, {});
    EXPECT_EQ(visible(), allFrames_);
    client_.setText(panel, "_NET_WM_STRUT_PARTIAL", "STRING", std::string(48, '\x01'));
    EXPECT_EQ(visible(), allFrames_);
    setPartial(panel, std::vector<std::uint32_t>(12, 0xFFFFFFFF));
    EXPECT_EQ(visible(), allFrames_);
    setPartial(panel, {0, 0, 40, 0xFFFFFFFF, 0, 0, 0, 0, 0, 0xFFFFFFFF, 0, 0xFFFFFFFF});
    EXPECT_EQ(visible(), belowTopPanel_);
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
    EXPECT_EQ(visible(), belowTopPanel_);
}

TEST_F(DisplayPanelList, BurstOfChangesCostsOneQuery) {
    const xcb_window_t panel = createTopPanel();
    list({panel});
    ASSERT_EQ(visible(), belowTopPanel_);
    const auto use = [&] { EXPECT_EQ(adapters_.visibleFrames(), belowTopPanel_); };
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

TEST_F(DisplayPanelList, KnownPanelsAreNotAskedAgainWhenAWindowOpens) {
    const auto requestsFor = [&](const std::vector<xcb_window_t>& windows) {
        list(windows);
        client_.sync();
        adapters_.catchUp();
        return adapters_.requestsDuring([&] { static_cast<void>(adapters_.visibleFrames()); });
    };
    const xcb_window_t panel = createTopPanel();
    const unsigned forPanel = requestsFor({panel});
    const unsigned forNothing = requestsFor({panel});
    const xcb_window_t window = createOrdinary();
    const unsigned forWindow = requestsFor({panel, window}) - forNothing;
    EXPECT_GT(forPanel, forNothing + forWindow);
    EXPECT_EQ(requestsFor({window, panel}), forNothing + forWindow);
    EXPECT_EQ(visible(), belowTopPanel_);
}

TEST_F(DisplayPanelList, OtherPropertiesOfTheRootAndOfPanelsCostNothing) {
    const xcb_window_t panel = createTopPanel();
    list({panel});
    ASSERT_EQ(visible(), belowTopPanel_);
    client_.setWords(client_.root(), "_NET_ACTIVE_WINDOW", "WINDOW", {panel});
    client_.setWords(client_.root(), "_NET_CLIENT_LIST_STACKING", "WINDOW", {panel});
    client_.setText(panel, "_NET_WM_NAME", "UTF8_STRING", "10:24");
    client_.sync();
    adapters_.catchUp();
    EXPECT_EQ(adapters_.requestsDuring([&] { EXPECT_EQ(adapters_.visibleFrames(), belowTopPanel_); }), 0U);
}

TEST_F(DisplayPanelList, EventsThatOthersSelectedOnTheRootStaySelected) {
    const auto connection = XConnection::open(server_.displayName());
    const auto mask = [&] {
        return connection
            ->take(xcb_get_window_attributes_reply,
                   xcb_get_window_attributes(connection->get(), connection->root()))
            ->your_event_mask;
    };
    const RootEventSelection others(*connection, XCB_EVENT_MASK_FOCUS_CHANGE);
    XEventPump pump(*connection);
    {
        const MonitorTracker monitors(*connection, pump);
        const StrutTracker struts(*connection, pump);
        EXPECT_EQ(mask(), XCB_EVENT_MASK_FOCUS_CHANGE | XCB_EVENT_MASK_PROPERTY_CHANGE |
                              XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    }
    EXPECT_EQ(mask(), XCB_EVENT_MASK_FOCUS_CHANGE);
}

} // namespace
} // namespace tarvex
