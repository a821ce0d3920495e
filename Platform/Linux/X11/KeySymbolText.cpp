#include "Platform/Linux/X11/KeySymbolText.h"

#include <xkbcommon/xkbcommon-keysyms.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace tarvex {

namespace {

struct DeadKey {
    xkb_keysym_t symbol;
    std::string_view accent;
};

/// Where Unicode has no accent of that kind apart from a letter, the nearest of the same shape.
constexpr std::array deadKeys{
    DeadKey{XKB_KEY_dead_grave, "`"},
    DeadKey{XKB_KEY_dead_acute, "\u00B4"},
    DeadKey{XKB_KEY_dead_circumflex, "^"},
    DeadKey{XKB_KEY_dead_tilde, "~"},
    DeadKey{XKB_KEY_dead_macron, "\u00AF"},
    DeadKey{XKB_KEY_dead_breve, "\u02D8"},
    DeadKey{XKB_KEY_dead_abovedot, "\u02D9"},
    DeadKey{XKB_KEY_dead_diaeresis, "\u00A8"},
    DeadKey{XKB_KEY_dead_abovering, "\u02DA"},
    DeadKey{XKB_KEY_dead_doubleacute, "\u02DD"},
    DeadKey{XKB_KEY_dead_caron, "\u02C7"},
    DeadKey{XKB_KEY_dead_cedilla, "\u00B8"},
    DeadKey{XKB_KEY_dead_ogonek, "\u02DB"},
    DeadKey{XKB_KEY_dead_iota, "\u037A"},
    DeadKey{XKB_KEY_dead_voiced_sound, "\u309B"},
    DeadKey{XKB_KEY_dead_semivoiced_sound, "\u309C"},
    DeadKey{XKB_KEY_dead_belowdot, "."},
    DeadKey{XKB_KEY_dead_hook, "\u02C0"},
    DeadKey{XKB_KEY_dead_horn, "\u02BC"},
    DeadKey{XKB_KEY_dead_stroke, "/"},
    DeadKey{XKB_KEY_dead_abovecomma, "\u1FBF"},
    DeadKey{XKB_KEY_dead_abovereversedcomma, "\u1FFE"},
    DeadKey{XKB_KEY_dead_doublegrave, "\u02F5"},
    DeadKey{XKB_KEY_dead_belowring, "\u02F3"},
    DeadKey{XKB_KEY_dead_belowmacron, "\u02CD"},
    DeadKey{XKB_KEY_dead_belowcircumflex, "\uA788"},
    DeadKey{XKB_KEY_dead_belowtilde, "\u02F7"},
    DeadKey{XKB_KEY_dead_belowbreve, "\u203F"},
    DeadKey{XKB_KEY_dead_invertedbreve, "\u2040"},
    DeadKey{XKB_KEY_dead_belowcomma, ","},
    DeadKey{XKB_KEY_dead_currency, "\u00A4"},
    DeadKey{XKB_KEY_dead_greek, "\u00B5"},
    DeadKey{XKB_KEY_dead_lowline, "_"},
    DeadKey{XKB_KEY_dead_aboveverticalline, "\u02C8"},
    DeadKey{XKB_KEY_dead_belowverticalline, "\u02CC"},
    DeadKey{XKB_KEY_dead_longsolidusoverlay, "/"},
};

constexpr bool isControl(std::uint32_t character) {
    constexpr std::uint32_t firstPrintable = 0x20;
    constexpr std::uint32_t firstOfUpperControls = 0x7F;
    constexpr std::uint32_t lastOfUpperControls = 0x9F;
    return character < firstPrintable ||
           (character >= firstOfUpperControls && character <= lastOfUpperControls);
}

} // namespace

std::optional<std::string> textOfKeySymbol(std::uint32_t keySymbol) {
    const auto dead = std::find_if(deadKeys.begin(), deadKeys.end(),
                                   [=](const DeadKey& key) { return key.symbol == keySymbol; });
    if (dead != deadKeys.end()) {
        return std::string(dead->accent);
    }
    // Symbols without a character have the null character here.
    if (isControl(xkb_keysym_to_utf32(keySymbol))) {
        return std::nullopt;
    }
    // The longest sequence of UTF-8 that the library makes, with its end.
    std::array<char, 8> text{};
    const int size = xkb_keysym_to_utf8(keySymbol, text.data(), text.size());
    return size > 1 ? std::optional<std::string>(text.data()) : std::nullopt;
}

} // namespace tarvex
