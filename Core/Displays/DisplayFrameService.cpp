#include "Core/Displays/DisplayFrameService.h"

#include "Core/Displays/DisplayService.h"

namespace tarvex {

std::optional<Rect> DisplayFrameService::getVisibleFrame(std::uint32_t displayId) {
    const std::optional<Screen> screen = findScreen(*screens_, displayId);
    return screen ? std::optional<Rect>(screen->visibleFrame) : std::nullopt;
}

} // namespace tarvex
