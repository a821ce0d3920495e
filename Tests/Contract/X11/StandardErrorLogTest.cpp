#include "Platform/Linux/StandardErrorLog.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace tarvex {
namespace {

// Standard error goes elsewhere for the life of the object.
class RedirectedStandardError {
public:
    RedirectedStandardError(int reader, int writer) : reader_(reader), saved_(dup(STDERR_FILENO)) {
        dup2(writer, STDERR_FILENO);
        close(writer);
    }

    RedirectedStandardError(const RedirectedStandardError&) = delete;
    RedirectedStandardError& operator=(const RedirectedStandardError&) = delete;
    RedirectedStandardError(RedirectedStandardError&&) = delete;
    RedirectedStandardError& operator=(RedirectedStandardError&&) = delete;

    ~RedirectedStandardError() {
        dup2(saved_, STDERR_FILENO);
        close(saved_);
        closeReader();
    }

    // What arrived, up to a size; empty when nothing did.
    std::string read(std::size_t size = 65'536) {
        std::string text(size, '\0');
        const ssize_t count = ::read(reader_, text.data(), text.size());
        text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
        return text;
    }

    void closeReader() {
        if (reader_ >= 0) {
            close(std::exchange(reader_, -1));
        }
    }

private:
    int reader_;
    int saved_;
};

std::array<int, 2> makeSocketPair() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK, 0, ends.data()) != 0) {
        throw std::runtime_error("no socket pair");
    }
    return ends;
}

std::array<int, 2> makePipe() {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        throw std::runtime_error("no pipe");
    }
    return ends;
}

// A socket keeps the bounds of each write.
class SocketStandardError : public RedirectedStandardError {
public:
    explicit SocketStandardError(const std::array<int, 2>& ends = makeSocketPair())
        : RedirectedStandardError(ends[0], ends[1]) {}
};

// A pipe fills up and tells of a lost reader with a signal.
class PipedStandardError : public RedirectedStandardError {
public:
    explicit PipedStandardError(const std::array<int, 2>& ends = makePipe())
        : RedirectedStandardError(ends[0], ends[1]) {}
};

TEST(StandardErrorLogTest, SystemLogLineIsPlain) {
    SocketStandardError standardError;
    StandardErrorLog log;
    log.systemLog("SnapController.snapAndHide: visibleFrame=nil");
    EXPECT_EQ(standardError.read(), "SnapController.snapAndHide: visibleFrame=nil\n");
    EXPECT_EQ(standardError.read(), "");
}

TEST(StandardErrorLogTest, UnifiedLogLineNamesWhereItCameFrom) {
    SocketStandardError standardError;
    StandardErrorLog log;
    log.unifiedLogError("Tarvex", "ConfigStore", "Failed to decode: \u00e4\u65e5");
    EXPECT_EQ(standardError.read(), "Tarvex [ConfigStore] error: Failed to decode: \u00e4\u65e5\n");
    EXPECT_EQ(standardError.read(), "");
}

TEST(StandardErrorLogTest, EachMessageIsOneWriteAndOneLine) {
    SocketStandardError standardError;
    StandardErrorLog log;
    log.systemLog("one\ntwo\r\nthree\n");
    log.unifiedLogError("Tarvex", "ConfigStore", "a\nb");
    log.systemLog("");
    EXPECT_EQ(standardError.read(), "one\\ntwo\\r\\nthree\\n\n");
    EXPECT_EQ(standardError.read(), "Tarvex [ConfigStore] error: a\\nb\n");
    EXPECT_EQ(standardError.read(), "\n");
    EXPECT_EQ(standardError.read(), "");
}

TEST(StandardErrorLogTest, OverlongMessageIsCutBetweenCharacters) {
    SocketStandardError standardError;
    StandardErrorLog log;
    for (const std::string& start : {std::string{}, std::string("a"), std::string("ab")}) {
        std::string message = start;
        while (message.size() < 10'000) {
            message += "\u65e5";
        }
        log.systemLog(message);
        const std::string line = standardError.read();
        ASSERT_TRUE(line.ends_with("...\n"));
        EXPECT_LE(line.size(), 4096U);
        EXPECT_GE(line.size(), 4090U);
        const std::string kept = line.substr(0, line.size() - 4);
        EXPECT_EQ(kept, message.substr(0, kept.size()));
        EXPECT_EQ((kept.size() - start.size()) % 3, 0U);
    }
}

TEST(StandardErrorLogTest, MessageOfTheLargestSizeIsWhole) {
    SocketStandardError standardError;
    StandardErrorLog log;
    log.systemLog(std::string(4095, 'x'));
    EXPECT_EQ(standardError.read(), std::string(4095, 'x') + "\n");
}

TEST(StandardErrorLogTest, ReaderThatIsGoneIsNoFailure) {
    const auto previous = signal(SIGPIPE, SIG_DFL);
    {
        PipedStandardError standardError;
        standardError.closeReader();
        StandardErrorLog log;
        log.systemLog("nobody reads this");
    }
    sigset_t pending;
    sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
    sigset_t blocked;
    pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
    EXPECT_EQ(sigismember(&blocked, SIGPIPE), 0);
    signal(SIGPIPE, previous);
}

TEST(StandardErrorLogTest, SignalThatSomebodyElseHoldsBackStaysPending) {
    sigset_t brokenPipe;
    sigemptyset(&brokenPipe);
    sigaddset(&brokenPipe, SIGPIPE);
    sigset_t previous;
    pthread_sigmask(SIG_BLOCK, &brokenPipe, &previous);
    raise(SIGPIPE);
    {
        PipedStandardError standardError;
        standardError.closeReader();
        StandardErrorLog log;
        log.systemLog("nobody reads this");
    }
    sigset_t pending;
    sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 1);
    const timespec noWait{};
    EXPECT_EQ(sigtimedwait(&brokenPipe, nullptr, &noWait), SIGPIPE);
    pthread_sigmask(SIG_SETMASK, &previous, nullptr);
}

TEST(StandardErrorLogTest, ReaderThatDoesNotReadIsNotWaitedFor) {
    PipedStandardError standardError;
    StandardErrorLog log;
    // Far more than a pipe takes; waiting for room would last for ever.
    for (int round = 0; round < 2000; ++round) {
        log.systemLog(std::string(1000, 'x'));
    }
    EXPECT_EQ(standardError.read(1001), std::string(1000, 'x') + "\n");
}

TEST(StandardErrorLogTest, ClosedStandardErrorIsNoFailure) {
    const int saved = dup(STDERR_FILENO);
    close(STDERR_FILENO);
    StandardErrorLog log;
    log.systemLog("nowhere to go");
    log.unifiedLogError("Tarvex", "ConfigStore", "nowhere to go");
    const bool isStillClosed = fcntl(STDERR_FILENO, F_GETFD) == -1;
    dup2(saved, STDERR_FILENO);
    close(saved);
    EXPECT_TRUE(isStillClosed);
}

} // namespace
} // namespace tarvex
