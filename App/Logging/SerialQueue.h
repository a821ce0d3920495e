#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace tarvex {

/// Runs blocks one at a time, in the order in which they were submitted, on a thread of its own. The thread
/// starts with the first block.
class SerialQueue {
public:
    SerialQueue();
    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;
    SerialQueue(SerialQueue&&) = delete;
    SerialQueue& operator=(SerialQueue&&) = delete;
    /// Waits until what was submitted before has run. From within a block, where it cannot wait, it leaves
    /// the rest to the thread.
    ~SerialQueue();

    /// Returns at once. Callable from any thread; a block that throws ends the program. Throws
    /// std::system_error, and drops the block, when the system grants no thread.
    void async(std::function<void()> block);

    /// Waits until what was submitted before has run. Not to be called from within a block.
    void drain();

private:
    struct State;

    static void run(const std::shared_ptr<State>& state);

    // Shared with the thread, which outlives a queue that is destroyed from within a block.
    std::shared_ptr<State> state_;
    std::mutex startMutex_;
    std::thread thread_;
};

} // namespace tarvex
