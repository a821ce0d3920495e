#pragma once

#include <string>
#include <vector>

namespace tarvex::test {

/// The lines at error level that were meant for the unified log since the last time that it was asked:
/// "category: message". There is no such log here.
[[nodiscard]] std::vector<std::string> takeUnifiedLog();

} // namespace tarvex::test
