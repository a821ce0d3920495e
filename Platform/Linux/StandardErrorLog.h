#pragma once

#include "Core/Logging/LogPlatform.h"

namespace tarvex {

/// Both logs on standard error, where the session's journal picks them up. Each message is one line and one
/// write, so that lines of several writers do not mix; line breaks within it are escaped, and an overlong one
/// is cut. A line that cannot be written at once is lost.
class StandardErrorLog final : public LogPlatform {
public:
    /// The message as it is.
    void systemLog(std::string_view message) override;

    /// "Tarvex [ConfigStore] error: message".
    void unifiedLogError(std::string_view subsystem, std::string_view category,
                         std::string_view message) override;
};

} // namespace tarvex
