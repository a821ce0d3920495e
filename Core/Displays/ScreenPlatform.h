#pragma once

#include "Core/Geometry.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarvex {

/// One screen of the desktop, in screen space: points, origin at the bottom-left of the primary display, y
/// up.
struct Screen {
    /// The display that shows it; none when the platform does not say.
    std::optional<std::uint32_t> displayNumber;
    Rect frame;
    /// The frame less menu bars, docks and panels.
    Rect visibleFrame;
    /// The name to show to people; may be empty.
    std::string localizedName;

    bool operator==(const Screen&) const = default;
};

/// Port: the screens of the desktop. Nothing throws.
class ScreenPlatform {
public:
    ScreenPlatform() = default;
    ScreenPlatform(const ScreenPlatform&) = delete;
    ScreenPlatform& operator=(const ScreenPlatform&) = delete;
    ScreenPlatform(ScreenPlatform&&) = delete;
    ScreenPlatform& operator=(ScreenPlatform&&) = delete;
    virtual ~ScreenPlatform() = default;

    /// All screens as they are now, the primary one first; empty when there is none. Cheap enough for every
    /// event of a drag.
    [[nodiscard]] virtual std::vector<Screen> screens() = 0;

    /// The screen that the user works on; none when there is no screen.
    [[nodiscard]] virtual std::optional<Screen> mainScreen() = 0;
};

} // namespace tarvex
