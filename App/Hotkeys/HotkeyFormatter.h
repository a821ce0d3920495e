#pragma once

#include "App/Hotkeys/KeyboardLayoutPlatform.h"
#include "Core/Configuration/TarvexConfig.h"

#include <optional>
#include <string>

namespace tarvex {

/// What the modifier keys are called on the keyboards of the platform, for those who do not know the symbols.
struct ModifierNames {
    std::string command;
    std::string shift;
    std::string option;
    std::string control;
};

/// Writes hotkeys for people, with keys named as the user's keyboard layout labels them.
class HotkeyFormatter {
public:
    /// The layout must outlive the formatter.
    explicit HotkeyFormatter(KeyboardLayoutPlatform& layout) : layout_(&layout) {}

    /// The symbols of the modifiers, Command, Option, Control and Shift in this order, and the key's name,
    /// joined by " + "; "Not set" for none. UTF-8.
    [[nodiscard]] std::string format(const std::optional<HotkeyDefinition>& hotkey) const;

    /// The same in words, for those who hear it or do not know the symbols.
    [[nodiscard]] std::string formatInWords(const std::optional<HotkeyDefinition>& hotkey,
                                            const ModifierNames& names) const;

private:
    KeyboardLayoutPlatform* layout_;
};

} // namespace tarvex
