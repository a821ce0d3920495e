#pragma once

#include "Core/Displays/ScreenPlatform.h"

#include <cstdint>
#include <optional>

namespace tarvex {

/// Answers which part of a display is free for windows.
class DisplayFrameService {
public:
    /// The screens must outlive the service.
    explicit DisplayFrameService(ScreenPlatform& screens) : screens_(&screens) {}

    /// The visible frame of the display in screen space (points, y up); none when no screen shows it.
    [[nodiscard]] std::optional<Rect> getVisibleFrame(std::uint32_t displayId);

private:
    ScreenPlatform* screens_;
};

} // namespace tarvex
