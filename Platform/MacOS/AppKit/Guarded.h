#pragma once

#include <functional>

namespace tarvex {

/// Calls the function, and lets nothing that it throws out but a line in the log: no exception may pass
/// through a frame of the system. It stands in a file of plain C++, since not every Objective-C runtime lets
/// one catch what C++ throws.
void callGuarded(const std::function<void()>& function) noexcept;

/// Likewise; gives the fallback in place of an answer when the function throws.
[[nodiscard]] bool answerGuarded(const std::function<bool()>& function, bool fallback) noexcept;

} // namespace tarvex
