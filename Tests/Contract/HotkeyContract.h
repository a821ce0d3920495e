#pragma once

#include "App/Hotkeys/HotkeyPlatform.h"
#include "Core/Configuration/TarvexConfig.h"
#include "Tests/Contract/ContractWorld.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <ostream>
#include <utility>
#include <vector>

namespace tarvex {

inline std::ostream& operator<<(std::ostream& stream, const HotkeyIdentifier& identifier) {
    return stream << "(" << identifier.signature << ", " << identifier.id << ")";
}

} // namespace tarvex

namespace tarvex::contract {

/// A keyboard of which no key is held and no lock is on, and another program that has it.
class HotkeyWorld : public ContractWorld {
public:
    virtual HotkeyPlatform& platform() = 0;

    /// A person holds the modifiers of the mask, and presses and releases the key. None of these lets the
    /// main loop run.
    /// @param keyCode a virtual key code
    virtual void type(std::uint32_t keyCode, std::uint32_t modifiers) = 0;

    /// Switches Caps Lock.
    virtual void toggleCapsLock() = 0;

    /// How many presses of keys that are no modifiers the other program has received.
    virtual int reachedOthers() = 0;
};

class HotkeyContract : public ::testing::TestWithParam<WorldFactory<HotkeyWorld>> {
protected:
    static constexpr std::uint32_t signature = 0x74727678;
    static constexpr std::uint32_t keyE = 14;
    static constexpr std::uint32_t keyR = 15;
    static constexpr std::uint32_t keyF5 = 96;
    static constexpr std::uint32_t commandShift = modifier_mask::command | modifier_mask::shift;

    void SetUp() override {
        world_ = GetParam().make();
        handler_ = install();
    }

    // What the platform gave need not outlive it, and must not be touched after it.
    void TearDown() override {
        first_ = {};
        second_ = {};
        handler_.reset();
    }

    std::unique_ptr<HotkeyHandler> install() {
        return world_->platform().installHandler([this](const HotkeyIdentifier& identifier) {
            pressed_.push_back(identifier.id);
            EXPECT_EQ(identifier.signature, signature);
            if (onPress_) {
                const std::function<void()> action = onPress_;
                action();
            }
        });
    }

    HotkeyRegistration add(std::uint32_t keyCode, std::uint32_t modifiers, std::uint32_t id) {
        return world_->platform().registerHotkey(keyCode, modifiers, {signature, id});
    }

    void registerFirst() {
        first_ = add(keyE, commandShift, 1);
        ASSERT_EQ(first_.status, 0);
        ASSERT_NE(first_.reference, nullptr);
    }

    bool waitForPresses(std::size_t count) {
        return world_->waitUntil([this, count] { return pressed_.size() >= count; });
    }

    /// How many presses the other program received of what was typed in the work.
    int reachedOthersDuring(const std::function<void()>& work) {
        world_->settle();
        const int before = world_->reachedOthers();
        work();
        world_->settle();
        return world_->reachedOthers() - before;
    }

    using Ids = std::vector<std::uint32_t>;

    std::unique_ptr<HotkeyWorld> world_;
    std::unique_ptr<HotkeyHandler> handler_;
    HotkeyRegistration first_;
    HotkeyRegistration second_;
    Ids pressed_;
    std::function<void()> onPress_;
};

TEST_P(HotkeyContract, PressIsHeardOnceWhoeverHasTheKeyboard) {
    registerFirst();
    EXPECT_EQ(reachedOthersDuring([this] { world_->type(keyE, commandShift); }), 0);
    EXPECT_EQ(pressed_, Ids{1});
}

TEST_P(HotkeyContract, EveryPressIsHeard) {
    registerFirst();
    for (std::size_t count = 1; count <= 5; ++count) {
        world_->type(keyE, commandShift);
        ASSERT_TRUE(waitForPresses(count));
    }
    world_->settle();
    EXPECT_EQ(pressed_.size(), 5U);
}

TEST_P(HotkeyContract, PressesThatQueuedUpAreAllHeard) {
    registerFirst();
    for (int count = 0; count < 5; ++count) {
        world_->type(keyE, commandShift);
    }
    ASSERT_TRUE(waitForPresses(5));
    world_->settle();
    EXPECT_EQ(pressed_.size(), 5U);
}

TEST_P(HotkeyContract, LockMakesNoDifference) {
    registerFirst();
    world_->toggleCapsLock();
    EXPECT_EQ(reachedOthersDuring([this] { world_->type(keyE, commandShift); }), 0);
    EXPECT_EQ(pressed_, Ids{1});
}

TEST_P(HotkeyContract, OtherCombinationsGoTheirWay) {
    registerFirst();
    const std::vector<std::pair<std::uint32_t, std::uint32_t>> others = {
        {keyE, 0},
        {keyE, modifier_mask::command},
        {keyE, modifier_mask::shift},
        {keyE, commandShift | modifier_mask::option},
        {keyE, commandShift | modifier_mask::control},
        {keyE, modifier_mask::control | modifier_mask::option},
        {keyR, commandShift}};
    for (const auto& [keyCode, modifiers] : others) {
        EXPECT_EQ(reachedOthersDuring([&] { world_->type(keyCode, modifiers); }), 1)
            << keyCode << " " << modifiers;
    }
    EXPECT_TRUE(pressed_.empty());
}

TEST_P(HotkeyContract, EveryModifierCanTakePart) {
    for (const std::uint32_t modifiers :
         {modifier_mask::command, modifier_mask::option, modifier_mask::control, modifier_mask::shift,
          modifier_mask::command | modifier_mask::option | modifier_mask::control | modifier_mask::shift}) {
        pressed_.clear();
        first_ = add(keyE, modifiers, modifiers);
        ASSERT_EQ(first_.status, 0);
        EXPECT_EQ(reachedOthersDuring([&] { world_->type(keyE, modifiers); }), 0);
        EXPECT_EQ(pressed_, Ids{modifiers});
        first_ = {};
    }
}

TEST_P(HotkeyContract, KeyWithoutModifiersCanBeAHotkey) {
    first_ = add(keyF5, 0, 7);
    ASSERT_EQ(first_.status, 0);
    EXPECT_EQ(reachedOthersDuring([this] { world_->type(keyF5, 0); }), 0);
    EXPECT_EQ(pressed_, Ids{7});
}

TEST_P(HotkeyContract, HotkeysAreToldApart) {
    registerFirst();
    second_ = add(keyR, modifier_mask::control, 2);
    ASSERT_EQ(second_.status, 0);
    world_->type(keyR, modifier_mask::control);
    ASSERT_TRUE(waitForPresses(1));
    world_->type(keyE, commandShift);
    ASSERT_TRUE(waitForPresses(2));
    EXPECT_EQ(pressed_, (Ids{2, 1}));
}

TEST_P(HotkeyContract, UnregisteredCombinationGoesItsWayAgain) {
    registerFirst();
    first_ = {};
    EXPECT_EQ(reachedOthersDuring([this] { world_->type(keyE, commandShift); }), 1);
    EXPECT_TRUE(pressed_.empty());
}

TEST_P(HotkeyContract, OtherHotkeyStaysWhenOneGoes) {
    registerFirst();
    second_ = add(keyR, commandShift, 2);
    ASSERT_EQ(second_.status, 0);
    first_ = {};
    EXPECT_EQ(reachedOthersDuring([this] { world_->type(keyR, commandShift); }), 0);
    EXPECT_EQ(pressed_, Ids{2});
}

TEST_P(HotkeyContract, CombinationThatIsRegisteredIsRefused) {
    registerFirst();
    second_ = add(keyE, commandShift, 2);
    EXPECT_NE(second_.status, 0);
    EXPECT_EQ(second_.reference, nullptr);
    world_->type(keyE, commandShift);
    ASSERT_TRUE(waitForPresses(1));
    EXPECT_EQ(pressed_, Ids{1});

    first_ = {};
    second_ = add(keyE, commandShift, 2);
    EXPECT_EQ(second_.status, 0);
    world_->type(keyE, commandShift);
    ASSERT_TRUE(waitForPresses(2));
    EXPECT_EQ(pressed_, (Ids{1, 2}));
}

TEST_P(HotkeyContract, KeyCodeOfNoKeyIsRefused) {
    for (const std::uint32_t keyCode : {128U, 0xFFFFU, 0x10000U + keyE, 0xFFFFFFFFU}) {
        first_ = add(keyCode, commandShift, 1);
        EXPECT_NE(first_.status, 0) << keyCode;
        EXPECT_EQ(first_.reference, nullptr) << keyCode;
    }
}

TEST_P(HotkeyContract, NothingIsHeardWithoutAHandler) {
    registerFirst();
    handler_.reset();
    EXPECT_EQ(reachedOthersDuring([this] { world_->type(keyE, commandShift); }), 0);
    EXPECT_TRUE(pressed_.empty());
    handler_ = install();
    world_->type(keyE, commandShift);
    ASSERT_TRUE(waitForPresses(1));
}

TEST_P(HotkeyContract, LaterHandlerTakesOver) {
    registerFirst();
    int heard = 0;
    const std::unique_ptr<HotkeyHandler> later =
        world_->platform().installHandler([&heard](const HotkeyIdentifier&) { ++heard; });
    handler_.reset();
    world_->type(keyE, commandShift);
    EXPECT_TRUE(world_->waitUntil([&] { return heard == 1; }));
    EXPECT_TRUE(pressed_.empty());
}

TEST_P(HotkeyContract, HandlerMayReplaceTheHotkey) {
    registerFirst();
    onPress_ = [this] {
        onPress_ = nullptr;
        first_ = {};
        second_ = add(keyR, commandShift, 2);
    };
    world_->type(keyE, commandShift);
    ASSERT_TRUE(waitForPresses(1));
    EXPECT_EQ(reachedOthersDuring([this] { world_->type(keyE, commandShift); }), 1);
    world_->type(keyR, commandShift);
    ASSERT_TRUE(waitForPresses(2));
    EXPECT_EQ(pressed_, (Ids{1, 2}));
}

TEST_P(HotkeyContract, HandlerMayRemoveItself) {
    registerFirst();
    onPress_ = [this] { handler_.reset(); };
    world_->type(keyE, commandShift);
    ASSERT_TRUE(waitForPresses(1));
    world_->type(keyE, commandShift);
    world_->settle();
    EXPECT_EQ(pressed_.size(), 1U);
}

} // namespace tarvex::contract
