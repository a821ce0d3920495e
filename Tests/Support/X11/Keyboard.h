#pragma once

#include "Tests/Support/X11/XClient.h"

#include <cstdint>
#include <set>

namespace tarvex::test {

namespace key {
inline constexpr std::uint32_t shift = 0xFFE1;
inline constexpr std::uint32_t control = 0xFFE3;
inline constexpr std::uint32_t alt = 0xFFE9;
inline constexpr std::uint32_t super = 0xFFEB;
/// ISO_Level3_Shift, which every layout has on some key.
inline constexpr std::uint32_t altGr = 0xFE03;
inline constexpr std::uint32_t tab = 0xFF09;
inline constexpr std::uint32_t numLock = 0xFF7F;
inline constexpr std::uint32_t capsLock = 0xFFE5;
inline constexpr std::uint32_t escape = 0xFF1B;
inline constexpr std::uint32_t enter = 0xFF0D;
inline constexpr std::uint32_t keypadEnter = 0xFF8D;
inline constexpr std::uint32_t up = 0xFF52;
inline constexpr std::uint32_t right = 0xFF53;
inline constexpr std::uint32_t down = 0xFF54;
} // namespace key

/// Presses keys, named by keysym or by the key code of the server, as the hardware would. Each call returns
/// when the server has processed it. Keys that are still down are released with the object.
class Keyboard {
public:
    explicit Keyboard(const std::string& displayName) : client_{displayName} {}

    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;
    Keyboard(Keyboard&&) = delete;
    Keyboard& operator=(Keyboard&&) = delete;
    ~Keyboard();

    void press(std::uint32_t keysym);
    void release(std::uint32_t keysym);

    void tap(std::uint32_t keysym) {
        press(keysym);
        release(keysym);
    }

    void pressKey(std::uint8_t keycode);
    void releaseKey(std::uint8_t keycode);

    void tapKey(std::uint8_t keycode) {
        pressKey(keycode);
        releaseKey(keycode);
    }

private:
    [[nodiscard]] std::uint8_t keycodeOf(std::uint32_t keysym);
    void fake(std::uint8_t type, std::uint8_t keycode);

    XClient client_;
    std::set<std::uint8_t> down_;
};

} // namespace tarvex::test
