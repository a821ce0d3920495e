#include "Platform/Linux/X11/VirtualKeyCodes.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace tarvex::contract {

namespace {

/// The key codes of the X server by the names that its keyboard rules have for them.
const std::map<std::string, int> xKeys{
    {"A", 38},        {"S", 39},       {"D", 40},        {"F", 41},       {"G", 42},        {"H", 43},
    {"J", 44},        {"K", 45},       {"L", 46},        {"Q", 24},       {"W", 25},        {"E", 26},
    {"R", 27},        {"T", 28},       {"Y", 29},        {"U", 30},       {"I", 31},        {"O", 32},
    {"P", 33},        {"Z", 52},       {"X", 53},        {"C", 54},       {"V", 55},        {"B", 56},
    {"N", 57},        {"M", 58},       {"1", 10},        {"2", 11},       {"3", 12},        {"4", 13},
    {"5", 14},        {"6", 15},       {"7", 16},        {"8", 17},       {"9", 18},        {"0", 19},
    {"Minus", 20},    {"Equal", 21},   {"[", 34},        {"]", 35},       {";", 47},        {"'", 48},
    {"`", 49},        {"\\", 51},      {",", 59},        {".", 60},       {"/", 61},        {"ISO", 94},
    {"Escape", 9},    {"Back", 22},    {"Tab", 23},      {"Return", 36},  {"Space", 65},    {"Control", 37},
    {"Shift", 50},    {"Option", 64},  {"Super", 133},   {"Caps", 66},    {"RShift", 62},   {"RControl", 105},
    {"ROption", 108}, {"RSuper", 134}, {"F1", 67},       {"F2", 68},      {"F3", 69},       {"F4", 70},
    {"F5", 71},       {"F6", 72},      {"F7", 73},       {"F8", 74},      {"F9", 75},       {"F10", 76},
    {"F11", 95},      {"F12", 96},     {"F13", 191},     {"F14", 192},    {"F15", 193},     {"F16", 194},
    {"F17", 195},     {"F18", 196},    {"F19", 197},     {"F20", 198},    {"KP0", 90},      {"KP1", 87},
    {"KP2", 88},      {"KP3", 89},     {"KP4", 83},      {"KP5", 84},     {"KP6", 85},      {"KP7", 79},
    {"KP8", 80},      {"KP9", 81},     {"KP.", 91},      {"KP+", 86},     {"KP-", 82},      {"KP*", 63},
    {"KP/", 106},     {"KP=", 125},    {"KPEnter", 104}, {"NumLock", 77}, {"Left", 113},    {"Right", 114},
    {"Up", 111},      {"Down", 116},   {"Home", 110},    {"End", 115},    {"PageUp", 112},  {"PageDown", 117},
    {"Delete", 119},  {"Insert", 118}, {"Menu", 135},    {"Mute", 121},   {"Quieter", 122}, {"Louder", 123},
    {"Yen", 132},     {"Ro", 97},      {"KP,", 129},     {"Eisu", 131},   {"Kana", 130}};

/// The published virtual key codes of the same keys.
const std::map<std::string, int> virtualKeys{
    {"A", 0},        {"S", 1},         {"D", 2},        {"F", 3},       {"H", 4},        {"G", 5},
    {"Z", 6},        {"X", 7},         {"C", 8},        {"V", 9},       {"ISO", 10},     {"B", 11},
    {"Q", 12},       {"W", 13},        {"E", 14},       {"R", 15},      {"Y", 16},       {"T", 17},
    {"1", 18},       {"2", 19},        {"3", 20},       {"4", 21},      {"6", 22},       {"5", 23},
    {"Equal", 24},   {"9", 25},        {"7", 26},       {"Minus", 27},  {"8", 28},       {"0", 29},
    {"]", 30},       {"O", 31},        {"U", 32},       {"[", 33},      {"I", 34},       {"P", 35},
    {"Return", 36},  {"L", 37},        {"J", 38},       {"'", 39},      {"K", 40},       {";", 41},
    {"\\", 42},      {",", 43},        {"/", 44},       {"N", 45},      {"M", 46},       {".", 47},
    {"Tab", 48},     {"Space", 49},    {"`", 50},       {"Back", 51},   {"Escape", 53},  {"RSuper", 54},
    {"Super", 55},   {"Shift", 56},    {"Caps", 57},    {"Option", 58}, {"Control", 59}, {"RShift", 60},
    {"ROption", 61}, {"RControl", 62}, {"F17", 64},     {"KP.", 65},    {"KP*", 67},     {"KP+", 69},
    {"NumLock", 71}, {"Louder", 72},   {"Quieter", 73}, {"Mute", 74},   {"KP/", 75},     {"KPEnter", 76},
    {"KP-", 78},     {"F18", 79},      {"F19", 80},     {"KP=", 81},    {"KP0", 82},     {"KP1", 83},
    {"KP2", 84},     {"KP3", 85},      {"KP4", 86},     {"KP5", 87},    {"KP6", 88},     {"KP7", 89},
    {"F20", 90},     {"KP8", 91},      {"KP9", 92},     {"Yen", 93},    {"Ro", 94},      {"KP,", 95},
    {"F5", 96},      {"F6", 97},       {"F7", 98},      {"F3", 99},     {"F8", 100},     {"F9", 101},
    {"Eisu", 102},   {"F11", 103},     {"Kana", 104},   {"F13", 105},   {"F16", 106},    {"F14", 107},
    {"F10", 109},    {"Menu", 110},    {"F12", 111},    {"F15", 113},   {"Insert", 114}, {"Home", 115},
    {"PageUp", 116}, {"Delete", 117},  {"F4", 118},     {"End", 119},   {"F2", 120},     {"PageDown", 121},
    {"F1", 122},     {"Left", 123},    {"Right", 124},  {"Down", 125},  {"Up", 126}};

TEST(VirtualKeyCodes, EveryKeyHasItsPublishedNumber) {
    ASSERT_EQ(xKeys.size(), virtualKeys.size());
    for (const auto& [name, xKeyCode] : xKeys) {
        const int virtualKeyCode = virtualKeys.at(name);
        EXPECT_EQ(virtualKeyCodeOf(static_cast<std::uint8_t>(xKeyCode)), virtualKeyCode) << name;
        EXPECT_EQ(xKeyCodeOf(static_cast<std::uint16_t>(virtualKeyCode)), xKeyCode) << name;
    }
}

/// Every code of the published list (Apple, HIToolbox Events.h), in the order of its three parts: the keys of
/// an ANSI keyboard, those that are the same on every layout, and those of ISO and JIS keyboards.
const std::vector<int> publishedCodes{
    0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0x09, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F,
    0x10, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0x18, 0x19, 0x1A, 0x1B, 0x1C, 0x1D, 0x1E,
    0x1F, 0x20, 0x21, 0x22, 0x23, 0x25, 0x26, 0x27, 0x28, 0x29, 0x2A, 0x2B, 0x2C, 0x2D, 0x2E,
    0x2F, 0x32, 0x41, 0x43, 0x45, 0x47, 0x4B, 0x4C, 0x4E, 0x51, 0x52, 0x53, 0x54, 0x55, 0x56,
    0x57, 0x58, 0x59, 0x5B, 0x5C, 0x24, 0x30, 0x31, 0x33, 0x35, 0x36, 0x37, 0x38, 0x39, 0x3A,
    0x3B, 0x3C, 0x3D, 0x3E, 0x3F, 0x40, 0x48, 0x49, 0x4A, 0x4F, 0x50, 0x5A, 0x60, 0x61, 0x62,
    0x63, 0x64, 0x65, 0x67, 0x69, 0x6A, 0x6B, 0x6D, 0x6E, 0x6F, 0x71, 0x72, 0x73, 0x74, 0x75,
    0x76, 0x77, 0x78, 0x79, 0x7A, 0x7B, 0x7C, 0x7D, 0x7E, 0x0A, 0x5D, 0x5E, 0x5F, 0x66, 0x68};

TEST(VirtualKeyCodes, EveryPublishedCodeHasAKeyButThatOfFunction) {
    // The kernel's number of Function is beyond the 255 that the X server can name.
    constexpr int function = 0x3F;
    const std::set<int> published(publishedCodes.begin(), publishedCodes.end());
    ASSERT_EQ(published.size(), publishedCodes.size());
    for (int code = 0; code < 128; ++code) {
        EXPECT_EQ(xKeyCodeOf(static_cast<std::uint16_t>(code)).has_value(),
                  published.contains(code) && code != function)
            << code;
    }
    EXPECT_EQ(virtualKeys.size() + 1, published.size());
}

TEST(VirtualKeyCodes, TableIsOneToOneAndHasNoOtherKeys) {
    std::set<int> known;
    for (const auto& [name, xKeyCode] : xKeys) {
        known.insert(xKeyCode);
    }
    std::set<int> found;
    for (int xKeyCode = 0; xKeyCode <= 255; ++xKeyCode) {
        const auto virtualKeyCode = virtualKeyCodeOf(static_cast<std::uint8_t>(xKeyCode));
        EXPECT_EQ(virtualKeyCode.has_value(), known.contains(xKeyCode)) << xKeyCode;
        if (virtualKeyCode) {
            EXPECT_TRUE(found.insert(*virtualKeyCode).second) << xKeyCode;
            EXPECT_EQ(xKeyCodeOf(*virtualKeyCode), xKeyCode);
        }
    }
    for (int virtualKeyCode = 0; virtualKeyCode < 1000; ++virtualKeyCode) {
        EXPECT_EQ(xKeyCodeOf(static_cast<std::uint16_t>(virtualKeyCode)).has_value(),
                  found.contains(virtualKeyCode))
            << virtualKeyCode;
    }
}

TEST(VirtualKeyCodes, ModifiersAreToldFromOtherKeys) {
    for (const char* name :
         {"Shift", "RShift", "Control", "RControl", "Option", "ROption", "Super", "RSuper", "Caps"}) {
        EXPECT_TRUE(isModifierKey(static_cast<std::uint16_t>(virtualKeys.at(name)))) << name;
    }
    for (const char* name : {"A", "Escape", "Return", "KPEnter", "Tab", "F17", "NumLock", "Left"}) {
        EXPECT_FALSE(isModifierKey(static_cast<std::uint16_t>(virtualKeys.at(name)))) << name;
    }
}

} // namespace

} // namespace tarvex::contract
