#include "Tests/Contract/X11/EventTapFixture.h"

namespace tarvex::contract {

namespace {

class EventTapX11 : public EventTapTest {};

TEST_F(EventTapX11, MovingPointerWakesNobodyWhileNoButtonIsDown) {
    install();
    EXPECT_EQ(eventsDuring([this] { mouse_.glideTo({900, 700}, 200); }), 0);
    mouse_.press();
    mouse_.release();
    adapters_.catchUp();
    ASSERT_EQ(types(), click);
    EXPECT_EQ(eventsDuring([this] { mouse_.glideTo({200, 200}, 200); }), 0);
}

TEST_F(EventTapX11, DroppedTapLeavesNoEventsBehind) {
    install();
    // The server tells of the keyboard that is now in use.
    keyboard_.tap(test::key::super);
    source_.reset();
    tap_.reset();
    EXPECT_EQ(eventsDuring([this] {
                  mouse_.press();
                  mouse_.glideTo({400, 400}, 20);
                  mouse_.release();
                  keyboard_.tap(test::key::super);
              }),
              0);
}

TEST_F(EventTapX11, QueuedMotionIsOneEventOfOneRequest) {
    install();
    mouse_.press();
    adapters_.catchUp();
    recorder_.events.clear();
    mouse_.glideTo({900, 700}, 300);
    adapters_.awaitServer();
    EXPECT_EQ(adapters_.requestsDuring([this] { adapters_.pump.processPending(); }), 1U);
    adapters_.catchUp();
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::leftMouseDragged}));
    EXPECT_EQ(recorder_.places.back(), (Point{900.5, 1024 - 700.5}));
}

TEST_F(EventTapX11, PointerIsAskedOncePerEventHoweverOftenItIsRead) {
    install();
    std::vector<unsigned> requests;
    recorder_.onEvent = [&] {
        requests.push_back(adapters_.requestsDuring([this] {
            static_cast<void>(adapters_.pointer.mouseLocation());
            static_cast<void>(adapters_.pointer.mouseLocation());
        }));
    };
    mouse_.press();
    ASSERT_TRUE(adapters_.waitUntil([&] { return requests.size() == 1; }));
    EXPECT_EQ(requests.back(), 0U);
    EXPECT_EQ(adapters_.requestsDuring([this] { static_cast<void>(adapters_.pointer.mouseLocation()); }), 1U);
}

TEST_F(EventTapX11, ReleaseFindsAPointerThatAnotherProgramPutElsewhere) {
    install();
    mouse_.press();
    adapters_.catchUp();
    mouse_.moveTo({300, 300});
    adapters_.catchUp();
    xcb_warp_pointer(other_.connection(), XCB_NONE, other_.root(), 0, 0, 0, 0, 700, 320);
    other_.sync();
    adapters_.catchUp();
    mouse_.release();
    adapters_.catchUp();
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::leftMouseDown, EventType::leftMouseDragged,
                                               EventType::leftMouseDragged, EventType::leftMouseUp}));
    EXPECT_EQ(recorder_.places.back(), (Point{700.5, 1024 - 320.5}));
    EXPECT_EQ(recorder_.places[2], recorder_.places.back());
}

TEST_F(EventTapX11, DragIsSeenWhileAnotherClientHoldsThePointer) {
    install();
    mouse_.press();
    const test::Owned<xcb_grab_pointer_reply_t> grab(xcb_grab_pointer_reply(
        other_.connection(),
        xcb_grab_pointer(other_.connection(), 0, other_.root(), XCB_EVENT_MASK_BUTTON_RELEASE,
                         XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME),
        nullptr));
    ASSERT_NE(grab, nullptr);
    ASSERT_EQ(grab->status, XCB_GRAB_STATUS_SUCCESS);
    adapters_.catchUp();
    mouse_.moveTo({300, 300});
    adapters_.catchUp();
    mouse_.release();
    adapters_.catchUp();
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::leftMouseDown, EventType::leftMouseDragged,
                                               EventType::leftMouseUp}));
}

TEST_F(EventTapX11, ButtonThatIsDownAtTheStartIsFollowed) {
    mouse_.press();
    install();
    EXPECT_TRUE(recorder_.events.empty());
    mouse_.moveTo({300, 300});
    adapters_.catchUp();
    mouse_.release();
    adapters_.catchUp();
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::leftMouseDragged, EventType::leftMouseUp}));
}

TEST_F(EventTapX11, MissedReleaseIsMadeUpForAtTheNextMotion) {
    install();
    mouse_.press();
    adapters_.catchUp();
    EXPECT_EQ(eventsDuring([this] { mouse_.release(); }), 1); // and lost
    mouse_.moveTo({300, 300});
    adapters_.catchUp();
    EXPECT_EQ(types(), drag);
    EXPECT_EQ(eventsDuring([this] { mouse_.glideTo({500, 500}, 50); }), 0);
    recorder_.events.clear();
    mouse_.press();
    mouse_.release();
    adapters_.catchUp();
    EXPECT_EQ(types(), click);
}

TEST_F(EventTapX11, MissedReleaseOfAButtonThatIsDownAtTheStartIsMadeUpFor) {
    mouse_.press();
    install();
    EXPECT_EQ(eventsDuring([this] { mouse_.release(); }), 1); // and lost
    mouse_.moveTo({300, 300});
    adapters_.catchUp();
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::leftMouseDragged, EventType::leftMouseUp}));
}

TEST_F(EventTapX11, PressAfterAMissedReleaseBeginsAnew) {
    install();
    mouse_.press();
    adapters_.catchUp();
    EXPECT_EQ(eventsDuring([this] { mouse_.release(); }), 1); // and lost
    mouse_.press();
    adapters_.catchUp();
    mouse_.release();
    adapters_.catchUp();
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::leftMouseDown, EventType::leftMouseDown,
                                               EventType::leftMouseUp}));
}

TEST_F(EventTapX11, MotionThatIsDueWhenTheTapIsTakenOffTheLoopIsForgotten) {
    bool isOver = false;
    // Before the tap's own turn end.
    const auto earlier = adapters_.pump.subscribeTurnEnd([&] {
        if (isOver) {
            adapters_.taps.removeSource(*source_);
        }
    });
    install();
    mouse_.press();
    adapters_.catchUp();
    mouse_.moveTo({300, 300});
    adapters_.awaitServer();
    isOver = true;
    adapters_.pump.processPending();
    isOver = false;
    mouse_.release();
    adapters_.taps.addSource(*source_);
    adapters_.catchUp();
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::leftMouseDown}));
}

TEST_F(EventTapX11, ReleaseSeenWhileOffTheLoopIsForgotten) {
    install();
    mouse_.press();
    adapters_.catchUp();
    adapters_.taps.removeSource(*source_);
    mouse_.release();
    adapters_.catchUp();
    adapters_.taps.addSource(*source_);
    mouse_.moveTo({300, 300});
    adapters_.catchUp();
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::leftMouseDown}));
}

TEST_F(EventTapX11, SourceMayBeTakenOffTheLoopFromWithinTheCallback) {
    install();
    mouse_.press();
    adapters_.catchUp();
    recorder_.events.clear();
    recorder_.onEvent = [this] { adapters_.taps.removeSource(*source_); };
    // The release is already there when the motion before it is delivered.
    mouse_.moveTo({300, 300});
    mouse_.release();
    adapters_.catchUp();
    EXPECT_EQ(types(), (std::vector<EventType>{EventType::leftMouseDragged}));
    EXPECT_EQ(eventsDuring([this] {
                  mouse_.press();
                  mouse_.glideTo({400, 400}, 20);
                  mouse_.release();
              }),
              0);
}

TEST_F(EventTapX11, FastClicksAreAllSeen) {
    install();
    for (int count = 0; count < 20; ++count) {
        mouse_.press();
        mouse_.release();
    }
    adapters_.catchUp();
    std::vector<EventType> expected;
    for (int count = 0; count < 20; ++count) {
        expected.insert(expected.end(), click.begin(), click.end());
    }
    EXPECT_EQ(types(), expected);
}

} // namespace

} // namespace tarvex::contract
