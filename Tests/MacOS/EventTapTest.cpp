#include "App/Input/EventTapManager.h"
#include "Tests/MacOS/MacTap.h"
#include "Tests/Support/RecordingLog.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace tarvex {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ForeignTap final : public EventTap {};

class ForeignSource final : public RunLoopSource {};

class MacEventTap : public MacTapTest {};

TEST_F(MacEventTap, RequestReachesTheSystemAsItIs) {
    install();
    EXPECT_THAT(taps().requests, ElementsAre(fake::TapRequest{kCGSessionEventTap, kCGHeadInsertEventTap,
                                                              kCGEventTapOptionDefault, 0x1046}));
    EXPECT_EQ(loop().sourceCount(), 1U);
    EXPECT_EQ(taps().enabledTaps, 1);
}

TEST_F(MacEventTap, EventGoesOnAsItCameWhateverTheCallbackAnswers) {
    install();
    send(kCGEventLeftMouseDown, kCGEventFlagMaskCommand);
    EXPECT_THAT(receiver_.events, ElementsAre(TapEvent{EventType::leftMouseDown, event_flag::command}));
    EXPECT_EQ(taps().alteredEvents, 0);
}

TEST_F(MacEventTap, ExceptionStaysInTheCallbackAndIsLogged) {
    install();
    receiver_.onEvent = [] { throw std::runtime_error("failed"); };
    send(kCGEventLeftMouseDown);
    EXPECT_THAT(fake::mac().log.lines,
                ElementsAre(fake::UnifiedLine{"Tarvex", "MacEventTapPlatform", OS_LOG_TYPE_ERROR,
                                              "swallowed: failed"}));
    send(kCGEventLeftMouseUp);
    EXPECT_EQ(receiver_.events.size(), 2U);
    EXPECT_EQ(taps().alteredEvents, 0);
}

TEST_F(MacEventTap, NoticeOfADisabledTapNeedsNoEvent) {
    for (const bool withEvent : {false, true}) {
        install();
        receiver_.events.clear();
        taps().disable(kCGEventTapDisabledByTimeout, withEvent);
        loop().settle();
        taps().disable(kCGEventTapDisabledByUserInput, withEvent);
        loop().settle();
        EXPECT_THAT(receiver_.events, ElementsAre(TapEvent{EventType::tapDisabledByTimeout, 0},
                                                  TapEvent{EventType::tapDisabledByUserInput, 0}));
        source_.reset();
        tap_.reset();
    }
}

TEST_F(MacEventTap, TapDroppedBeforeItsSourceIsGoneWithIt) {
    install();
    taps().send(kCGEventLeftMouseDown);
    tap_.reset();
    EXPECT_EQ(taps().liveTaps(), 0U);
    EXPECT_EQ(loop().sourceCount(), 0U);
    loop().settle();
    send(kCGEventLeftMouseUp);
    EXPECT_THAT(receiver_.events, IsEmpty());
    platform_.removeSource(*source_);
}

TEST_F(MacEventTap, TapWithoutASourceIsGoneAsWell) {
    install();
    source_.reset();
    tap_.reset();
    EXPECT_EQ(taps().liveTaps(), 0U);
}

TEST_F(MacEventTap, SourceMayBeMadeAnew) {
    install();
    source_.reset();
    const auto other = platform_.createRunLoopSource(*tap_);
    EXPECT_NE(other, nullptr);
    tap_.reset();
    EXPECT_EQ(taps().liveTaps(), 0U);
}

TEST_F(MacEventTap, TapThatGoesInItsOwnCallIsGoneSoonAfter) {
    install();
    taps().send(kCGEventLeftMouseDown);
    taps().send(kCGEventLeftMouseUp);
    receiver_.onEvent = [this] {
        tap_.reset();
        EXPECT_EQ(taps().liveTaps(), 1U);
    };
    loop().settle();
    EXPECT_EQ(receiver_.events.size(), 1U);
    EXPECT_EQ(taps().liveTaps(), 0U);
    EXPECT_EQ(taps().alteredEvents, 0);
}

TEST_F(MacEventTap, SystemMayCallATapUntilItIsGone) {
    install();
    taps().send(kCGEventLeftMouseDown);
    taps().send(kCGEventLeftMouseUp);
    receiver_.onEvent = [this] {
        loop().enqueue([] { taps().handOut(); });
        source_.reset();
        tap_.reset();
    };
    loop().settle();
    EXPECT_EQ(receiver_.events.size(), 1U);
    EXPECT_EQ(taps().liveTaps(), 0U);
}

TEST_F(MacEventTap, TapIsGoneAlsoWhenTheMainLoopEndsBeforeItsTurn) {
    {
        RunLoopMainLoop mainLoop;
        MacEventTapPlatform platform(mainLoop);
        EventTapRequest request;
        request.eventMask = 0x1046;
        request.callback = &TapReceiver::callback;
        request.refcon = &receiver_;
        tap_ = platform.createTap(request);
        receiver_.onEvent = [this] { tap_.reset(); };
        taps().send(kCGEventLeftMouseDown);
        taps().handOut();
    }
    EXPECT_EQ(taps().liveTaps(), 1U);
    loop().settle();
    EXPECT_EQ(taps().liveTaps(), 0U);
}

TEST_F(MacEventTap, DestroyedSourceIsOffTheLoop) {
    install();
    source_.reset();
    EXPECT_EQ(loop().sourceCount(), 0U);
    send(kCGEventLeftMouseDown);
    EXPECT_THAT(receiver_.events, IsEmpty());
}

TEST_F(MacEventTap, DroppedTapIsGoneFromTheSystem) {
    install();
    EXPECT_EQ(taps().liveTaps(), 1U);
    platform_.removeSource(*source_);
    source_.reset();
    tap_.reset();
    EXPECT_EQ(taps().liveTaps(), 0U);
}

TEST_F(MacEventTap, MotionIsHandedOnAtOnceAndThenAtItsPace) {
    install();
    const double start = loop().now();
    for (int step = 0; step < 50; ++step) {
        send(kCGEventLeftMouseDragged);
        loop().advance(0.0002);
    }
    loop().advance(1);
    ASSERT_GE(receiver_.times.size(), 4U);
    EXPECT_LE(receiver_.times.size(), 6U);
    EXPECT_EQ(receiver_.times.front(), start);
    for (std::size_t index = 1; index < receiver_.times.size(); ++index) {
        EXPECT_GE(receiver_.times[index] - receiver_.times[index - 1], 0.0029);
    }
    EXPECT_GE(receiver_.times.back(), start + 0.0098);
}

TEST_F(MacEventTap, PointerAtRestWakesNobody) {
    install();
    send(kCGEventLeftMouseDragged);
    loop().advance(1);
    EXPECT_THAT(loop().timerIntervals(), IsEmpty());
    EXPECT_EQ(receiver_.events.size(), 1U);
}

TEST_F(MacEventTap, MotionHeldBackComesBeforeTheEventThatFollows) {
    install();
    send(kCGEventLeftMouseDragged);
    send(kCGEventLeftMouseDragged, kCGEventFlagMaskShift);
    send(kCGEventLeftMouseUp, kCGEventFlagMaskShift);
    loop().advance(1);
    EXPECT_THAT(receiver_.events, ElementsAre(TapEvent{EventType::leftMouseDragged, 0},
                                              TapEvent{EventType::leftMouseDragged, event_flag::shift},
                                              TapEvent{EventType::leftMouseUp, event_flag::shift}));
}

TEST_F(MacEventTap, MotionHeldBackGoesWithTheTap) {
    install();
    send(kCGEventLeftMouseDragged);
    send(kCGEventLeftMouseDragged);
    platform_.removeSource(*source_);
    loop().advance(1);
    EXPECT_EQ(receiver_.events.size(), 1U);
    EXPECT_THAT(loop().timerIntervals(), IsEmpty());
}

TEST_F(MacEventTap, TapMayGoWhileMotionIsHandedOnLate) {
    install();
    send(kCGEventLeftMouseDragged);
    send(kCGEventLeftMouseDragged);
    receiver_.onEvent = [this] {
        source_.reset();
        tap_.reset();
    };
    loop().advance(1);
    EXPECT_EQ(receiver_.events.size(), 2U);
    EXPECT_EQ(taps().liveTaps(), 0U);
    EXPECT_THAT(loop().timerIntervals(), IsEmpty());
}

TEST_F(MacEventTap, TapMayGoWhileMotionIsHandedOnBeforeAnEvent) {
    install();
    send(kCGEventLeftMouseDragged);
    send(kCGEventLeftMouseDragged);
    receiver_.onEvent = [this] {
        source_.reset();
        tap_.reset();
    };
    send(kCGEventLeftMouseUp);
    EXPECT_THAT(receiver_.events, ElementsAre(TapEvent{EventType::leftMouseDragged, 0},
                                              TapEvent{EventType::leftMouseDragged, 0}));
}

TEST_F(MacEventTap, ForeignTapsAndSourcesAreLeftAlone) {
    ForeignTap tap;
    ForeignSource source;
    EXPECT_EQ(platform_.createRunLoopSource(tap), nullptr);
    platform_.addSource(source);
    platform_.removeSource(source);
    platform_.enableTap(tap);
    EXPECT_EQ(loop().sourceCount(), 0U);
    EXPECT_EQ(taps().enabledTaps, 0);
}

class MacEventTapManager : public MacTapTest {
protected:
    MacEventTapManager() {
        manager_->setHandler(&TapReceiver::callback);
        manager_->setRefcon(&receiver_);
    }

    RecordingLog log_;
    std::shared_ptr<EventTapManager> manager_ = EventTapManager::make(platform_, mainLoop_, log_);
};

TEST_F(MacEventTapManager, PermissionThatComesLateIsNoticedWithinASecond) {
    taps().answersGranted = false;
    taps().givesTaps = false;
    manager_->attemptInstall();
    loop().advance(3.5);
    EXPECT_EQ(taps().accessRequests, 1);
    EXPECT_EQ(taps().requests.size(), 4U);
    EXPECT_THAT(loop().timerIntervals(), ElementsAre(1.0));
    taps().answersGranted = true;
    taps().givesTaps = true;
    loop().advance(1);
    EXPECT_TRUE(manager_->isInstalled());
    EXPECT_THAT(loop().timerIntervals(), IsEmpty());
    send(kCGEventLeftMouseDown);
    EXPECT_EQ(receiver_.events.size(), 1U);
}

TEST_F(MacEventTapManager, TapIsTriedAlsoWhenTheSystemSaysNo) {
    taps().answersGranted = false;
    manager_->attemptInstall();
    EXPECT_TRUE(manager_->isInstalled());
    EXPECT_EQ(taps().accessRequests, 1);
    send(kCGEventLeftMouseDown);
    EXPECT_EQ(receiver_.events.size(), 1U);
}

TEST_F(MacEventTapManager, SourceThatCannotBeMadeIsLogged) {
    taps().refusesSources = true;
    manager_->attemptInstall();
    EXPECT_FALSE(manager_->isInstalled());
    EXPECT_EQ(log_.systemLines().back(), "EventTapManager.start: failed to create run loop source");
}

TEST_F(MacEventTapManager, ManagerThatGoesTakesItsRetriesAlong) {
    taps().givesTaps = false;
    manager_->attemptInstall();
    manager_.reset();
    loop().advance(5);
    EXPECT_EQ(taps().requests.size(), 1U);
}

TEST_F(MacEventTapManager, TenTimeoutsLeaveOneTap) {
    manager_->attemptInstall();
    receiver_.onEvent = [this] {
        manager_->stopInstalledTap();
        manager_->attemptInstall();
    };
    for (int timeouts = 0; timeouts < 10; ++timeouts) {
        taps().disable(kCGEventTapDisabledByTimeout, true);
        loop().settle();
    }
    EXPECT_EQ(taps().requests.size(), 11U);
    EXPECT_EQ(taps().liveTaps(), 1U);
}

} // namespace
} // namespace tarvex
