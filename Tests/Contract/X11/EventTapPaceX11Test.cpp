#include "Tests/Contract/X11/EventTapFixture.h"
#include "Tests/Support/Simulated/SimulatedMainLoop.h"

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

} // namespace

} // namespace tarvex::contract
