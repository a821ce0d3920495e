#include "Platform/Linux/StandardErrorLog.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <ctime>
#include <poll.h>
#include <pthread.h>
#include <string>
#include <unistd.h>
#include <utility>

namespace tarvex {

namespace {

// A pipe takes this much whole, and has room for it when it reports room at all.
constexpr std::size_t maxLineBytes = PIPE_BUF;
constexpr std::string_view cutMark = "...\n";

// Keeps the signal of a closed pipe from ending the program while a line is written.
class BrokenPipeSignalBlock {
public:
    BrokenPipeSignalBlock() {
        sigemptyset(&brokenPipe_);
        sigaddset(&brokenPipe_, SIGPIPE);
        sigset_t pending;
        sigpending(&pending);
        wasPending_ = sigismember(&pending, SIGPIPE) == 1;
        pthread_sigmask(SIG_BLOCK, &brokenPipe_, &previous_);
    }

    BrokenPipeSignalBlock(const BrokenPipeSignalBlock&) = delete;
    BrokenPipeSignalBlock& operator=(const BrokenPipeSignalBlock&) = delete;
    BrokenPipeSignalBlock(BrokenPipeSignalBlock&&) = delete;
    BrokenPipeSignalBlock& operator=(BrokenPipeSignalBlock&&) = delete;

    ~BrokenPipeSignalBlock() {
        if (!wasPending_) {
            const timespec noWait{};
            while (sigtimedwait(&brokenPipe_, nullptr, &noWait) == -1 && errno == EINTR) {
            }
        }
        pthread_sigmask(SIG_SETMASK, &previous_, nullptr);
    }

private:
    sigset_t brokenPipe_{};
    sigset_t previous_{};
    bool wasPending_ = false;
};

void appendEscaped(std::string& line, std::string_view text) {
    for (const char character : text) {
        if (character == '\n') {
            line += "\\n";
        } else if (character == '\r') {
            line += "\\r";
        } else {
            line += character;
        }
    }
}

void cutToSize(std::string& line) {
    if (line.size() <= maxLineBytes) {
        return;
    }
    std::size_t end = maxLineBytes - cutMark.size();
    // Never between the bytes of one character.
    while (end > 0 && (static_cast<unsigned char>(line[end]) & 0xC0U) == 0x80U) {
        --end;
    }
    line.replace(end, std::string::npos, cutMark);
}

void writeLine(std::string line) {
    line += '\n';
    cutToSize(line);
    pollfd standardError{STDERR_FILENO, POLLOUT, 0};
    if (poll(&standardError, 1, 0) != 1 || (standardError.revents & POLLOUT) == 0) {
        return;
    }
    const BrokenPipeSignalBlock block;
    const ssize_t written = write(STDERR_FILENO, line.data(), line.size());
    static_cast<void>(written);
}

} // namespace

void StandardErrorLog::systemLog(std::string_view message) {
    std::string line;
    appendEscaped(line, message);
    writeLine(std::move(line));
}

void StandardErrorLog::unifiedLogError(std::string_view subsystem, std::string_view category,
                                       std::string_view message) {
    std::string line;
    appendEscaped(line, subsystem);
    line += " [";
    appendEscaped(line, category);
    line += "] error: ";
    appendEscaped(line, message);
    writeLine(std::move(line));
}

} // namespace tarvex
