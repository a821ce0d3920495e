#include "App/Hotkeys/ModifierMapper.h"

#include "App/Input/EventTapPlatform.h"
#include "Core/Configuration/TarvexConfig.h"

#include <gtest/gtest.h>

namespace tarvex {

namespace {

TEST(ModifierMapperTest, NoModifiersGiveZero) {
    EXPECT_EQ(ModifierMapper().toCarbonModifiers(0), 0U);
}

TEST(ModifierMapperTest, EachModifierHasItsBit) {
    EXPECT_EQ(ModifierMapper().toCarbonModifiers(0x100000), 0x100U) << "Command";
    EXPECT_EQ(ModifierMapper().toCarbonModifiers(0x80000), 0x800U) << "Option";
    EXPECT_EQ(ModifierMapper().toCarbonModifiers(0x40000), 0x1000U) << "Control";
    EXPECT_EQ(ModifierMapper().toCarbonModifiers(0x20000), 0x200U) << "Shift";
}

TEST(ModifierMapperTest, CommandShiftAndCapsLockGiveCommandAndShift) {
    const std::uint64_t flags = event_flag::command | event_flag::shift | event_flag::capsLock;
    EXPECT_EQ(ModifierMapper().toCarbonModifiers(flags), 0x300U);
}

TEST(ModifierMapperTest, EveryOtherFlagIsDropped) {
    EXPECT_EQ(ModifierMapper().toCarbonModifiers(~std::uint64_t{0x1E0000}), 0U);
}

TEST(ModifierMapperTest, AllFlagsGiveTheFourModifiers) {
    EXPECT_EQ(ModifierMapper().toCarbonModifiers(~std::uint64_t{0}), 0x1B00U);
}

TEST(ModifierMapperTest, KeyEventsAndObservedEventsAgree) {
    const ModifierMapper mapper;
    for (std::uint64_t bit = 0; bit < 64; ++bit) {
        const std::uint64_t flag = std::uint64_t{1} << bit;
        EXPECT_EQ(mapper.toCarbonModifiers(KeyModifierFlags{flag}), mapper.toCarbonModifiers(flag)) << bit;
        EXPECT_EQ(mapper.toCarbonModifiers(KeyModifierFlags{~flag}), mapper.toCarbonModifiers(~flag)) << bit;
    }
    EXPECT_EQ(mapper.toCarbonModifiers(KeyModifierFlags{0x100000}), 0x100U) << "Command";
    EXPECT_EQ(mapper.toCarbonModifiers(KeyModifierFlags{0x1F0000}), 0x1B00U) << "all four and Caps Lock";
}

TEST(ModifierMapperTest, EveryCombinationIsTheSumOfItsParts) {
    const ModifierMapper mapper;
    for (std::uint64_t combination = 0; combination < 16; ++combination) {
        std::uint32_t expected = 0;
        expected |= (combination & 1) != 0 ? modifier_mask::shift : 0;
        expected |= (combination & 2) != 0 ? modifier_mask::control : 0;
        expected |= (combination & 4) != 0 ? modifier_mask::option : 0;
        expected |= (combination & 8) != 0 ? modifier_mask::command : 0;
        EXPECT_EQ(mapper.toCarbonModifiers(combination << 17), expected) << combination;
    }
}

} // namespace

} // namespace tarvex
