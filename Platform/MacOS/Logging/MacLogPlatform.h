#pragma once

#include "Core/Logging/LogPlatform.h"

namespace tarvex {

/// NSLog and the unified log.
class MacLogPlatform final : public LogPlatform {
public:
    void systemLog(std::string_view message) override;
    void unifiedLogError(std::string_view subsystem, std::string_view category,
                         std::string_view message) override;
};

} // namespace tarvex
