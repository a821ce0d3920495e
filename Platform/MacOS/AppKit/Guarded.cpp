#include "Platform/MacOS/AppKit/Guarded.h"

namespace tarvex {

void callGuarded(const std::function<void()>& function) noexcept {
    try {
        function();
    } catch (...) {
        return;
    }
}

bool answerGuarded(const std::function<bool()>& function, bool fallback) noexcept {
    try {
        return function();
    } catch (...) {
        return fallback;
    }
}

} // namespace tarvex
