#pragma once

#include "Tests/Support/X11/Deadline.h"
#include "Tests/Support/X11/FileDescriptor.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tarvex::test {

/// Name to value.
using Environment = std::map<std::string, std::string>;

/// What to run. The child sees the given environment and nothing of the test's own but PATH.
struct Command {
    /// The program, looked up in PATH, and its arguments.
    std::vector<std::string> arguments;
    Environment environment;
    /// A descriptor that the child inherits under the same number.
    std::optional<int> inheritedDescriptor;
};

/// How a process ended.
struct ExitStatus {
    /// The exit code; none when a signal ended it.
    std::optional<int> code;
    std::optional<int> signal;

    bool operator==(const ExitStatus&) const = default;
};

/// A child in a process group of its own, with its output collected. Destroying it kills the group and waits,
/// and the child dies with the test process, so that nothing is left behind. Throws std::runtime_error when
/// the program cannot be started.
class ChildProcess {
public:
    explicit ChildProcess(const Command& command);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ChildProcess(ChildProcess&&) = delete;
    ChildProcess& operator=(ChildProcess&&) = delete;
    ~ChildProcess();

    [[nodiscard]] pid_t pid() const { return pid_; }

    [[nodiscard]] bool isRunning();

    /// Sends a signal to the child alone, or to its whole group.
    void signal(int number) const;
    void signalGroup(int number) const;

    /// What the child has written up to now. Never blocks.
    [[nodiscard]] const std::string& standardOutput();
    [[nodiscard]] const std::string& standardError();

    /// Waits until the condition holds; wakes for output. False when the patience ended or the child did
    /// first.
    [[nodiscard]] bool waitForOutput(const std::function<bool()>& condition, Deadline deadline = Deadline{});

    /// Waits for the end of the child; none when the patience ended first.
    [[nodiscard]] std::optional<ExitStatus> waitForExit(Deadline deadline = Deadline{});

    /// Resident memory in kibibytes; 0 when the process is gone.
    [[nodiscard]] long residentKibibytes() const;

private:
    void drain();
    void waitForActivity(int timeoutMilliseconds);
    void reap(int options);

    pid_t pid_ = -1;
    FileDescriptor processDescriptor_;
    FileDescriptor output_;
    FileDescriptor error_;
    std::string outputText_;
    std::string errorText_;
    std::optional<ExitStatus> status_;
};

} // namespace tarvex::test
