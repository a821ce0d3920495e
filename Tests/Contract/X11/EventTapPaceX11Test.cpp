#include "Tests/Contract/X11/EventTapFixture.h"
#include "Tests/Support/Simulated/SimulatedMainLoop.h"
#include "Tests/Support/X11/RequestGate.h"

#include <xcb/xinput.h>

#include <chrono>
#include <cstddef>
#include <poll.h>
#include <vector>

namespace tarvex::contract {

namespace {

/// A tap whose pace is so slow that only the test's own clock lets a second motion through.
class EventTapPaceX11 : public EventTapTest {
protected:
    void SetUp() override {
        install(paced_);
        mouse_.press();
        adapters_.catchUp();
        recorder_.events.clear();
        recorder_.places.clear();
    }

    void TearDown() override {
        source_.reset();
        tap_.reset();
    }

    void moveTo(test::PixelPoint point) {
        mouse_.moveTo(point);
        adapters_.catchUp();
    }

    [[nodiscard]] std::size_t timers() const { return loop_.timerIntervals().size(); }

    static Point placeOf(test::PixelPoint point) { return {point.x + 0.5, 1024 - (point.y + 0.5)}; }

    static constexpr double interval = 3600;
    static constexpr test::PixelPoint first{300, 300};
    static constexpr test::PixelPoint second{400, 350};
    static constexpr test::PixelPoint third{500, 450};

    SimulatedMainLoop loop_;
    XEventTapPlatform paced_{*adapters_.connection, adapters_.pump, adapters_.pointer, SessionKind{},
                             MotionPace{&loop_, std::chrono::hours(1)}};
};

using Types = std::vector<EventType>;
using Places = std::vector<Point>;

TEST_F(EventTapPaceX11, FirstMotionIsHandedOnAtOnceAndTheNextWhenItIsTime) {
    moveTo(first);
    EXPECT_EQ(types(), Types{EventType::leftMouseDragged});
    moveTo(second);
    moveTo(third);
    EXPECT_EQ(types(), Types{EventType::leftMouseDragged});
    EXPECT_EQ(loop_.timerIntervals(), std::vector<double>{interval});

    loop_.advance(interval);
    EXPECT_EQ(recorder_.places, (Places{placeOf(first), placeOf(third)}));
    // The pace counts from there.
    moveTo(second);
    EXPECT_EQ(recorder_.places.size(), 2U);
    EXPECT_EQ(timers(), 1U);
}

TEST_F(EventTapPaceX11, TimerDoesNotStayWhenThereIsNoMoreMotion) {
    moveTo(first);
    moveTo(second);
    loop_.advance(interval);
    ASSERT_EQ(recorder_.events.size(), 2U);
    loop_.advance(interval);
    EXPECT_EQ(recorder_.events.size(), 2U);
    EXPECT_EQ(timers(), 0U);
    // After a pause the next one is handed on at once again.
    moveTo(third);
    EXPECT_EQ(recorder_.places.size(), 3U);
}

TEST_F(EventTapPaceX11, MotionWakesNobodyDuringThePause) {
    moveTo(first);
    test::XClient witness(server_.displayName());
    const auto wakes = [&] {
        pollfd waited{adapters_.pump.fileDescriptor(), POLLIN, 0};
        return poll(&waited, 1, 0) > 0;
    };
    adapters_.catchUp();
    ASSERT_FALSE(wakes());
    mouse_.glideTo(second, 50);
    witness.sync();
    EXPECT_FALSE(wakes());
    loop_.advance(interval);
    EXPECT_EQ(recorder_.places, (Places{placeOf(first), placeOf(second)}));
}

TEST_F(EventTapPaceX11, ReleaseHandsOnWhatIsDueAtTheNewestPlace) {
    moveTo(first);
    moveTo(second);
    mouse_.moveTo(third);
    mouse_.release();
    adapters_.catchUp();
    EXPECT_EQ(types(),
              (Types{EventType::leftMouseDragged, EventType::leftMouseDragged, EventType::leftMouseUp}));
    EXPECT_EQ(recorder_.places, (Places{placeOf(first), placeOf(third), placeOf(third)}));
    EXPECT_EQ(timers(), 0U);
    loop_.advance(interval);
    EXPECT_EQ(recorder_.events.size(), 3U);
}

TEST_F(EventTapPaceX11, KeysThatWereLetGoBeforeTheButtonAreToldOfFirst) {
    keyboard_.press(test::key::super);
    moveTo(first);
    ASSERT_NE(timers(), 0U);
    recorder_.events.clear();
    keyboard_.release(test::key::super);
    mouse_.moveTo(second);
    mouse_.release();
    other_.sync();
    // The program looks at the pointer before it has read any of that.
    loop_.advance(interval);
    const Types expected{EventType::leftMouseDragged, EventType::flagsChanged, EventType::leftMouseUp};
    ASSERT_EQ(types(), expected);
    EXPECT_EQ(recorder_.events[1].flags, 0U);
    EXPECT_EQ(recorder_.events[2].flags, 0U);
}

TEST_F(EventTapPaceX11, DragAfterAReleaseInThePauseBeginsAtOnce) {
    moveTo(first);
    mouse_.release();
    mouse_.press();
    adapters_.catchUp();
    recorder_.events.clear();
    moveTo(second);
    EXPECT_EQ(types(), Types{EventType::leftMouseDragged});
    EXPECT_EQ(timers(), 1U);
}

TEST_F(EventTapPaceX11, ReleaseAtTheEndOfThePauseEndsTheListening) {
    moveTo(first);
    mouse_.release();
    adapters_.awaitServer();
    // The release is read, but not handled, when the timer fires.
    loop_.advance(interval);
    EXPECT_EQ(types(), (Types{EventType::leftMouseDragged, EventType::leftMouseUp}));
    EXPECT_EQ(timers(), 0U);
    EXPECT_EQ(eventsDuring([this] { mouse_.glideTo(third, 20); }), 0);
}

TEST_F(EventTapPaceX11, TapThatBeginsAnewInItsCallbackWithTheButtonUpHasNoPause) {
    recorder_.onEvent = [this] {
        paced_.removeSource(*source_);
        mouse_.release();
        paced_.addSource(*source_);
    };
    moveTo(first);
    EXPECT_EQ(types(), Types{EventType::leftMouseDragged});
    EXPECT_EQ(timers(), 0U);
    EXPECT_EQ(eventsDuring([this] { mouse_.glideTo(third, 20); }), 0);
}

TEST_F(EventTapPaceX11, ModifierHandsOnWhatIsDueFirst) {
    moveTo(first);
    moveTo(second);
    keyboard_.press(test::key::super);
    adapters_.catchUp();
    EXPECT_EQ(recorder_.events, (std::vector<TapEvent>{{EventType::leftMouseDragged, 0},
                                                       {EventType::leftMouseDragged, 0},
                                                       {EventType::flagsChanged, event_flag::command}}));
    EXPECT_EQ(recorder_.places[1], placeOf(second));
}

TEST_F(EventTapPaceX11, TapThatIsTakenOffTheLoopLeavesNoTimer) {
    moveTo(first);
    moveTo(second);
    ASSERT_EQ(timers(), 1U);
    paced_.removeSource(*source_);
    EXPECT_EQ(timers(), 0U);
    loop_.advance(interval);
    EXPECT_EQ(recorder_.events.size(), 1U);
    // Back on the loop it begins anew.
    paced_.addSource(*source_);
    moveTo(third);
    EXPECT_EQ(recorder_.places, (Places{placeOf(first), placeOf(third)}));
}

TEST_F(EventTapPaceX11, TapThatIsDestroyedLeavesNoTimer) {
    moveTo(first);
    moveTo(second);
    ASSERT_EQ(timers(), 1U);
    source_.reset();
    tap_.reset();
    EXPECT_EQ(timers(), 0U);
    loop_.advance(interval);
    adapters_.catchUp();
    EXPECT_EQ(recorder_.events.size(), 1U);
}

TEST_F(EventTapPaceX11, TapMayBeDestroyedFromWithinTheCallbackOfTheTimer) {
    moveTo(first);
    moveTo(second);
    recorder_.onEvent = [this] {
        source_.reset();
        tap_.reset();
    };
    loop_.advance(interval);
    EXPECT_EQ(recorder_.places, (Places{placeOf(first), placeOf(second)}));
    EXPECT_EQ(timers(), 0U);
    mouse_.release();
    adapters_.catchUp();
    EXPECT_EQ(recorder_.events.size(), 2U);
}

/// The same tap with a gate before the server.
class EventTapGateX11 : public EventTapTest {
protected:
    void SetUp() override {
        recorder_.pointer = &gated_.pointer;
        install(paced_);
        gated_.catchUp();
    }

    void TearDown() override {
        gate_.onRequest(0, nullptr);
        source_.reset();
        tap_.reset();
    }

    test::RequestGate gate_{server_};
    XInputAdapters gated_{gate_.displayName()};
    SimulatedMainLoop loop_;
    XEventTapPlatform paced_{*gated_.connection, gated_.pump, gated_.pointer, SessionKind{},
                             MotionPace{&loop_, std::chrono::hours(1)}};
};

TEST_F(EventTapGateX11, MotionJustBeforeItIsListenedToAgainIsHandedOn) {
    mouse_.press();
    gated_.catchUp();
    mouse_.moveTo({300, 300});
    gated_.catchUp();
    ASSERT_EQ(types(), (Types{EventType::leftMouseDown, EventType::leftMouseDragged}));
    // The pointer stands still when it is asked for, and moves before the server is told to report motion.
    gate_.onRequest(gated_.connection->extension(xcb_input_id)->major_opcode, [this] {
        mouse_.moveTo({400, 350});
    });
    loop_.advance(3600);
    EXPECT_EQ(recorder_.events.size(), 3U);
    EXPECT_EQ(recorder_.places.back(), (Point{400.5, 1024 - 350.5}));
}

} // namespace

} // namespace tarvex::contract
