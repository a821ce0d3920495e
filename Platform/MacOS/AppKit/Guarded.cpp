#include "Platform/MacOS/AppKit/Guarded.h"

#include "Platform/MacOS/Logging/SwallowedException.h"

namespace tarvex {

void callGuarded(const std::function<void()>& function) noexcept {
    try {
        function();
    } catch (...) {
        logSwallowedException("AppKit");
    }
}

bool answerGuarded(const std::function<bool()>& function, bool fallback) noexcept {
    try {
        return function();
    } catch (...) {
        logSwallowedException("AppKit");
    }
    return fallback;
}

} // namespace tarvex
