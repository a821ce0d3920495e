#include "Platform/Linux/X11/VirtualKeyCodes.h"

#include <algorithm>
#include <array>

namespace tarvex {

namespace {

/// What the X server adds to the kernel's number of a key.
constexpr int xKeyCodeOffset = 8;

struct Key {
    /// The kernel's number (linux/input-event-codes.h).
    std::uint8_t kernelCode;
    std::uint8_t virtualKeyCode;
};

/// Keys at the same place of the keyboard, or with the same function where the place differs.
constexpr std::array keys{
    // The row of digits, 1 to 0.
    Key{2, 18},
    Key{3, 19},
    Key{4, 20},
    Key{5, 21},
    Key{6, 23},
    Key{7, 22},
    Key{8, 26},
    Key{9, 28},
    Key{10, 25},
    Key{11, 29},
    // The letters Q to P.
    Key{16, 12},
    Key{17, 13},
    Key{18, 14},
    Key{19, 15},
    Key{20, 17},
    Key{21, 16},
    Key{22, 32},
    Key{23, 34},
    Key{24, 31},
    Key{25, 35},
    // The letters A to L.
    Key{30, 0},
    Key{31, 1},
    Key{32, 2},
    Key{33, 3},
    Key{34, 5},
    Key{35, 4},
    Key{36, 38},
    Key{37, 40},
    Key{38, 37},
    // The letters Z to M.
    Key{44, 6},
    Key{45, 7},
    Key{46, 8},
    Key{47, 9},
    Key{48, 11},
    Key{49, 45},
    Key{50, 46},
    // Minus, equals, brackets, semicolon, quote, grave, backslash, comma, period, slash.
    Key{12, 27},
    Key{13, 24},
    Key{26, 33},
    Key{27, 30},
    Key{39, 41},
    Key{40, 39},
    Key{41, 50},
    Key{43, 42},
    Key{51, 43},
    Key{52, 47},
    Key{53, 44},
    // The further key of ISO keyboards, left of Z.
    Key{86, 10},
    // Yen, underscore, keypad comma, Eisu and Kana of JIS keyboards.
    Key{124, 93},
    Key{89, 94},
    Key{121, 95},
    Key{123, 102},
    Key{122, 104},
    // Escape, backspace, tab, Return, space.
    Key{1, 53},
    Key{14, 51},
    Key{15, 48},
    Key{28, 36},
    Key{57, 49},
    // Modifiers: Control, Shift, Option (Alt), Command (Super), left and right; Caps Lock.
    Key{29, 59},
    Key{97, 62},
    Key{42, 56},
    Key{54, 60},
    Key{56, 58},
    Key{100, 61},
    Key{125, 55},
    Key{126, 54},
    Key{58, 57},
    // F1 to F12.
    Key{59, 122},
    Key{60, 120},
    Key{61, 99},
    Key{62, 118},
    Key{63, 96},
    Key{64, 97},
    Key{65, 98},
    Key{66, 100},
    Key{67, 101},
    Key{68, 109},
    Key{87, 103},
    Key{88, 111},
    // F13 to F20.
    Key{183, 105},
    Key{184, 107},
    Key{185, 113},
    Key{186, 106},
    Key{187, 64},
    Key{188, 79},
    Key{189, 80},
    Key{190, 90},
    // The keypad: 0 to 9.
    Key{82, 82},
    Key{79, 83},
    Key{80, 84},
    Key{81, 85},
    Key{75, 86},
    Key{76, 87},
    Key{77, 88},
    Key{71, 89},
    Key{72, 91},
    Key{73, 92},
    // The keypad: decimal point, plus, minus, times, divided by, equals, Enter, and Clear where PCs have
    // Num Lock.
    Key{83, 65},
    Key{78, 69},
    Key{74, 78},
    Key{55, 67},
    Key{98, 75},
    Key{117, 81},
    Key{96, 76},
    Key{69, 71},
    // Arrows: left, right, down, up.
    Key{105, 123},
    Key{106, 124},
    Key{108, 125},
    Key{103, 126},
    // Home, End, page up, page down, forward delete, Help where PCs have Insert, the menu key.
    Key{102, 115},
    Key{107, 119},
    Key{104, 116},
    Key{109, 121},
    Key{111, 117},
    Key{110, 114},
    Key{127, 110},
    // Mute, volume down, volume up.
    Key{113, 74},
    Key{114, 73},
    Key{115, 72},
};

} // namespace

std::optional<std::uint16_t> virtualKeyCodeOf(std::uint8_t xKeyCode) {
    const auto found = std::find_if(keys.begin(), keys.end(), [=](const Key& key) {
        return key.kernelCode + xKeyCodeOffset == xKeyCode;
    });
    return found == keys.end() ? std::nullopt : std::optional<std::uint16_t>(found->virtualKeyCode);
}

std::optional<std::uint8_t> xKeyCodeOf(std::uint16_t virtualKeyCode) {
    const auto found = std::find_if(keys.begin(), keys.end(),
                                    [=](const Key& key) { return key.virtualKeyCode == virtualKeyCode; });
    return found == keys.end() ? std::nullopt
                               : std::optional(static_cast<std::uint8_t>(found->kernelCode + xKeyCodeOffset));
}

bool isModifierKey(std::uint16_t virtualKeyCode) {
    constexpr std::uint16_t firstModifier = 54;
    constexpr std::uint16_t lastModifier = 63;
    return virtualKeyCode >= firstModifier && virtualKeyCode <= lastModifier;
}

} // namespace tarvex
