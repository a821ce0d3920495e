#include "Platform/MacOS/CoreFoundation/RunLoopMainLoop.h"
#include "Tests/MacOS/Fakes/FakeMac.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace tarvex {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RunLoopTimers : public testing::Test {
protected:
    static fake::FakeRunLoop& loop() { return fake::mac().runLoop; }

    std::unique_ptr<RunLoopMainLoop> mainLoop_ = std::make_unique<RunLoopMainLoop>();
};

TEST_F(RunLoopTimers, DestroyedLoopDropsWhatWasPosted) {
    int calls = 0;
    const auto held = std::make_shared<int>(0);
    mainLoop_->post([&calls, held] { ++calls; });
    mainLoop_.reset();
    loop().settle();
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(held.use_count(), 1);
}

TEST_F(RunLoopTimers, LoopMayBeDestroyedByAPostedAction) {
    int calls = 0;
    mainLoop_->post([this] { mainLoop_.reset(); });
    mainLoop_->post([&] { ++calls; });
    loop().settle();
    EXPECT_EQ(calls, 0);
}

TEST_F(RunLoopTimers, ExceptionsStayInTheirCalls) {
    int calls = 0;
    mainLoop_->post([] { throw std::runtime_error("failed"); });
    mainLoop_->post([&] { ++calls; });
    const auto timer = mainLoop_->scheduleRepeating(1, [&] {
        ++calls;
        throw std::runtime_error("failed");
    });
    loop().advance(2.5);
    EXPECT_EQ(calls, 3);
}

TEST_F(RunLoopTimers, IntervalsReachTheSystem) {
    const auto repeating = mainLoop_->scheduleRepeating(0.25, [] {});
    const auto once = mainLoop_->scheduleOnce(0.5, [] {});
    EXPECT_THAT(loop().timerIntervals(), ElementsAre(0.25, 0));
}

TEST_F(RunLoopTimers, ShortestIntervalStillRepeats) {
    int calls = 0;
    const auto timer = mainLoop_->scheduleRepeating(0, [&] { ++calls; });
    loop().advance(0.001);
    EXPECT_GE(calls, 2);
    EXPECT_LE(calls, 20);
}

TEST_F(RunLoopTimers, RefusedTimerNeverFires) {
    loop().refusesTimers = true;
    int calls = 0;
    const auto timer = mainLoop_->scheduleRepeating(1, [&] { ++calls; });
    ASSERT_NE(timer, nullptr);
    loop().advance(3);
    EXPECT_EQ(calls, 0);
}

TEST_F(RunLoopTimers, TimerOutlivesTheLoop) {
    int calls = 0;
    const auto timer = mainLoop_->scheduleOnce(1, [&] { ++calls; });
    mainLoop_.reset();
    loop().advance(2);
    EXPECT_EQ(calls, 1);
}

TEST_F(RunLoopTimers, TimerThatHasFiredOrGoneHoldsNothing) {
    const auto held = std::make_shared<int>(0);
    auto repeating = mainLoop_->scheduleRepeating(1, [held] { EXPECT_NE(held, nullptr); });
    auto once = mainLoop_->scheduleOnce(1, [held] { EXPECT_NE(held, nullptr); });
    loop().advance(1.5);
    repeating.reset();
    once.reset();
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_THAT(loop().timerIntervals(), IsEmpty());
}

} // namespace
} // namespace tarvex
