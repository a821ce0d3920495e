#include "App/Logging/SerialQueue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace tarvex {

namespace {

TEST(SerialQueueTest, AQueueWithoutBlocksEndsAtOnce) {
    std::optional<SerialQueue> queue(std::in_place);
    queue.reset();
    EXPECT_FALSE(queue.has_value());
}

TEST(SerialQueueTest, RunsBlocksInOrder) {
    std::vector<int> order;
    {
        SerialQueue queue;
        for (int number = 0; number < 1000; ++number) {
            queue.async([&order, number] { order.push_back(number); });
        }
    }
    ASSERT_EQ(order.size(), 1000U);
    for (int number = 0; number < 1000; ++number) {
        EXPECT_EQ(order[static_cast<std::size_t>(number)], number);
    }
}

TEST(SerialQueueTest, ReturnsWhileABlockIsRunning) {
    SerialQueue queue;
    std::promise<void> gate;
    std::promise<void> done;
    queue.async([&] { gate.get_future().wait(); });
    queue.async([&] { done.set_value(); });
    std::future<void> finished = done.get_future();
    EXPECT_EQ(finished.wait_for(std::chrono::seconds(0)), std::future_status::timeout)
        << "the second block waits for the first, the caller for neither";
    gate.set_value();
    finished.wait();
}

TEST(SerialQueueTest, RunsOnOneThreadOfItsOwn) {
    std::vector<std::thread::id> threads;
    {
        SerialQueue queue;
        for (int count = 0; count < 100; ++count) {
            queue.async([&] { threads.push_back(std::this_thread::get_id()); });
        }
    }
    ASSERT_EQ(threads.size(), 100U);
    for (const std::thread::id& thread : threads) {
        EXPECT_EQ(thread, threads.front());
        EXPECT_NE(thread, std::this_thread::get_id());
    }
}

TEST(SerialQueueTest, BlocksOfManyThreadsNeverOverlap) {
    std::atomic<int> running{0};
    std::atomic<bool> haveOverlapped{false};
    int ran = 0;
    {
        SerialQueue queue;
        std::vector<std::thread> submitters;
        for (int count = 0; count < 8; ++count) {
            submitters.emplace_back([&] {
                for (int number = 0; number < 500; ++number) {
                    queue.async([&] {
                        haveOverlapped = haveOverlapped || ++running != 1;
                        ++ran;
                        --running;
                    });
                }
            });
        }
        for (std::thread& submitter : submitters) {
            submitter.join();
        }
    }
    EXPECT_EQ(ran, 4000);
    EXPECT_FALSE(haveOverlapped);
}

TEST(SerialQueueTest, EndsOnlyWhenEverythingSubmittedHasRun) {
    int ran = 0;
    std::promise<void> gate;
    std::shared_future<void> opened = gate.get_future().share();
    std::thread opener;
    {
        SerialQueue queue;
        queue.async([opened] { opened.wait(); });
        for (int count = 0; count < 100; ++count) {
            queue.async([&] { ++ran; });
        }
        opener = std::thread([&] { gate.set_value(); });
    }
    EXPECT_EQ(ran, 100);
    opener.join();
}

TEST(SerialQueueTest, DrainedQueueHasRunWhatWasSubmittedAndGoesOn) {
    int ran = 0;
    std::promise<void> gate;
    std::shared_future<void> opened = gate.get_future().share();
    SerialQueue queue;
    queue.async([opened] { opened.wait(); });
    for (int count = 0; count < 100; ++count) {
        queue.async([&] { ++ran; });
    }
    std::thread opener([&] { gate.set_value(); });
    queue.drain();
    EXPECT_EQ(ran, 100);
    queue.async([&] { ++ran; });
    queue.drain();
    EXPECT_EQ(ran, 101);
    opener.join();
}

TEST(SerialQueueTest, QueueWithoutBlocksIsDrainedAtOnce) {
    SerialQueue queue;
    queue.drain();
    EXPECT_NO_THROW(queue.async([] {}));
}

TEST(SerialQueueTest, ABlockMaySubmitAnother) {
    std::vector<int> order;
    {
        SerialQueue queue;
        queue.async([&] {
            order.push_back(1);
            queue.async([&] { order.push_back(3); });
            order.push_back(2);
        });
    }
    EXPECT_EQ(order, (std::vector{1, 2, 3}));
}

TEST(SerialQueueTest, WhatABlockHoldsIsReleasedBeforeTheNextRuns) {
    const auto held = std::make_shared<int>(0);
    long useCount = 0;
    {
        SerialQueue queue;
        queue.async([held] { ++*held; });
        queue.async([&] { useCount = held.use_count(); });
    }
    EXPECT_EQ(*held, 1);
    EXPECT_EQ(useCount, 1);
}

TEST(SerialQueueTest, ABlockMayEndItsOwnQueueAndTheRestStillRuns) {
    auto queue = std::make_shared<SerialQueue>();
    std::promise<void> gate;
    std::promise<void> done;
    queue->async([&gate, last = queue]() mutable {
        gate.get_future().wait();
        last.reset();
    });
    queue->async([&done] { done.set_value(); });
    queue.reset();
    gate.set_value();
    EXPECT_EQ(done.get_future().wait_for(std::chrono::seconds(30)), std::future_status::ready);
}

TEST(SerialQueueTest, TheEndOfABlockMayEndItsQueue) {
    auto queue = std::make_shared<SerialQueue>();
    std::promise<void> gate;
    std::promise<void> done;
    queue->async([&gate, last = queue] { gate.get_future().wait(); });
    queue->async([&done] { done.set_value(); });
    queue.reset();
    gate.set_value();
    EXPECT_EQ(done.get_future().wait_for(std::chrono::seconds(30)), std::future_status::ready);
}

} // namespace

} // namespace tarvex
