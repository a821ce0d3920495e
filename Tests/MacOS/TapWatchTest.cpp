#include "Tests/MacOS/MacSnapping.h"
#include "Tests/MacOS/MacTap.h"
#include "Tests/MacOS/MacWindows.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace tarvex {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr TapEvent notice{EventType::tapDisabledByTimeout, 0};

class MacTapWatch : public MacTapTest {
protected:
    /// The system settings say that somebody's permission has changed.
    static void tellOfPermissions() {
        fake::mac().notifications.tellEverybody("com.apple.accessibility.api");
        loop().settle();
    }

    void replaceTap() {
        source_.reset();
        tap_.reset();
        install();
    }
};

TEST_F(MacTapWatch, ChangedPermissionsAreANoticeOnceTheyHaveSettled) {
    install();
    tellOfPermissions();
    loop().advance(0.9);
    EXPECT_THAT(receiver_.events, IsEmpty());
    loop().advance(0.2);
    EXPECT_THAT(receiver_.events, ElementsAre(notice));
    EXPECT_THAT(loop().timerIntervals(), IsEmpty());
    loop().advance(10);
    EXPECT_EQ(receiver_.events.size(), 1U);
}

TEST_F(MacTapWatch, ChangesThatFollowEachOtherAreOneNotice) {
    install();
    for (int change = 0; change < 5; ++change) {
        tellOfPermissions();
        EXPECT_EQ(loop().timerIntervals().size(), 1U);
        loop().advance(0.5);
    }
    EXPECT_THAT(receiver_.events, IsEmpty());
    loop().advance(1);
    EXPECT_THAT(receiver_.events, ElementsAre(notice));
}

TEST_F(MacTapWatch, OtherNotificationsAreNone) {
    install();
    fake::mac().notifications.tellEverybody("com.apple.accessibility");
    loop().advance(2);
    EXPECT_THAT(receiver_.events, IsEmpty());
}

TEST_F(MacTapWatch, WithoutATapNobodyListens) {
    EXPECT_EQ(fake::mac().notifications.observerCount(), 0U);
    taps().givesTaps = false;
    EventTapRequest request;
    request.callback = &TapReceiver::callback;
    EXPECT_EQ(platform_.createTap(request), nullptr);
    EXPECT_EQ(fake::mac().notifications.observerCount(), 0U);
    taps().givesTaps = true;
    install();
    tellOfPermissions();
    tap_.reset();
    EXPECT_EQ(fake::mac().notifications.observerCount(), 0U);
    EXPECT_THAT(loop().timerIntervals(), IsEmpty());
    loop().advance(2);
    EXPECT_THAT(receiver_.events, IsEmpty());
}

TEST_F(MacTapWatch, TapMayBeReplacedUponTheNotice) {
    install();
    receiver_.onEvent = [this] { replaceTap(); };
    tellOfPermissions();
    loop().advance(2);
    EXPECT_THAT(receiver_.events, ElementsAre(notice));
    EXPECT_EQ(taps().liveTaps(), 1U);
    taps().invalidateAll();
    loop().settle();
    EXPECT_THAT(receiver_.events, ElementsAre(notice, notice));
    EXPECT_EQ(taps().liveTaps(), 1U);
}

TEST_F(MacTapWatch, HealthyTapIsLeftAloneWhileTheButtonIsDown) {
    install();
    send(kCGEventLeftMouseDown);
    tellOfPermissions();
    loop().advance(3.5);
    EXPECT_EQ(receiver_.events.size(), 1U);
    ASSERT_EQ(taps().requests.size(), 4U);
    fake::TapRequest trial = taps().requests.front();
    trial.mask = CGEventMask{1} << kCGEventFlagsChanged;
    EXPECT_EQ(taps().requests.back(), trial) << "it could swallow the release";
    EXPECT_EQ(taps().liveTaps(), 1U);
    EXPECT_EQ(loop().timerIntervals().size(), 1U);
    send(kCGEventLeftMouseUp);
    loop().advance(1);
    ASSERT_EQ(receiver_.events.size(), 3U);
    EXPECT_EQ(receiver_.events.back(), notice);
    EXPECT_THAT(loop().timerIntervals(), IsEmpty());
}

TEST_F(MacTapWatch, LostTapIsToldOfItsEndEvenWhileTheButtonIsDown) {
    install();
    send(kCGEventLeftMouseDown);
    taps().revoke();
    tellOfPermissions();
    loop().advance(1.1);
    ASSERT_EQ(receiver_.events.size(), 2U);
    EXPECT_EQ(receiver_.events.back(), notice);
}

TEST_F(MacTapWatch, PortThatTheSystemEndsIsANotice) {
    install();
    taps().invalidateAll();
    EXPECT_THAT(receiver_.events, IsEmpty());
    loop().settle();
    EXPECT_THAT(receiver_.events, ElementsAre(notice));
    EXPECT_EQ(loop().sourceCount(), 0U);
}

TEST_F(MacTapWatch, PortThatEndsTogetherWithItsTapIsNone) {
    install();
    taps().invalidateAll();
    tap_.reset();
    loop().settle();
    EXPECT_THAT(receiver_.events, IsEmpty());
}

TEST_F(MacTapWatch, EndThatTheOwnerWantedIsNoNotice) {
    install();
    source_.reset();
    tap_.reset();
    EXPECT_EQ(loop().queuedCalls(), 0U);
    loop().settle();
    EXPECT_THAT(receiver_.events, IsEmpty());
}

TEST_F(MacTapWatch, OtherTapHearsNothingOfAPort) {
    install();
    TapReceiver other;
    EventTapRequest request;
    request.callback = &TapReceiver::callback;
    request.refcon = &other;
    const auto otherTap = platform_.createTap(request);
    ASSERT_NE(otherTap, nullptr);
    taps().invalidateFirst();
    loop().settle();
    EXPECT_THAT(receiver_.events, ElementsAre(notice));
    EXPECT_THAT(other.events, IsEmpty());
}

void doNothing(CFMachPortRef /*port*/, void* /*info*/) {}

TEST_F(MacTapWatch, CallbackThatIsThereAlreadyIsKept) {
    taps().ownInvalidationCallback = &doNothing;
    install();
    EXPECT_EQ(taps().invalidationCallbacks(), std::vector{&doNothing});
    taps().invalidateAll();
    loop().settle();
    EXPECT_THAT(receiver_.events, IsEmpty());
}

TEST_F(MacTapWatch, ExceptionUponTheNoticeIsLogged) {
    install();
    receiver_.onEvent = [] { throw std::runtime_error("failed"); };
    taps().invalidateAll();
    loop().settle();
    EXPECT_THAT(fake::mac().log.lines,
                ElementsAre(fake::UnifiedLine{"Tarvex", "NotificationObserver", OS_LOG_TYPE_ERROR,
                                              "swallowed: failed"}));
}

/// The whole program's way with it.
class MacRevocation : public testing::Test {
protected:
    MacRevocation() {
        fake::mac().displays.all = {{.number = 1, .bounds = nativeRect({0, 0, 1280, 800})}};
        window_ = openMacWindow(1, {300, 200, 400, 300});
        snapping_.controller().start();
    }

    static fake::FakeEventTaps& taps() { return fake::mac().eventTaps; }

    static void changePermissions() {
        fake::mac().notifications.tellEverybody("com.apple.accessibility.api");
        fake::mac().runLoop.advance(1.5);
    }

    void snapToTheLeft() {
        snapping_.press({400, 595});
        snapping_.hold(kCGEventFlagMaskCommand);
        snapping_.dragTo({200, 400});
        snapping_.release();
        snapping_.hold(0);
    }

    [[nodiscard]] Rect frame() const {
        const CGRect frame = fake::mac().accessibility.frameOf(window_.window);
        return {frame.origin.x, frame.origin.y, frame.size.width, frame.size.height};
    }

    MacWindow window_;
    MacSnapping snapping_;
};

TEST_F(MacRevocation, InputGoesOnAndComesBackWithThePermission) {
    taps().revoke();
    changePermissions();
    EXPECT_EQ(taps().liveTaps(), 0U);
    EXPECT_TRUE(snapping_.taps().isWaiting());
    snapToTheLeft();
    EXPECT_EQ(taps().heldUpEvents, 0);

    taps().answersGranted = true;
    taps().givesTaps = true;
    fake::mac().runLoop.advance(1);
    snapToTheLeft();
    EXPECT_EQ(frame(), (Rect{8, 8, 628, 784}));
    EXPECT_EQ(taps().liveTaps(), 1U);
}

TEST_F(MacRevocation, PermissionThatGoesDuringADragHoldsUpNothingAfterIt) {
    snapping_.press({400, 595});
    snapping_.hold(kCGEventFlagMaskCommand);
    taps().revoke();
    changePermissions();
    snapping_.release();
    EXPECT_EQ(taps().liveTaps(), 0U);
    EXPECT_EQ(taps().heldUpEvents, 0);
}

TEST_F(MacRevocation, SomebodyElsesPermissionDisturbsNoDrag) {
    snapping_.press({400, 595});
    snapping_.hold(kCGEventFlagMaskCommand);
    changePermissions();
    EXPECT_TRUE(snapping_.controller().isOverlayActive());
    snapping_.dragTo({200, 400});
    snapping_.release();
    EXPECT_EQ(frame(), (Rect{8, 8, 628, 784}));
    fake::mac().runLoop.advance(5);
    EXPECT_TRUE(snapping_.taps().isInstalled());
    EXPECT_EQ(taps().liveTaps(), 1U);
    EXPECT_THAT(fake::mac().runLoop.timerIntervals(), IsEmpty());
}

TEST_F(MacRevocation, TapWhosePortEndedIsReplaced) {
    taps().invalidateAll();
    fake::mac().runLoop.settle();
    EXPECT_EQ(taps().liveTaps(), 1U);
    snapToTheLeft();
    EXPECT_EQ(frame(), (Rect{8, 8, 628, 784}));
}

} // namespace
} // namespace tarvex
