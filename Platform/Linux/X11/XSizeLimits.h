#pragma once

#include "Platform/Linux/X11/XConnection.h"

#include <cstdint>
#include <vector>

namespace tarvex {

/// What a window says of the sizes that it can have (WM_NORMAL_HINTS, ICCCM 4.1.2.3), for the client without
/// its frame, in pixels.
class XSizeLimits {
public:
    /// Of the client, in pixels.
    struct Extent {
        int width = 0;
        int height = 0;

        bool operator==(const Extent&) const = default;
    };

    /// No limits.
    XSizeLimits();

    /// @param hints the words of WM_NORMAL_HINTS; too few of them limit nothing
    explicit XSizeLimits(const std::vector<std::uint32_t>& hints);

    /// Whether the window may well have come to be as large as it is because somebody asked for that size.
    [[nodiscard]] bool explain(const Extent& actual, const Extent& asked) const;

    /// What to ask for to get as much of an extent as the window can have. Where the window wants a fixed
    /// ratio of its sides that is the largest size within the extent that has it, or one that is too large
    /// only where the window's smallest size is: of window managers some enlarge the window until the ratio
    /// is right. Otherwise it is the extent itself, which every window manager cuts down in the same way.
    [[nodiscard]] Extent requestFor(const Extent& extent) const;

    /// The steps in which the window becomes larger, 1 at least.
    [[nodiscard]] Extent steps() const { return {width_.increment, height_.increment}; }

private:
    /// Along one of the sides.
    struct Limits {
        int smallest = 1;
        int largest = 0;
        /// What the steps count from.
        int base = 0;
        int increment = 1;

        [[nodiscard]] int clamped(int asked) const;
        [[nodiscard]] int possible(int asked) const;
        [[nodiscard]] bool explain(int actual, int asked) const;
    };

    void readRatios(const std::vector<std::uint32_t>& hints, bool hasBase);

    Limits width_;
    Limits height_;
    /// The width divided by the height; 0 for windows that do not mind.
    double leastRatio_ = 0;
    double greatestRatio_ = 0;
    /// What of a size the ratio leaves out.
    Extent outsideRatio_;
};

} // namespace tarvex
