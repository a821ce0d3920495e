#include "Tests/Contract/X11/EventTapFixture.h"

namespace tarvex::contract {

namespace {

/// A server with a second screen beside the one that the tap serves.
class EventTapScreensX11 : public EventTapTest {
protected:
    EventTapScreensX11() : EventTapTest(2) {}

    /// Synthesised motion alone does not take the pointer from one screen to another.
    void goElsewhere() {
        test::XClient client(server_.displayName() + ".1");
        xcb_warp_pointer(client.connection(), XCB_NONE, client.root(), 0, 0, 0, 0, 400, 400);
        client.sync();
        adapters_.pointer.refresh();
        ASSERT_FALSE(adapters_.pointer.snapshot().isOnScreen);
    }

    test::Pointer elsewhere_{server_.displayName() + ".1"};
};

TEST_F(EventTapScreensX11, PressOnAnotherScreenIsNone) {
    install();
    goElsewhere();
    elsewhere_.press();
    adapters_.catchUp();
    EXPECT_EQ(eventsDuring([this] { elsewhere_.glideTo({600, 600}, 20); }), 0);
    elsewhere_.release();
    adapters_.catchUp();
    EXPECT_TRUE(recorder_.events.empty());

    xcb_warp_pointer(other_.connection(), XCB_NONE, other_.root(), 0, 0, 0, 0, 300, 320);
    other_.sync();
    mouse_.press();
    adapters_.catchUp();
    mouse_.moveTo({500, 520});
    adapters_.catchUp();
    mouse_.release();
    adapters_.catchUp();
    EXPECT_EQ(types(), drag);
    EXPECT_EQ(recorder_.places.front(), (Point{300.5, 1024 - 320.5}));
    EXPECT_EQ(recorder_.places.back(), (Point{500.5, 1024 - 520.5}));
}

} // namespace

} // namespace tarvex::contract
