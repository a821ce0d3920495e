#include "Tests/Contract/X11/DisplayPanelListFixture.h"

namespace tarvex {
namespace {

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
    client_.setWords(window, "_NET_FRAME_EXTENTS", "CARDINAL", {10, 0, 0, 0});
    EXPECT_EQ(mainFrame(), firstFrame);
    client_.setWords(window, "_GTK_FRAME_EXTENTS", "CARDINAL", {20, 0, 0, 0});
    EXPECT_EQ(mainFrame(), secondFrame);
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
