#include "App/Hotkeys/ModifierMapper.h"

#include "App/Input/EventTapPlatform.h"
#include "Core/Configuration/TarvexConfig.h"

#include <array>

namespace tarvex {

namespace {

struct Modifier {
    std::uint64_t flag;
    std::uint32_t bit;
};

constexpr std::array<Modifier, 4> modifiers{{{event_flag::command, modifier_mask::command},
                                             {event_flag::option, modifier_mask::option},
                                             {event_flag::control, modifier_mask::control},
                                             {event_flag::shift, modifier_mask::shift}}};

} // namespace

std::uint32_t ModifierMapper::toCarbonModifiers(KeyModifierFlags flags) const {
    return toCarbonModifiers(static_cast<std::uint64_t>(flags));
}

std::uint32_t ModifierMapper::toCarbonModifiers(std::uint64_t eventFlags) const {
    std::uint32_t mask = 0;
    for (const Modifier& modifier : modifiers) {
        if ((eventFlags & modifier.flag) != 0) {
            mask |= modifier.bit;
        }
    }
    return mask;
}

} // namespace tarvex
