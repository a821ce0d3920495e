#include "App/Input/EventTapManager.h"

#include "Tests/Support/Simulated/SimulatedDesktop.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace tarvex {
namespace {

using Lines = std::vector<std::string>;

constexpr const char* creating = "log: EventTapManager.start: creating event tap";
constexpr const char* waiting =
    "log: EventTapManager.start: waiting for permissions / event tap availability";
constexpr const char* installed = "log: EventTapManager.start: event tap installed on current run loop";
constexpr const char* noSource = "log: EventTapManager.start: failed to create run loop source";
constexpr const char* denied = "log: EventTapManager.start: requested Input Monitoring access. granted=false";

const TapEvent* countEvents(EventTap* /*proxy*/, EventType /*type*/, const TapEvent* event, void* refcon) {
    ++*static_cast<int*>(refcon);
    return event;
}

class EventTapManagerTest : public ::testing::Test {
protected:
    EventTapManagerTest() {
        manager_->setRefcon(&events_);
        manager_->setHandler(&countEvents);
    }

    ~EventTapManagerTest() override {
        manager_->stopInstalledTap();
        manager_->stopRetry();
        EXPECT_EQ(desktop_.input().misuses(), Lines());
    }

    Lines happened() { return desktop_.journal().take(); }

    SimulatedDesktop desktop_;
    std::shared_ptr<EventTapManager> manager_ =
        EventTapManager::make(desktop_.input(), desktop_.mainLoop(), desktop_.log());
    int events_ = 0;
};

TEST_F(EventTapManagerTest, NewManagerIsIdle) {
    EXPECT_FALSE(manager_->isInstalled());
    EXPECT_FALSE(manager_->isWaiting());
    EXPECT_EQ(manager_->retryIntervalSeconds(), 1.0);
    EXPECT_TRUE(happened().empty());
}

TEST_F(EventTapManagerTest, WithoutAHandlerNothingHappensAtAll) {
    manager_->setHandler(nullptr);
    desktop_.input().setListeningAllowed(false);
    manager_->attemptInstall();
    EXPECT_TRUE(happened().empty());
    EXPECT_FALSE(manager_->isWaiting());
    desktop_.wait(10);
    EXPECT_TRUE(happened().empty());
}

TEST_F(EventTapManagerTest, PermittedTapIsInstalledAtOnce) {
    manager_->attemptInstall();
    EXPECT_EQ(happened(), (Lines{"preflight listening", creating, "create tap", "create source", "add source",
                                 installed, "enable tap"}));
    EXPECT_TRUE(manager_->isInstalled());
    EXPECT_FALSE(manager_->isWaiting());
    EXPECT_EQ(desktop_.input().listeningTaps(), 1);
    desktop_.pressButton();
    EXPECT_EQ(events_, 1);
}

TEST_F(EventTapManagerTest, TapIsAnActiveSessionTapForTheFourEventTypes) {
    manager_->attemptInstall();
    const EventTapRequest& request = desktop_.input().requests().at(0);
    EXPECT_EQ(request.location, 1U);
    EXPECT_EQ(request.placement, 0U);
    EXPECT_EQ(request.options, 0U);
    EXPECT_EQ(request.eventMask, 0x1046U);
    EXPECT_EQ(request.callback, &countEvents);
    EXPECT_EQ(request.refcon, &events_);
}

TEST_F(EventTapManagerTest, RefusedTapWaitsWithOneTimer) {
    desktop_.input().setRefusesTaps(true);
    manager_->attemptInstall();
    EXPECT_EQ(happened(), (Lines{"preflight listening", creating, "create tap", waiting}));
    EXPECT_FALSE(manager_->isInstalled());
    EXPECT_TRUE(manager_->isWaiting());
    EXPECT_EQ(desktop_.mainLoop().timerIntervals(), (std::vector<double>{1.0}));
    EXPECT_EQ(manager_->retryIntervalSeconds(), 5.0);
}

TEST_F(EventTapManagerTest, WaitingTriesOncePerSecondAndLogsOneLineEach) {
    desktop_.input().setRefusesTaps(true);
    manager_->attemptInstall();
    happened();
    desktop_.wait(0.75);
    EXPECT_TRUE(happened().empty());
    desktop_.wait(0.25);
    EXPECT_EQ(happened(), (Lines{"preflight listening", creating, "create tap"}));
    desktop_.wait(9);
    EXPECT_EQ(desktop_.journal().about({"create tap"}).size(), 9U);
    EXPECT_EQ(desktop_.journal().about({waiting}).size(), 0U);
    EXPECT_EQ(desktop_.mainLoop().timerIntervals(), (std::vector<double>{1.0}));
}

TEST_F(EventTapManagerTest, PermissionGrantedWhileWaitingInstallsWithinASecond) {
    desktop_.input().setListeningAllowed(false);
    manager_->attemptInstall();
    desktop_.wait(3);
    desktop_.input().setListeningAllowed(true);
    happened();
    desktop_.wait(1);
    EXPECT_EQ(happened(), (Lines{"preflight listening", creating, "create tap", "create source", "add source",
                                 installed, "enable tap"}));
    EXPECT_TRUE(manager_->isInstalled());
    EXPECT_FALSE(manager_->isWaiting());
    EXPECT_EQ(manager_->retryIntervalSeconds(), 1.0);
    EXPECT_TRUE(desktop_.mainLoop().timerIntervals().empty());
    desktop_.wait(10);
    EXPECT_TRUE(happened().empty());
    desktop_.pressButton();
    EXPECT_EQ(events_, 1);
}

TEST_F(EventTapManagerTest, DeniedInputMonitoringIsRequestedOnce) {
    desktop_.input().setListeningAllowed(false);
    manager_->attemptInstall();
    EXPECT_EQ(happened(),
              (Lines{"preflight listening", "request listening", denied, creating, "create tap", waiting}));
    desktop_.wait(3);
    const Lines attempt = {"preflight listening", creating, "create tap"};
    Lines expected;
    for (int second = 0; second < 3; ++second) {
        expected.insert(expected.end(), attempt.begin(), attempt.end());
    }
    EXPECT_EQ(happened(), expected);
}

TEST_F(EventTapManagerTest, RequestStaysMadeAfterAReinstall) {
    desktop_.input().setListeningAllowed(false);
    manager_->attemptInstall();
    manager_->stopInstalledTap();
    manager_->stopRetry();
    happened();
    manager_->attemptInstall();
    EXPECT_EQ(happened(), (Lines{"preflight listening", creating, "create tap", waiting}));
}

TEST_F(EventTapManagerTest, GrantedRequestIsLoggedAsGranted) {
    // Between the look and the request the user may have said yes.
    class LateGrant final : public EventTapPlatform {
    public:
        explicit LateGrant(SimulatedInput& input) : input_(&input) {}

        [[nodiscard]] bool preflightListenEventAccess() override { return false; }

        [[nodiscard]] bool requestListenEventAccess() override { return true; }

        [[nodiscard]] std::unique_ptr<EventTap> createTap(const EventTapRequest& request) override {
            return input_->createTap(request);
        }

        [[nodiscard]] std::unique_ptr<RunLoopSource> createRunLoopSource(EventTap& tap) override {
            return input_->createRunLoopSource(tap);
        }

        void addSource(RunLoopSource& source) override { input_->addSource(source); }

        void removeSource(RunLoopSource& source) override { input_->removeSource(source); }

        void enableTap(EventTap& tap) override { input_->enableTap(tap); }

    private:
        SimulatedInput* input_;
    };

    LateGrant platform(desktop_.input());
    const auto manager = EventTapManager::make(platform, desktop_.mainLoop(), desktop_.log());
    manager->setHandler(&countEvents);
    manager->setRefcon(&events_);
    manager->attemptInstall();
    EXPECT_EQ(desktop_.log().lines().front(),
              "EventTapManager.start: requested Input Monitoring access. granted=true");
    EXPECT_TRUE(manager->isInstalled());
    manager->stopInstalledTap();
}

TEST_F(EventTapManagerTest, AttemptWhileWaitingKeepsTheRunningTimer) {
    desktop_.input().setRefusesTaps(true);
    manager_->attemptInstall();
    desktop_.wait(0.5);
    happened();
    manager_->attemptInstall();
    EXPECT_EQ(happened(), (Lines{"preflight listening", creating, "create tap"}));
    desktop_.wait(0.5);
    EXPECT_EQ(happened(), (Lines{"preflight listening", creating, "create tap"}));
    EXPECT_EQ(desktop_.mainLoop().timerIntervals(), (std::vector<double>{1.0}));
}

TEST_F(EventTapManagerTest, AttemptThatSucceedsWhileWaitingStopsTheTimer) {
    desktop_.input().setRefusesTaps(true);
    manager_->attemptInstall();
    desktop_.input().setRefusesTaps(false);
    manager_->attemptInstall();
    EXPECT_TRUE(manager_->isInstalled());
    EXPECT_TRUE(desktop_.mainLoop().timerIntervals().empty());
    EXPECT_EQ(manager_->retryIntervalSeconds(), 1.0);
}

TEST_F(EventTapManagerTest, StoppedRetryEndsTheWaitingAndResetsTheInterval) {
    desktop_.input().setRefusesTaps(true);
    manager_->attemptInstall();
    manager_->stopRetry();
    EXPECT_FALSE(manager_->isWaiting());
    EXPECT_EQ(manager_->retryIntervalSeconds(), 1.0);
    happened();
    desktop_.wait(10);
    EXPECT_TRUE(happened().empty());
    manager_->attemptInstall();
    EXPECT_EQ(desktop_.mainLoop().timerIntervals(), (std::vector<double>{1.0}));
}

TEST_F(EventTapManagerTest, HandlerTakenAwayWhileWaitingSilencesTheTimer) {
    desktop_.input().setRefusesTaps(true);
    manager_->attemptInstall();
    manager_->setHandler(nullptr);
    happened();
    desktop_.wait(3);
    EXPECT_TRUE(happened().empty());
}

TEST_F(EventTapManagerTest, RefusedSourceIsLoggedAndNotRetried) {
    desktop_.input().setRefusesSources(true);
    manager_->attemptInstall();
    EXPECT_EQ(happened(), (Lines{"preflight listening", creating, "create tap", "create source", noSource}));
    EXPECT_FALSE(manager_->isInstalled());
    EXPECT_FALSE(manager_->isWaiting());
    EXPECT_EQ(desktop_.input().liveTaps(), 1);
    desktop_.wait(10);
    EXPECT_TRUE(happened().empty());
    manager_->stopInstalledTap();
    EXPECT_EQ(desktop_.input().liveTaps(), 0);
    EXPECT_TRUE(happened().empty());
}

TEST_F(EventTapManagerTest, StoppedTapIsTakenOffTheLoopAndDropped) {
    manager_->attemptInstall();
    happened();
    manager_->stopInstalledTap();
    EXPECT_EQ(happened(), (Lines{"remove source"}));
    EXPECT_FALSE(manager_->isInstalled());
    EXPECT_EQ(desktop_.input().liveTaps(), 0);
    desktop_.pressButton();
    EXPECT_EQ(events_, 0);
}

TEST_F(EventTapManagerTest, StoppingWhenIdleIsHarmless) {
    manager_->stopInstalledTap();
    manager_->stopRetry();
    manager_->stopInstalledTap();
    EXPECT_TRUE(happened().empty());
    EXPECT_FALSE(manager_->isInstalled());
}

TEST_F(EventTapManagerTest, ReinstallMakesAFreshTapAndDropsTheOldOne) {
    manager_->attemptInstall();
    happened();
    manager_->stopInstalledTap();
    manager_->stopRetry();
    manager_->attemptInstall();
    EXPECT_EQ(happened(), (Lines{"remove source", "preflight listening", creating, "create tap",
                                 "create source", "add source", installed, "enable tap"}));
    EXPECT_EQ(desktop_.input().liveTaps(), 1);
    desktop_.pressButton();
    EXPECT_EQ(events_, 1);
}

TEST_F(EventTapManagerTest, TimerDoesNotKeepTheManagerAlive) {
    desktop_.input().setRefusesTaps(true);
    auto manager = EventTapManager::make(desktop_.input(), desktop_.mainLoop(), desktop_.log());
    manager->setHandler(&countEvents);
    manager->attemptInstall();
    const std::weak_ptr<EventTapManager> watched = manager;
    manager.reset();
    EXPECT_TRUE(watched.expired());
    EXPECT_TRUE(desktop_.mainLoop().timerIntervals().empty());
    happened();
    desktop_.wait(3);
    EXPECT_TRUE(happened().empty());
}

TEST_F(EventTapManagerTest, RefconAndHandlerOfTheMomentAreUsedByEachAttempt) {
    desktop_.input().setRefusesTaps(true);
    manager_->attemptInstall();
    int others = 0;
    manager_->setRefcon(&others);
    desktop_.input().setRefusesTaps(false);
    desktop_.wait(1);
    desktop_.pressButton();
    EXPECT_EQ(others, 1);
    EXPECT_EQ(events_, 0);
}

} // namespace
} // namespace tarvex
