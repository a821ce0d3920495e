#include "App/Hotkeys/HotkeyFormatter.h"
#include "Platform/MacOS/Hotkeys/TextInputKeyboardLayout.h"
#include "Tests/MacOS/Fakes/FakeMac.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarvex {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TextInputLayout : public testing::Test {
protected:
    static fake::FakeKeyboardLayouts& system() { return fake::mac().layouts; }

    TextInputKeyboardLayout layout_;
};

TEST_F(TextInputLayout, KeyIsAskedForItsDisplayWithoutModifiers) {
    EXPECT_EQ(layout_.unshiftedCharacter(14), "e");
    constexpr UInt16 displayAction = 3;
    EXPECT_THAT(system().calls, ElementsAre(fake::TranslationCall{
                                    14, displayAction, 0, fake::FakeKeyboardLayouts::keyboardType, 0, 0, 8}));
}

TEST_F(TextInputLayout, DeadKeyShowsItsCharacter) {
    system().deadKeys[24] = u"\u00B4";
    EXPECT_EQ(layout_.unshiftedCharacter(24), "\u00B4");
}

TEST_F(TextInputLayout, LayoutIsReadAfresh) {
    EXPECT_EQ(layout_.unshiftedCharacter(0), "a");
    system().keys[0] = u"q";
    EXPECT_EQ(layout_.unshiftedCharacter(0), "q");
}

TEST_F(TextInputLayout, SeveralUnitsAreOneText) {
    system().keys = {{1, u"\U0001F600"}, {2, u"12345678"}, {3, u"123456789"}};
    EXPECT_EQ(layout_.unshiftedCharacter(1), "\U0001F600");
    EXPECT_EQ(layout_.unshiftedCharacter(2), "12345678");
    EXPECT_EQ(layout_.unshiftedCharacter(3), "12345678");
}

TEST_F(TextInputLayout, HalfACharacterIsAQuestionMark) {
    system().keys[1] = std::u16string{char16_t{0xD83D}};
    EXPECT_EQ(layout_.unshiftedCharacter(1), "?");
}

TEST_F(TextInputLayout, KeyWithoutACharacterGivesNone) {
    system().keys[1] = u"";
    EXPECT_EQ(layout_.unshiftedCharacter(1), std::nullopt);
    EXPECT_EQ(layout_.unshiftedCharacter(122), std::nullopt);
}

TEST_F(TextInputLayout, ControlCharacterIsNoLabel) {
    system().keys = {{36, u"\r"},     {51, u"\x7F"}, {122, u"\x10"},
                     {10, u"\u0085"}, {11, u" "},    {12, u"\u00A0"}};
    for (const std::uint16_t keyCode :
         {std::uint16_t{36}, std::uint16_t{51}, std::uint16_t{122}, std::uint16_t{10}}) {
        EXPECT_EQ(layout_.unshiftedCharacter(keyCode), std::nullopt) << keyCode;
    }
    EXPECT_EQ(layout_.unshiftedCharacter(11), " ");
    EXPECT_EQ(layout_.unshiftedCharacter(12), "\u00A0");
}

TEST_F(TextInputLayout, FailedTranslationGivesNone) {
    system().translationStatus = -50;
    EXPECT_EQ(layout_.unshiftedCharacter(14), std::nullopt);
}

TEST_F(TextInputLayout, LayoutWithoutKeyDataGivesNone) {
    for (const fake::LayoutData data :
         {fake::LayoutData::absent, fake::LayoutData::empty, fake::LayoutData::notData}) {
        system().data = data;
        EXPECT_EQ(layout_.unshiftedCharacter(14), std::nullopt);
    }
    EXPECT_THAT(system().calls, IsEmpty());
}

TEST_F(TextInputLayout, NoInputSourceGivesNone) {
    system().hasInputSource = false;
    EXPECT_EQ(layout_.unshiftedCharacter(14), std::nullopt);
}

TEST_F(TextInputLayout, CapitalsFollowUnicode) {
    EXPECT_EQ(layout_.upperCased("e"), "E");
    EXPECT_EQ(layout_.upperCased("\u00F6"), "\u00D6");
    EXPECT_EQ(layout_.upperCased("\u00DF"), "SS");
    EXPECT_EQ(layout_.upperCased(""), "");
}

TEST_F(TextInputLayout, BytesThatAreNoTextStayAsTheyAre) {
    EXPECT_EQ(layout_.upperCased("a\xFF"), "a\xFF");
}

TEST_F(TextInputLayout, HotkeyIsNamedAsTheLayoutLabelsIt) {
    const HotkeyFormatter formatter(layout_);
    EXPECT_EQ(formatter.format(HotkeyDefinition{14, 0x300}), "\u2318 + \u21E7 + E");
    system().keys[14] = u"\u00FC";
    EXPECT_EQ(formatter.format(HotkeyDefinition{14, 0x100}), "\u2318 + \u00DC");
    system().data = fake::LayoutData::absent;
    EXPECT_EQ(formatter.format(HotkeyDefinition{14, 0x100}), "\u2318 + Key 14");
}

} // namespace
} // namespace tarvex
