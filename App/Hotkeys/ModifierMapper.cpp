#include "App/Hotkeys/ModifierMapper.h"

#include "App/Input/EventTapPlatform.h"
#include "Core/Configuration/TarvexConfig.h"

namespace tarvex {

std::uint32_t ModifierMapper::toCarbonModifiers(std::uint64_t eventFlags) const {
    std::uint32_t mask = 0;
    if ((eventFlags & event_flag::command) != 0) {
        mask |= modifier_mask::command;
    }
    if ((eventFlags & event_flag::option) != 0) {
        mask |= modifier_mask::option;
    }
    if ((eventFlags & event_flag::control) != 0) {
        mask |= modifier_mask::control;
    }
    if ((eventFlags & event_flag::shift) != 0) {
        mask |= modifier_mask::shift;
    }
    return mask;
}

} // namespace tarvex
