#include "Platform/Linux/X11/XkbProtocol.h"
#include "Tests/Contract/X11/HotkeyX11Fixture.h"
#include "Tests/Contract/X11/XkbClient.h"

namespace tarvex::contract {

namespace {

/// The keyboard's layout and modifiers change.
class HotkeyMappingX11 : public HotkeyX11 {};

TEST_F(HotkeyMappingX11, GrabsFollowTheModifierMap) {
    install();
    const HotkeyRegistration registration = add(keyE, command);
    ModifierKeys modifiers = standardModifiers;
    std::swap(modifiers[XCB_MAP_INDEX_4], modifiers[XCB_MAP_INDEX_3]);
    setModifierMap(other_.client(), modifiers);
    adapters_.catchUp();
    EXPECT_EQ(other_.statesTaken(x_key::letterE), (States{32, 32 | 2, 32 | 16, 32 | 16 | 2}));
    EXPECT_TRUE(lost_.empty());
    EXPECT_EQ(heardDuring([&] { typist_.type(keyE, command); }), 1U);
}

TEST_F(HotkeyMappingX11, HotkeysCanSwapTheirModifiers) {
    install();
    const HotkeyRegistration first = add(keyE, command, 1);
    const HotkeyRegistration second = add(keyE, modifier_mask::option, 2);
    ModifierKeys modifiers = standardModifiers;
    std::swap(modifiers[XCB_MAP_INDEX_4], modifiers[XCB_MAP_INDEX_1]);
    setModifierMap(other_.client(), modifiers);
    adapters_.catchUp();
    typist_.type(keyE, command);
    typist_.type(keyE, modifier_mask::option);
    adapters_.catchUp();
    EXPECT_EQ(pressed_, (Ids{1, 2}));
    EXPECT_EQ(other_.statesTaken(x_key::letterE).size(), 8U);
}

TEST_F(HotkeyMappingX11, ModifierThatNoKeyHoldsIsRefused) {
    ModifierKeys modifiers = standardModifiers;
    modifiers[XCB_MAP_INDEX_4] = {};
    modifiers[XCB_MAP_INDEX_CONTROL] = {};
    setModifierMap(other_.client(), modifiers);
    install();
    for (const std::uint32_t modifier : {command, modifier_mask::control, command | modifier_mask::shift}) {
        const HotkeyRegistration registration = add(keyE, modifier);
        EXPECT_EQ(registration.status, XCB_MATCH) << modifier;
        EXPECT_EQ(registration.reference, nullptr) << modifier;
    }
    EXPECT_TRUE(other_.isFree(x_key::letterE));
    EXPECT_EQ(add(keyE, modifier_mask::shift).status, 0);
}

TEST_F(HotkeyMappingX11, HotkeyReturnsWithItsModifier) {
    install();
    const HotkeyRegistration registration = add(keyE, command);
    ModifierKeys modifiers = standardModifiers;
    modifiers[XCB_MAP_INDEX_4] = {};
    setModifierMap(other_.client(), modifiers);
    adapters_.catchUp();
    EXPECT_TRUE(other_.isFree(x_key::letterE));
    EXPECT_EQ(lost_, (std::map<std::uint32_t, std::int32_t>{{1, XCB_MATCH}}));
    setModifierMap(other_.client(), standardModifiers);
    EXPECT_EQ(heardDuring([&] { typist_.type(keyE, command); }), 1U);
}

TEST_F(HotkeyMappingX11, HotkeyThatLostItsPlaceIsTriedAgainWithTheNextChange) {
    install();
    const HotkeyRegistration registration = add(keyE, command);
    ASSERT_TRUE(other_.grab(XCB_MOD_MASK_3 | XCB_MOD_MASK_LOCK, x_key::letterE));
    ModifierKeys modifiers = standardModifiers;
    std::swap(modifiers[XCB_MAP_INDEX_4], modifiers[XCB_MAP_INDEX_3]);
    setModifierMap(other_.client(), modifiers);
    adapters_.catchUp();
    EXPECT_TRUE(other_.isFree(x_key::letterE));
    EXPECT_EQ(lost_, (std::map<std::uint32_t, std::int32_t>{{1, XCB_ACCESS}}));

    other_.ungrab(XCB_MOD_MASK_3 | XCB_MOD_MASK_LOCK, x_key::letterE);
    modifiers[XCB_MAP_INDEX_5] = {x_key::scrollLock};
    setModifierMap(other_.client(), modifiers);
    EXPECT_EQ(heardDuring([&] { typist_.type(keyE, command); }), 1U);
}

TEST_F(HotkeyMappingX11, KeyIsThePhysicalOneInEveryLayout) {
    install();
    const HotkeyRegistration registration = add(keyE, command);
    for (const char* layout : {"de", "fr", "ru", "us"}) {
        setLayout(server_, layout);
        EXPECT_EQ(heardDuring([&] { typist_.type(keyE, command); }), 1U) << layout;
    }
    setLayout(server_, "us", "dvorak");
    EXPECT_EQ(heardDuring([&] { typist_.type(keyE, command); }), 1U);
}

TEST_F(HotkeyMappingX11, AltGrMakesItAnotherCombination) {
    setLayout(server_, "de");
    install();
    const HotkeyRegistration plain = add(keyE, 0);
    const HotkeyRegistration withControl = add(keyE, modifier_mask::control, 2);
    keyboard_.pressKey(x_key::altGr);
    EXPECT_EQ(heardDuring([&] { typist_.type(keyE, 0); }), 0U);
    EXPECT_EQ(heardDuring([&] { typist_.type(keyE, modifier_mask::control); }), 0U);
    keyboard_.releaseKey(x_key::altGr);
    EXPECT_EQ(heardDuring([&] { typist_.type(keyE, 0); }), 1U);
    EXPECT_EQ(heardDuring([&] { typist_.type(keyE, modifier_mask::control); }), 1U);
}

TEST_F(HotkeyMappingX11, SecondLayoutMakesNoDifference) {
    setLayout(server_, "us,ru");
    install();
    const HotkeyRegistration registration = add(keyE, command);
    // A keyboard that comes into use brings its own layout along.
    typist_.type(keyR, 0);
    XkbClient(server_.displayName()).switchToLayout(1);
    EXPECT_EQ(heardDuring([&] { typist_.type(keyE, command); }), 1U);
}

} // namespace

} // namespace tarvex::contract
