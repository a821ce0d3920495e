#include "Tests/Support/X11/ChildProcess.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <poll.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarvex::test {
namespace {

constexpr int execFailed = 127;
constexpr int pipeCapacity = 1 << 20;

struct Pipe {
    FileDescriptor readEnd;
    FileDescriptor writeEnd;
};

Pipe makePipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error(std::string("pipe2: ") + std::strerror(errno));
    }
    Pipe pipe{FileDescriptor(ends[0]), FileDescriptor(ends[1])};
    ::fcntl(pipe.readEnd.get(), F_SETFL, O_NONBLOCK);
    // Room for a chatty child while the test looks elsewhere.
    ::fcntl(pipe.readEnd.get(), F_SETPIPE_SZ, pipeCapacity);
    return pipe;
}

std::vector<std::string> environmentStrings(const Environment& environment) {
    std::vector<std::string> strings;
    if (const char* path = std::getenv("PATH"); path != nullptr && !environment.contains("PATH")) {
        strings.push_back(std::string("PATH=") + path);
    }
    for (const auto& [name, value] : environment) {
        strings.push_back(name);
        strings.back().append("=").append(value);
    }
    return strings;
}

std::vector<char*> pointers(std::vector<std::string>& strings) {
    std::vector<char*> result;
    result.reserve(strings.size() + 1);
    for (std::string& string : strings) {
        result.push_back(string.data());
    }
    result.push_back(nullptr);
    return result;
}

void readAll(const FileDescriptor& source, std::string& text) {
    std::array<char, 4096> buffer{};
    for (;;) {
        const ssize_t count = ::read(source.get(), buffer.data(), buffer.size());
        if (count > 0) {
            text.append(buffer.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return;
        }
    }
}

// Runs in the child between fork and exec: system calls only.
[[noreturn]] void becomeCommand(const Command& command, char* const* arguments, char* const* environment,
                                const Pipe& output, const Pipe& error, pid_t parent) {
    ::setpgid(0, 0);
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) {
        ::_exit(execFailed);
    }
    const int nothing = ::open("/dev/null", O_RDONLY);
    ::dup2(nothing, STDIN_FILENO);
    ::dup2(output.writeEnd.get(), STDOUT_FILENO);
    ::dup2(error.writeEnd.get(), STDERR_FILENO);
    if (command.inheritedDescriptor) {
        ::fcntl(*command.inheritedDescriptor, F_SETFD, 0);
    }
    ::execvpe(arguments[0], arguments, environment);
    ::_exit(execFailed);
}

} // namespace

ChildProcess::ChildProcess(const Command& command) {
    Pipe output = makePipe();
    Pipe error = makePipe();
    std::vector<std::string> argumentStrings = command.arguments;
    std::vector<std::string> environmentText = environmentStrings(command.environment);
    const std::vector<char*> arguments = pointers(argumentStrings);
    const std::vector<char*> environment = pointers(environmentText);
    // Grandchildren come to us when their parent dies, so that their end can be awaited too.
    ::prctl(PR_SET_CHILD_SUBREAPER, 1);
    const pid_t parent = ::getpid();
    pid_ = ::fork();
    if (pid_ < 0) {
        throw std::runtime_error(std::string("fork: ") + std::strerror(errno));
    }
    if (pid_ == 0) {
        becomeCommand(command, arguments.data(), environment.data(), output, error, parent);
    }
    // Both sides set the group, so that it exists whichever runs first.
    ::setpgid(pid_, pid_);
    processDescriptor_ = FileDescriptor(static_cast<int>(::syscall(SYS_pidfd_open, pid_, 0)));
    output_ = std::move(output.readEnd);
    error_ = std::move(error.readEnd);
    if (!processDescriptor_.isOpen()) {
        signalGroup(SIGKILL);
        reap(0);
        throw std::runtime_error(std::string("pidfd_open: ") + std::strerror(errno));
    }
}

ChildProcess::~ChildProcess() {
    signalGroup(SIGKILL);
    if (!status_) {
        reap(0);
    }
    // What the child started itself has become ours, and is dying.
    while (::waitpid(-pid_, nullptr, 0) > 0 || errno == EINTR) {
    }
}

bool ChildProcess::isRunning() {
    if (!status_) {
        reap(WNOHANG);
    }
    return !status_;
}

void ChildProcess::signal(int number) const {
    if (!status_) {
        ::kill(pid_, number);
    }
}

void ChildProcess::signalGroup(int number) const {
    ::kill(-pid_, number);
}

const std::string& ChildProcess::standardOutput() {
    drain();
    return outputText_;
}

const std::string& ChildProcess::standardError() {
    drain();
    return errorText_;
}

bool ChildProcess::waitForOutput(const std::function<bool()>& condition, Deadline deadline) {
    for (;;) {
        const bool alive = isRunning();
        drain();
        if (condition()) {
            return true;
        }
        if (!alive || deadline.hasPassed()) {
            return false;
        }
        waitForActivity(deadline.pollTimeout(50));
    }
}

std::optional<ExitStatus> ChildProcess::waitForExit(Deadline deadline) {
    while (isRunning() && !deadline.hasPassed()) {
        drain();
        waitForActivity(deadline.pollTimeout(50));
    }
    drain();
    return status_;
}

long ChildProcess::residentKibibytes() const {
    std::ifstream status("/proc/" + std::to_string(pid_) + "/status");
    std::string word;
    while (status >> word) {
        if (word == "VmRSS:") {
            long kibibytes = 0;
            status >> kibibytes;
            return kibibytes;
        }
    }
    return 0;
}

void ChildProcess::drain() {
    readAll(output_, outputText_);
    readAll(error_, errorText_);
}

void ChildProcess::waitForActivity(int timeoutMilliseconds) {
    std::array<pollfd, 3> descriptors{
        {{processDescriptor_.get(), POLLIN, 0}, {output_.get(), POLLIN, 0}, {error_.get(), POLLIN, 0}}};
    ::poll(descriptors.data(), descriptors.size(), timeoutMilliseconds);
}

void ChildProcess::reap(int options) {
    int status = 0;
    if (::waitpid(pid_, &status, options) != pid_) {
        return;
    }
    status_ = ExitStatus{};
    if (WIFEXITED(status)) {
        status_->code = WEXITSTATUS(status);
    } else if (WIFSIGNALED(status)) {
        status_->signal = WTERMSIG(status);
    }
}

} // namespace tarvex::test
