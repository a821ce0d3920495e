#pragma once

#include <string_view>

namespace tarvex {

/// One line at error level in the unified log, readable by everybody: the log would show "<private>"
/// otherwise. The system cuts a message of more than about a kilobyte.
void writeUnifiedLogError(std::string_view subsystem, std::string_view category, std::string_view message);

} // namespace tarvex
