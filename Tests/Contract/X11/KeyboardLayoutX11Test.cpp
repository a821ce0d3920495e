#include "App/Hotkeys/HotkeyFormatter.h"
#include "Platform/Linux/Qt/QtText.h"
#include "Platform/Linux/X11/KeySymbolText.h"
#include "Platform/Linux/X11/XKeyboardLayout.h"
#include "Tests/Contract/X11/HotkeyFixture.h"
#include "Tests/Contract/X11/XkbClient.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarvex::contract {

namespace {

class KeyboardLayoutX11 : public ::testing::Test {
protected:
    void choose(const std::string& layout, const std::string& variant = {}) {
        setLayout(server_, layout, variant);
        adapters_.catchUp();
    }

    std::string name(std::uint32_t keyCode) {
        return HotkeyFormatter(layout_).format(HotkeyDefinition{keyCode, 0});
    }

    /// The names of several keys, with a blank between them.
    std::string names(const std::vector<std::uint32_t>& keyCodes) {
        std::string all;
        for (const std::uint32_t keyCode : keyCodes) {
            all += (all.empty() ? "" : " ") + name(keyCode);
        }
        return all;
    }

    test::XServer server_;
    XInputAdapters adapters_{server_.displayName()};
    XKeyboardLayout layout_{*adapters_.connection, adapters_.pump, &QtText::upperCased};

    const std::vector<std::uint32_t> topRow_{12, 13, 14, 15, 17, 16, 32, 34, 31, 35, 33, 30};
    const std::vector<std::uint32_t> homeRow_{0, 1, 2, 3, 5, 4, 38, 40, 37, 41, 39};
    const std::vector<std::uint32_t> bottomRow_{6, 7, 8, 9, 11, 45, 46, 43, 47, 44};
    const std::vector<std::uint32_t> digitRow_{50, 18, 19, 20, 21, 23, 22, 26, 28, 25, 29, 27, 24};
};

TEST_F(KeyboardLayoutX11, AmericanKeysHaveTheirNames) {
    choose("us");
    EXPECT_EQ(names(topRow_), "Q W E R T Y U I O P [ ]");
    EXPECT_EQ(names(homeRow_), "A S D F G H J K L ; '");
    EXPECT_EQ(names(bottomRow_), "Z X C V B N M , . /");
    EXPECT_EQ(names(digitRow_), "` 1 2 3 4 5 6 7 8 9 0 - =");
}

TEST_F(KeyboardLayoutX11, GermanKeysHaveTheirNames) {
    choose("de");
    EXPECT_EQ(names(topRow_), "Q W E R T Z U I O P \u00DC +");
    EXPECT_EQ(names(homeRow_), "A S D F G H J K L \u00D6 \u00C4");
    EXPECT_EQ(names(bottomRow_), "Y X C V B N M , . -");
    EXPECT_EQ(names(digitRow_), "^ 1 2 3 4 5 6 7 8 9 0 SS \u00B4");
    EXPECT_EQ(name(10), "<");
}

TEST_F(KeyboardLayoutX11, FrenchKeysHaveTheirNames) {
    choose("fr");
    EXPECT_EQ(names(topRow_), "A Z E R T Y U I O P ^ $");
    EXPECT_EQ(names(homeRow_), "Q S D F G H J K L M \u00D9");
    EXPECT_EQ(names(digitRow_), "\u00B2 & \u00C9 \" ' ( - \u00C8 _ \u00C7 \u00C0 ) =");
}

TEST_F(KeyboardLayoutX11, RussianKeysHaveTheirNames) {
    choose("ru");
    EXPECT_EQ(names(topRow_),
              "\u0419 \u0426 \u0423 \u041A \u0415 \u041D \u0413 \u0428 \u0429 \u0417 \u0425 \u042A");
    EXPECT_EQ(names(bottomRow_), "\u042F \u0427 \u0421 \u041C \u0418 \u0422 \u042C \u0411 \u042E .");
}

TEST_F(KeyboardLayoutX11, DvorakKeysHaveTheirNames) {
    choose("us", "dvorak");
    EXPECT_EQ(names(topRow_), "' , . P Y F G C R L / =");
    EXPECT_EQ(names(homeRow_), "A O E U I D H T N S -");
    EXPECT_EQ(names(bottomRow_), "; Q J K X B M W V Z");
}

TEST_F(KeyboardLayoutX11, OfSeveralLayoutsTheOneSwitchedToCounts) {
    choose("us,ru");
    EXPECT_EQ(name(0), "A");
    XkbClient desktop(server_.displayName());
    desktop.switchToLayout(1);
    EXPECT_EQ(name(0), "\u0424");
    desktop.switchToLayout(0);
    EXPECT_EQ(name(0), "A");
}

TEST_F(KeyboardLayoutX11, KeyOfFewerLayoutsStaysWhatItIs) {
    choose("us,ru");
    XkbClient(server_.displayName()).switchToLayout(1);
    EXPECT_EQ(name(78), "-");
    EXPECT_EQ(name(96), "Key 96");
}

TEST_F(KeyboardLayoutX11, SingleKeyThatIsReassignedIsFollowed) {
    EXPECT_EQ(name(0), "A");
    test::XClient client(server_.displayName());
    constexpr xcb_keysym_t oslash = 0xF8;
    xcb_change_keyboard_mapping(client.connection(), 1, *xKeyCodeOf(0), 1, &oslash);
    client.sync();
    adapters_.catchUp();
    EXPECT_EQ(name(0), "\u00D8");
}

TEST_F(KeyboardLayoutX11, KeypadKeysHaveTheirDigitsWhateverNumLockSays) {
    choose("us");
    const std::vector<std::uint32_t> keypad{82, 83, 84, 85, 86, 87, 88, 89, 91, 92, 65, 69, 78, 67, 75, 81};
    const std::string expected = "0 1 2 3 4 5 6 7 8 9 . + - * / =";
    EXPECT_EQ(names(keypad), expected);
    test::Keyboard(server_.displayName()).tapKey(x_key::numLock);
    adapters_.catchUp();
    EXPECT_EQ(names(keypad), expected);
}

TEST_F(KeyboardLayoutX11, KeysThatWriteNothingAreNamedByTheirNumber) {
    choose("us");
    // Tab, backspace, Enter of the keypad, forward delete, F1, F20, Home, volume, Control, and no key at all.
    for (const std::uint32_t keyCode : {48U, 51U, 76U, 117U, 122U, 90U, 115U, 72U, 59U, 127U}) {
        EXPECT_EQ(name(keyCode), "Key " + std::to_string(keyCode));
    }
}

TEST_F(KeyboardLayoutX11, MapIsReadOnce) {
    choose("de");
    EXPECT_EQ(name(6), "Y");
    EXPECT_EQ(adapters_.requestsDuring([this] { static_cast<void>(name(0)); }), 1U);
}

TEST_F(KeyboardLayoutX11, TypingAndSwitchingWakeNobody) {
    choose("us,ru");
    EXPECT_EQ(name(0), "A");
    test::Keyboard keyboard(server_.displayName());
    XkbClient desktop(server_.displayName());
    keyboard.tapKey(x_key::letterE);
    adapters_.catchUp();
    for (std::uint8_t count = 0; count < 20; ++count) {
        keyboard.tapKey(x_key::letterE);
        desktop.switchToLayout(count % 2);
    }
    adapters_.awaitServer();
    EXPECT_EQ(XcbOwned<xcb_generic_event_t>(xcb_poll_for_event(adapters_.connection->get())), nullptr);
}

TEST_F(KeyboardLayoutX11, LostServerIsHarmless) {
    EXPECT_EQ(name(0), "A");
    server_.end();
    adapters_.pump.processPending();
    EXPECT_EQ(layout_.unshiftedCharacter(0), "a");
    XKeyboardLayout later(*adapters_.connection, adapters_.pump, &QtText::upperCased);
    EXPECT_EQ(later.unshiftedCharacter(0), std::nullopt);
}

TEST(KeySymbolText, DeadKeysStandByThemselves) {
    const std::vector<std::pair<std::uint32_t, std::string>> expected = {
        {0xFE50, "`"},      {0xFE51, "\u00B4"}, {0xFE52, "^"},      {0xFE53, "~"},      {0xFE57, "\u00A8"},
        {0xFE58, "\u02DA"}, {0xFE5A, "\u02C7"}, {0xFE5B, "\u00B8"}, {0xFE59, "\u02DD"}, {0xFE63, "/"}};
    for (const auto& [symbol, text] : expected) {
        EXPECT_EQ(textOfKeySymbol(symbol), text) << symbol;
    }
}

TEST(KeySymbolText, SymbolsWithoutACharacterHaveNoText) {
    // No symbol, backspace, Return, Escape, delete, F1, Shift, Enter of the keypad, a dead key of no accent.
    for (const std::uint32_t symbol :
         {0U, 0xFF08U, 0xFF0DU, 0xFF1BU, 0xFFFFU, 0xFFBEU, 0xFFE1U, 0xFF8DU, 0xFE6CU, 0x0100009FU}) {
        EXPECT_EQ(textOfKeySymbol(symbol), std::nullopt) << symbol;
    }
}

TEST(KeySymbolText, SymbolsOfUnicodeAreTheirCharacter) {
    EXPECT_EQ(textOfKeySymbol(0x61), "a");
    EXPECT_EQ(textOfKeySymbol(0xE9), "\u00E9");
    EXPECT_EQ(textOfKeySymbol(0x6CA), "\u0439");
    EXPECT_EQ(textOfKeySymbol(0x0101F600), "\U0001F600");
    EXPECT_EQ(textOfKeySymbol(0x20), " ");
}

} // namespace

} // namespace tarvex::contract
