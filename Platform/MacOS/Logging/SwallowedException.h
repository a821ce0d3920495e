#pragma once

#include <string_view>

namespace tarvex {

/// For the handlers of all exceptions that end at a frame of the system: leaves one line in the unified log,
/// at error level, with what the present exception says, or with the name of its type, as the compiler writes
/// it, when it is no std::exception. Called within such a handler only; throws nothing.
/// @param place the class or function that the exception came to
void logSwallowedException(std::string_view place) noexcept;

} // namespace tarvex
