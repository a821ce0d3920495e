#pragma once

#include "App/Toolkit/MainLoop.h"
#include "Tests/Contract/ContractWorld.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace tarvex::contract {

/// A main loop and the clock that its timers go by.
class MainLoopWorld : public ContractWorld {
public:
    virtual MainLoop& mainLoop() = 0;

    /// Seconds since some fixed moment.
    virtual double now() = 0;
};

class MainLoopContract : public ::testing::TestWithParam<WorldFactory<MainLoopWorld>> {
protected:
    void SetUp() override { world_ = GetParam().make(); }

    MainLoop& loop() { return world_->mainLoop(); }

    std::unique_ptr<MainLoopWorld> world_;
};

TEST_P(MainLoopContract, PostedActionRunsLaterAndOnce) {
    int calls = 0;
    loop().post([&] { ++calls; });
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(world_->waitUntil([&] { return calls > 0; }));
    world_->settle();
    EXPECT_EQ(calls, 1);
}

TEST_P(MainLoopContract, PostedActionsRunInTheirOrder) {
    std::vector<int> order;
    for (int index = 0; index < 5; ++index) {
        loop().post([&order, index] { order.push_back(index); });
    }
    EXPECT_TRUE(world_->waitUntil([&] { return order.size() == 5; }));
    EXPECT_EQ(order, (std::vector<int>{0, 1, 2, 3, 4}));
}

TEST_P(MainLoopContract, ActionPostedByAnActionRunsAfterIt) {
    std::vector<int> order;
    loop().post([&] {
        loop().post([&] { order.push_back(2); });
        order.push_back(1);
    });
    EXPECT_TRUE(world_->waitUntil([&] { return order.size() == 2; }));
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
}

TEST_P(MainLoopContract, RepeatingTimerFirstFiresAfterOneInterval) {
    const double start = world_->now();
    double fired = 0;
    const auto timer = loop().scheduleRepeating(0.05, [&] { fired = world_->now(); });
    EXPECT_EQ(fired, 0);
    EXPECT_TRUE(world_->waitUntil([&] { return fired > 0; }));
    EXPECT_GE(fired - start, 0.045);
}

TEST_P(MainLoopContract, RepeatingTimerKeepsFiring) {
    const double start = world_->now();
    int calls = 0;
    const auto timer = loop().scheduleRepeating(0.02, [&] { ++calls; });
    EXPECT_TRUE(world_->waitUntil([&] { return calls >= 4; }));
    EXPECT_GE(world_->now() - start, 0.07);
}

TEST_P(MainLoopContract, SingleTimerFiresOnceAfterItsInterval) {
    const double start = world_->now();
    double fired = 0;
    int calls = 0;
    int marks = 0;
    const auto timer = loop().scheduleOnce(0.05, [&] {
        fired = world_->now();
        ++calls;
    });
    const auto later = loop().scheduleOnce(0.2, [&] { ++marks; });
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(world_->waitUntil([&] { return marks == 1; }));
    EXPECT_EQ(calls, 1);
    EXPECT_GE(fired - start, 0.045);
}

TEST_P(MainLoopContract, TimersFireInTheOrderOfTheirTimes) {
    std::vector<int> order;
    const auto second = loop().scheduleOnce(0.1, [&] { order.push_back(2); });
    const auto first = loop().scheduleOnce(0.02, [&] { order.push_back(1); });
    EXPECT_TRUE(world_->waitUntil([&] { return order.size() == 2; }));
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
}

TEST_P(MainLoopContract, DestroyedTimersDoNotFire) {
    int calls = 0;
    int marks = 0;
    auto repeating = loop().scheduleRepeating(0.02, [&] { ++calls; });
    auto once = loop().scheduleOnce(0.02, [&] { ++calls; });
    repeating.reset();
    once.reset();
    const auto later = loop().scheduleOnce(0.1, [&] { ++marks; });
    EXPECT_TRUE(world_->waitUntil([&] { return marks == 1; }));
    EXPECT_EQ(calls, 0);
}

TEST_P(MainLoopContract, RepeatingTimerMayBeDestroyedFromWithinItsCall) {
    int calls = 0;
    int marks = 0;
    std::unique_ptr<Timer> timer;
    timer = loop().scheduleRepeating(0.02, [&calls, &timer] {
        timer.reset();
        // The captures are used after the timer has gone: the loop must keep the call alive until it returns.
        ++calls;
    });
    const auto later = loop().scheduleOnce(0.15, [&] { ++marks; });
    EXPECT_TRUE(world_->waitUntil([&] { return marks == 1; }));
    EXPECT_EQ(calls, 1);
}

TEST_P(MainLoopContract, SingleTimerMayBeDestroyedFromWithinItsCall) {
    int calls = 0;
    std::unique_ptr<Timer> timer;
    timer = loop().scheduleOnce(0.02, [&calls, &timer] {
        timer.reset();
        ++calls;
    });
    EXPECT_TRUE(world_->waitUntil([&] { return calls == 1; }));
    EXPECT_EQ(timer, nullptr);
}

TEST_P(MainLoopContract, TimerMayBeReplacedFromWithinItsCall) {
    int first = 0;
    int second = 0;
    std::unique_ptr<Timer> timer;
    timer = loop().scheduleRepeating(0.02, [&] {
        ++first;
        timer = loop().scheduleRepeating(0.02, [&] { ++second; });
    });
    EXPECT_TRUE(world_->waitUntil([&] { return second >= 2; }));
    EXPECT_EQ(first, 1);
}

TEST_P(MainLoopContract, TimerMayBeDestroyedAfterItFired) {
    int calls = 0;
    auto timer = loop().scheduleOnce(0.02, [&] { ++calls; });
    EXPECT_TRUE(world_->waitUntil([&] { return calls == 1; }));
    timer.reset();
    world_->settle();
    EXPECT_EQ(calls, 1);
}

} // namespace tarvex::contract
