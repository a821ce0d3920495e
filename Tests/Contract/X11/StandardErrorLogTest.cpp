#include "Platform/Linux/StandardErrorLog.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <unistd.h>

namespace tarvex {
namespace {

// Standard error goes to a socket that keeps the bounds of each write, for the life of the object.
class RedirectedStandardError {
public:
    RedirectedStandardError() : saved_(dup(STDERR_FILENO)) {
        if (saved_ < 0 || socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_NONBLOCK, 0, ends_.data()) != 0) {
            throw std::runtime_error("standard error cannot be redirected");
        }
        dup2(ends_[1], STDERR_FILENO);
    }

    RedirectedStandardError(const RedirectedStandardError&) = delete;
    RedirectedStandardError& operator=(const RedirectedStandardError&) = delete;
    RedirectedStandardError(RedirectedStandardError&&) = delete;
    RedirectedStandardError& operator=(RedirectedStandardError&&) = delete;

    ~RedirectedStandardError() {
        dup2(saved_, STDERR_FILENO);
        close(saved_);
        close(ends_[1]);
        closeReader();
    }

    // What one write brought; empty when there was none.
    std::string read() {
        std::array<char, 65'536> buffer{};
        const ssize_t count = ::read(ends_[0], buffer.data(), buffer.size());
        return count > 0 ? std::string(buffer.data(), static_cast<std::size_t>(count)) : std::string{};
    }

    void closeReader() {
        if (ends_[0] >= 0) {
            close(ends_[0]);
            ends_[0] = -1;
        }
    }

private:
    int saved_;
    std::array<int, 2> ends_{-1, -1};
};

TEST(StandardErrorLogTest, SystemLogLineIsPlain) {
    RedirectedStandardError standardError;
    StandardErrorLog log;
    log.systemLog("SnapController.snapAndHide: visibleFrame=nil");
    EXPECT_EQ(standardError.read(), "SnapController.snapAndHide: visibleFrame=nil\n");
    EXPECT_EQ(standardError.read(), "");
}

TEST(StandardErrorLogTest, UnifiedLogLineNamesWhereItCameFrom) {
    RedirectedStandardError standardError;
    StandardErrorLog log;
    log.unifiedLogError("Tarvex", "ConfigStore", "Failed to decode: \u00e4\u65e5");
    EXPECT_EQ(standardError.read(), "Tarvex [ConfigStore] error: Failed to decode: \u00e4\u65e5\n");
    EXPECT_EQ(standardError.read(), "");
}

TEST(StandardErrorLogTest, EachMessageIsOneWriteAndOneLine) {
    RedirectedStandardError standardError;
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
    RedirectedStandardError standardError;
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
    RedirectedStandardError standardError;
    StandardErrorLog log;
    log.systemLog(std::string(4095, 'x'));
    EXPECT_EQ(standardError.read(), std::string(4095, 'x') + "\n");
}

TEST(StandardErrorLogTest, ReaderThatIsGoneIsNoFailure) {
    RedirectedStandardError standardError;
    standardError.closeReader();
    StandardErrorLog log;
    log.systemLog("nobody reads this");
    sigset_t pending;
    sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
    sigset_t blocked;
    pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
    EXPECT_EQ(sigismember(&blocked, SIGPIPE), 0);
}

TEST(StandardErrorLogTest, ReaderThatDoesNotReadIsNotWaitedFor) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const int saved = dup(STDERR_FILENO);
    dup2(ends[1], STDERR_FILENO);
    StandardErrorLog log;
    // Far more than a pipe takes; waiting for room would last for ever.
    for (int round = 0; round < 2000; ++round) {
        log.systemLog(std::string(1000, 'x'));
    }
    dup2(saved, STDERR_FILENO);
    close(saved);
    close(ends[1]);
    std::array<char, 1001> line{};
    EXPECT_EQ(read(ends[0], line.data(), line.size()), 1001);
    EXPECT_EQ(std::string(line.data(), line.size()), std::string(1000, 'x') + "\n");
    close(ends[0]);
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
