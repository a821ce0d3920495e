#pragma once

#include "App/Hotkeys/KeyboardLayoutPlatform.h"
#include "Tests/Contract/ContractWorld.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>

namespace tarvex::contract {

enum class KeyboardLayoutName : std::uint8_t { english, german, russian };

/// A desktop whose user can change the keyboard layout. It starts with the English one of the United States.
class KeyboardLayoutWorld : public ContractWorld {
public:
    virtual KeyboardLayoutPlatform& platform() = 0;

    /// The user chooses another layout. Does not let the main loop run.
    virtual void choose(KeyboardLayoutName layout) = 0;

    /// The user switches Caps Lock.
    virtual void toggleCapsLock() = 0;
};

class KeyboardLayoutContract : public ::testing::TestWithParam<WorldFactory<KeyboardLayoutWorld>> {
protected:
    void SetUp() override { world_ = GetParam().make(); }

    KeyboardLayoutPlatform& platform() { return world_->platform(); }

    void choose(KeyboardLayoutName layout) {
        world_->choose(layout);
        world_->settle();
    }

    /// What the key gives; "none" for nothing.
    std::string at(std::uint16_t keyCode) { return platform().unshiftedCharacter(keyCode).value_or("none"); }

    std::unique_ptr<KeyboardLayoutWorld> world_;
};

TEST_P(KeyboardLayoutContract, LettersDigitsAndSignsAreGivenUnshifted) {
    EXPECT_EQ(at(0), "a");
    EXPECT_EQ(at(6), "z");
    EXPECT_EQ(at(18), "1");
    EXPECT_EQ(at(41), ";");
    EXPECT_EQ(at(49), " ");
}

TEST_P(KeyboardLayoutContract, OtherLayoutIsFollowed) {
    EXPECT_EQ(at(6), "z");
    choose(KeyboardLayoutName::german);
    EXPECT_EQ(at(6), "y");
    EXPECT_EQ(at(41), "\u00F6");
    EXPECT_EQ(at(27), "\u00DF");
    choose(KeyboardLayoutName::russian);
    EXPECT_EQ(at(0), "\u0444");
    EXPECT_EQ(at(12), "\u0439");
    choose(KeyboardLayoutName::english);
    EXPECT_EQ(at(0), "a");
}

TEST_P(KeyboardLayoutContract, DeadKeyGivesItsAccent) {
    choose(KeyboardLayoutName::german);
    EXPECT_EQ(at(24), "\u00B4");
    EXPECT_EQ(at(50), "^");
}

TEST_P(KeyboardLayoutContract, KeysWithoutACharacterGiveNone) {
    for (const std::uint16_t keyCode : {std::uint16_t{122}, std::uint16_t{123}, std::uint16_t{56},
                                        std::uint16_t{63}, std::uint16_t{127}, std::uint16_t{0xFFFF}}) {
        EXPECT_EQ(at(keyCode), "none") << keyCode;
    }
}

TEST_P(KeyboardLayoutContract, LockMakesNoDifference) {
    world_->toggleCapsLock();
    world_->settle();
    EXPECT_EQ(at(0), "a");
}

TEST_P(KeyboardLayoutContract, CapitalsFollowUnicode) {
    EXPECT_EQ(platform().upperCased("e"), "E");
    EXPECT_EQ(platform().upperCased("1"), "1");
    EXPECT_EQ(platform().upperCased(";"), ";");
    EXPECT_EQ(platform().upperCased("\u00F6"), "\u00D6");
    EXPECT_EQ(platform().upperCased("\u0439"), "\u0419");
    EXPECT_EQ(platform().upperCased("\u00DF"), "SS");
    EXPECT_EQ(platform().upperCased("^"), "^");
    EXPECT_EQ(platform().upperCased(""), "");
}

} // namespace tarvex::contract
