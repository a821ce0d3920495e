#include "App/Hotkeys/HotkeyFormatter.h"

#include <array>
#include <cstdint>
#include <limits>
#include <string_view>
#include <utility>

namespace tarvex {

namespace {

struct FixedName {
    std::uint32_t keyCode;
    std::string_view name;
    std::string_view word;
};

// Keys that have no character, or one that cannot be seen; the same on every layout.
constexpr std::array<FixedName, 7> fixedNames{{
    {36, "\u21A9", "Return"},
    {49, "Space", "Space"},
    {53, "\u238B", "Escape"},
    {123, "\u2190", "Left"},
    {124, "\u2192", "Right"},
    {125, "\u2193", "Down"},
    {126, "\u2191", "Up"},
}};

/// How a hotkey is written.
struct Wording {
    /// In the order in which they are written.
    std::array<std::pair<std::uint32_t, std::string_view>, 4> modifiers;
    std::string_view FixedName::*keyName = nullptr;
};

constexpr Wording symbols{{{{modifier_mask::command, "\u2318"},
                            {modifier_mask::option, "\u2325"},
                            {modifier_mask::control, "\u2303"},
                            {modifier_mask::shift, "\u21E7"}}},
                          &FixedName::name};

Wording wordsOf(const ModifierNames& names) {
    return {{{{modifier_mask::command, names.command},
              {modifier_mask::option, names.option},
              {modifier_mask::control, names.control},
              {modifier_mask::shift, names.shift}}},
            &FixedName::word};
}

/// Gives the character of a key in capitals.
class KeyboardKeyTranslator {
public:
    explicit KeyboardKeyTranslator(KeyboardLayoutPlatform& layout) : layout_(&layout) {}

    [[nodiscard]] std::optional<std::string> translate(std::uint32_t keyCode) const {
        if (keyCode > std::numeric_limits<std::uint16_t>::max()) {
            return std::nullopt;
        }
        const auto character = layout_->unshiftedCharacter(static_cast<std::uint16_t>(keyCode));
        return character && !character->empty() ? std::optional(layout_->upperCased(*character))
                                                : std::nullopt;
    }

private:
    KeyboardLayoutPlatform* layout_;
};

/// Names a key.
class KeyNameProvider {
public:
    explicit KeyNameProvider(KeyboardLayoutPlatform& layout) : translator_(layout) {}

    [[nodiscard]] std::string getName(std::uint32_t keyCode, std::string_view FixedName::*kind) const {
        for (const FixedName& fixed : fixedNames) {
            if (fixed.keyCode == keyCode) {
                return std::string(fixed.*kind);
            }
        }
        return translator_.translate(keyCode).value_or("Key " + std::to_string(keyCode));
    }

private:
    KeyboardKeyTranslator translator_;
};

std::string write(const std::optional<HotkeyDefinition>& hotkey, const Wording& wording,
                  KeyboardLayoutPlatform& layout) {
    if (!hotkey) {
        return "Not set";
    }
    std::string text;
    for (const auto& [bit, name] : wording.modifiers) {
        if ((hotkey->modifiers & bit) != 0) {
            text.append(name).append(" + ");
        }
    }
    return text + KeyNameProvider(layout).getName(hotkey->keyCode, wording.keyName);
}

} // namespace

std::string HotkeyFormatter::format(const std::optional<HotkeyDefinition>& hotkey) const {
    return write(hotkey, symbols, *layout_);
}

std::string HotkeyFormatter::formatInWords(const std::optional<HotkeyDefinition>& hotkey,
                                           const ModifierNames& names) const {
    return write(hotkey, wordsOf(names), *layout_);
}

} // namespace tarvex
