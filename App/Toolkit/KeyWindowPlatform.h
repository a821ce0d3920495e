#pragma once

#include <optional>
#include <string>

namespace tarvex {

/// Port: the program's own window that has the keyboard.
class KeyWindowPlatform {
public:
    KeyWindowPlatform() = default;
    KeyWindowPlatform(const KeyWindowPlatform&) = delete;
    KeyWindowPlatform& operator=(const KeyWindowPlatform&) = delete;
    KeyWindowPlatform(KeyWindowPlatform&&) = delete;
    KeyWindowPlatform& operator=(KeyWindowPlatform&&) = delete;
    virtual ~KeyWindowPlatform() = default;

    /// Its title; none when no window of the program is key. Asked on every event: it must not wait for
    /// anything.
    [[nodiscard]] virtual std::optional<std::string> keyWindowTitle() const = 0;
};

} // namespace tarvex
