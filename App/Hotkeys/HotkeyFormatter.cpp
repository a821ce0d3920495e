#include "App/Hotkeys/HotkeyFormatter.h"

#include <array>
#include <cstdint>
#include <limits>
#include <string_view>
#include <utility>

namespace tarvex {

namespace {

// Keys that have no character, or one that cannot be seen; the same on every layout.
constexpr std::array<std::pair<std::uint32_t, std::string_view>, 7> fixedNames{{
    {36, "\u21A9"},
    {49, "Space"},
    {53, "\u238B"},
    {123, "\u2190"},
    {124, "\u2192"},
    {125, "\u2193"},
    {126, "\u2191"},
}};

constexpr std::array<std::pair<std::uint32_t, std::string_view>, 4> modifierSymbols{{
    {modifier_mask::command, "\u2318"},
    {modifier_mask::option, "\u2325"},
    {modifier_mask::control, "\u2303"},
    {modifier_mask::shift, "\u21E7"},
}};

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

    [[nodiscard]] std::string getName(std::uint32_t keyCode) const {
        for (const auto& [code, name] : fixedNames) {
            if (code == keyCode) {
                return std::string(name);
            }
        }
        return translator_.translate(keyCode).value_or("Key " + std::to_string(keyCode));
    }

private:
    KeyboardKeyTranslator translator_;
};

} // namespace

std::string HotkeyFormatter::format(const std::optional<HotkeyDefinition>& hotkey) const {
    if (!hotkey) {
        return "Not set";
    }
    std::string text;
    for (const auto& [bit, symbol] : modifierSymbols) {
        if ((hotkey->modifiers & bit) != 0) {
            text.append(symbol).append(" + ");
        }
    }
    return text + KeyNameProvider(*layout_).getName(hotkey->keyCode);
}

} // namespace tarvex
