#pragma once

#include "Tests/Support/X11/XClient.h"

#include <cstdint>
#include <set>
#include <vector>

namespace tarvex::test {

/// Moves the pointer and presses its buttons as the hardware would. Each call returns when the server has
/// processed it. Buttons that are still down are released with the object.
class Pointer {
public:
    explicit Pointer(const std::string& displayName) : client_{displayName} {}

    Pointer(const Pointer&) = delete;
    Pointer& operator=(const Pointer&) = delete;
    Pointer(Pointer&&) = delete;
    Pointer& operator=(Pointer&&) = delete;
    ~Pointer();

    /// Puts the pointer there in one step.
    void moveTo(PixelPoint point);

    /// Moves it there in a straight line of that many steps.
    void glideTo(PixelPoint point, int steps = 8);

    /// @param button the physical button, before the pointer mapping
    void press(std::uint8_t button = 1);
    void release(std::uint8_t button = 1);

    [[nodiscard]] PixelPoint position();

    /// Which logical button each physical one is; {3, 2, 1} is for the left hand.
    void setMapping(const std::vector<std::uint8_t>& buttons);

private:
    void fake(std::uint8_t type, std::uint8_t detail, PixelPoint point);

    XClient client_;
    std::set<std::uint8_t> down_;
};

} // namespace tarvex::test
