#pragma once

#include <string>

namespace tarvex {

/// Where a user finds what the program did: one entry per message. log() returns at once and never fails.
class MessageLog {
public:
    MessageLog() = default;
    MessageLog(const MessageLog&) = delete;
    MessageLog& operator=(const MessageLog&) = delete;
    MessageLog(MessageLog&&) = delete;
    MessageLog& operator=(MessageLog&&) = delete;
    virtual ~MessageLog() = default;

    /// @param message UTF-8
    virtual void log(const std::string& message) = 0;
};

} // namespace tarvex
