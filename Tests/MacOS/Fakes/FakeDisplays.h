#pragma once

#include <CoreGraphics/CoreGraphics.h>
#include <cstdint>
#include <vector>

namespace tarvex::fake {

struct FakeDisplay {
    CGDirectDisplayID number = 0;
    std::uint32_t vendor = 0;
    std::uint32_t model = 0;
    std::uint32_t serial = 0;
    /// Points, origin at the top-left of the main display, y down.
    CGRect bounds{};
    bool isBuiltin = false;
};

/// The displays that are connected and active, the main one first. A number that none of them has gets the
/// answers that Core Graphics gives without a monitor: 0xFFFFFFFF and the null rectangle.
class FakeDisplays {
public:
    std::vector<FakeDisplay> all;

    /// Not 0: the list cannot be had; a call for the count alone, or for the numbers, fails with this.
    CGError countError = kCGErrorSuccess;
    CGError listError = kCGErrorSuccess;

    [[nodiscard]] const FakeDisplay* find(CGDirectDisplayID number) const;
};

} // namespace tarvex::fake
