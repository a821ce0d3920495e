#include "App/Logging/SerialQueue.h"

#include <condition_variable>
#include <deque>
#include <future>
#include <utility>

namespace tarvex {

struct SerialQueue::State {
    std::mutex mutex;
    std::condition_variable wake;
    std::deque<std::function<void()>> blocks;
    bool isEnding = false;
};

SerialQueue::SerialQueue() : state_(std::make_shared<State>()) {}

SerialQueue::~SerialQueue() {
    {
        const std::lock_guard lock(state_->mutex);
        state_->isEnding = true;
    }
    state_->wake.notify_one();
    if (thread_.get_id() == std::this_thread::get_id()) {
        thread_.detach();
    } else if (thread_.joinable()) {
        thread_.join();
    }
}

void SerialQueue::async(std::function<void()> block) {
    {
        const std::lock_guard lock(startMutex_);
        if (!thread_.joinable()) {
            thread_ = std::thread([state = state_] { run(state); });
        }
    }
    {
        const std::lock_guard lock(state_->mutex);
        state_->blocks.push_back(std::move(block));
    }
    state_->wake.notify_one();
}

void SerialQueue::drain() {
    {
        const std::lock_guard lock(startMutex_);
        if (!thread_.joinable()) {
            return;
        }
    }
    // The block may still be at work on the promise when the wait is over.
    const auto reached = std::make_shared<std::promise<void>>();
    async([reached] { reached->set_value(); });
    reached->get_future().wait();
}

void SerialQueue::run(const std::shared_ptr<State>& state) {
    std::unique_lock lock(state->mutex);
    for (;;) {
        state->wake.wait(lock, [&] { return state->isEnding || !state->blocks.empty(); });
        if (state->blocks.empty()) {
            return;
        }
        std::function<void()> block = std::move(state->blocks.front());
        state->blocks.pop_front();
        lock.unlock();
        block();
        // What the block holds goes before the lock is taken: its end may end the queue.
        block = nullptr;
        lock.lock();
    }
}

} // namespace tarvex
