#pragma once

#include <sys/types.h>

namespace tarvex::benchmark {

/// What the kernel knows of another process. Each throws std::runtime_error when the process is gone.

/// Processor time of all its threads, user and system, in seconds.
[[nodiscard]] double processorSeconds(pid_t process);

/// How often its threads woke from waiting since they started.
[[nodiscard]] long wakeUps(pid_t process);

struct Memory {
    /// Pages in memory, in bytes.
    double resident = 0;
    /// The same, with every shared page divided among those who share it.
    double proportional = 0;
};

[[nodiscard]] Memory memoryOf(pid_t process);

/// Whether its first thread waits for something to happen.
[[nodiscard]] bool isAsleep(pid_t process);

} // namespace tarvex::benchmark
