#include "App/Hotkeys/HotkeyFormatter.h"

#include "Tests/Support/Simulated/SimulatedHotkeys.h"

#include <gtest/gtest.h>

#include <utility>

namespace tarvex {

namespace {

class HotkeyFormatterTest : public ::testing::Test {
protected:
    std::string format(std::uint32_t keyCode, std::uint32_t modifiers = 0) {
        return formatter_.format(HotkeyDefinition{keyCode, modifiers});
    }

    SimulatedKeyboardLayout layout_;
    HotkeyFormatter formatter_{layout_};
};

TEST_F(HotkeyFormatterTest, NoHotkeyIsNotSet) {
    EXPECT_EQ(formatter_.format(std::nullopt), "Not set");
}

TEST_F(HotkeyFormatterTest, KeysAreNamedByTheLayoutInCapitals) {
    EXPECT_EQ(format(14), "E");
    EXPECT_EQ(format(0), "A");
    EXPECT_EQ(format(18), "1");
    EXPECT_EQ(format(41), "\u00D6");
}

TEST_F(HotkeyFormatterTest, ModifiersStandInTheirOwnOrder) {
    EXPECT_EQ(format(14, 0x1B00), "\u2318 + \u2325 + \u2303 + \u21E7 + E");
    EXPECT_EQ(format(14, 0x300), "\u2318 + \u21E7 + E");
    EXPECT_EQ(format(49, 0x1800), "\u2325 + \u2303 + Space");
    EXPECT_EQ(format(14, 0x100), "\u2318 + E");
    EXPECT_EQ(format(14, 0x200), "\u21E7 + E");
    EXPECT_EQ(format(14, 0x800), "\u2325 + E");
    EXPECT_EQ(format(14, 0x1000), "\u2303 + E");
}

TEST_F(HotkeyFormatterTest, OtherBitsAreNotShown) {
    EXPECT_EQ(format(14, 0xFFFFE4FF), "E");
}

TEST_F(HotkeyFormatterTest, KeysWithoutACharacterHaveFixedNames) {
    const std::vector<std::pair<std::uint32_t, std::string>> names{
        {36, "\u21A9"},  {49, "Space"},   {53, "\u238B"}, {123, "\u2190"},
        {124, "\u2192"}, {125, "\u2193"}, {126, "\u2191"}};
    for (const auto& [keyCode, name] : names) {
        // Whatever the layout says.
        layout_.characters[static_cast<std::uint16_t>(keyCode)] = "x";
        EXPECT_EQ(format(keyCode), name);
    }
}

TEST_F(HotkeyFormatterTest, UnknownKeysAreNamedByTheirCode) {
    EXPECT_EQ(format(122), "Key 122");
    layout_.characters[122] = "";
    EXPECT_EQ(format(122), "Key 122");
    EXPECT_EQ(format(4294967295), "Key 4294967295");
    // Not the key whose code this would be if it were cut to sixteen bits.
    EXPECT_EQ(format(65536), "Key 65536");
}

TEST_F(HotkeyFormatterTest, WordsStandInTheSameOrder) {
    const ModifierNames names{"Super", "Shift", "Alt", "Control"};
    const auto words = [&](std::uint32_t keyCode, std::uint32_t modifiers) {
        return formatter_.formatInWords(HotkeyDefinition{keyCode, modifiers}, names);
    };
    EXPECT_EQ(words(14, 0x1B00), "Super + Alt + Control + Shift + E");
    EXPECT_EQ(words(14, 0x900), "Super + Alt + E");
    EXPECT_EQ(words(14, 0), "E");
    EXPECT_EQ(words(122, 0x200), "Shift + Key 122");
    const std::vector<std::pair<std::uint32_t, std::string>> keys{
        {36, "Return"}, {49, "Space"}, {53, "Escape"}, {123, "Left"},
        {124, "Right"}, {125, "Down"}, {126, "Up"}};
    for (const auto& [keyCode, word] : keys) {
        EXPECT_EQ(words(keyCode, 0), word);
    }
    EXPECT_EQ(formatter_.formatInWords(std::nullopt, names), "Not set");
}

} // namespace

} // namespace tarvex
