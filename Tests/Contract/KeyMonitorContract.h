#pragma once

#include "App/Hotkeys/HotkeyRecorder.h"
#include "App/Hotkeys/KeyMonitorPlatform.h"
#include "App/Input/EventTapPlatform.h"
#include "Tests/Contract/ContractWorld.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace tarvex::contract {

/// A window of this program that has the keyboard, of which no key is held.
class KeyMonitorWorld : public ContractWorld {
public:
    virtual KeyMonitorPlatform& platform() = 0;

    /// A person holds the modifiers, and presses and releases the key. None of these lets the main loop run.
    /// @param keyCode a virtual key code
    /// @param modifiers a modifier mask
    virtual void type(std::uint16_t keyCode, std::uint32_t modifiers) = 0;

    /// A person presses and releases one modifier key by itself.
    virtual void typeModifier(std::uint32_t modifier) = 0;

    /// How many presses of keys that are no modifiers reached the window.
    virtual int reachedWindow() = 0;
};

class KeyMonitorContract : public ::testing::TestWithParam<WorldFactory<KeyMonitorWorld>> {
protected:
    static constexpr std::uint16_t keyE = 14;
    static constexpr std::uint16_t keyR = 15;
    static constexpr std::uint16_t space = 49;

    void SetUp() override { world_ = GetParam().make(); }

    void TearDown() override { monitor_.reset(); }

    /// Installs a monitor that notes every key.
    [[nodiscard]] std::unique_ptr<KeyMonitor> install(std::vector<KeyEvent>& keys, bool passesOn) {
        auto monitor =
            world_->platform().addLocalKeyDownMonitor([&keys, passesOn, this](const KeyEvent& event) {
                keys.push_back(event);
                if (onKey_) {
                    const std::function<void()> action = onKey_;
                    action();
                }
                return passesOn;
            });
        EXPECT_NE(monitor, nullptr);
        return monitor;
    }

    /// How many presses reached the window of what was typed in the work.
    int reachedWindowDuring(const std::function<void()>& work) {
        const int before = world_->reachedWindow();
        work();
        world_->settle();
        return world_->reachedWindow() - before;
    }

    using Codes = std::vector<std::uint16_t>;

    static Codes codesOf(const std::vector<KeyEvent>& keys) {
        Codes codes;
        codes.reserve(keys.size());
        for (const KeyEvent& key : keys) {
            codes.push_back(key.keyCode);
        }
        return codes;
    }

    std::unique_ptr<KeyMonitorWorld> world_;
    std::vector<KeyEvent> keys_;
    std::function<void()> onKey_;
    std::unique_ptr<KeyMonitor> monitor_;
};

TEST_P(KeyMonitorContract, WindowGetsItsKeysWithoutAMonitor) {
    EXPECT_EQ(reachedWindowDuring([this] { world_->type(keyE, 0); }), 1);
}

TEST_P(KeyMonitorContract, KeyIsSeenAndPassedOn) {
    monitor_ = install(keys_, true);
    EXPECT_EQ(reachedWindowDuring([this] { world_->type(keyE, 0); }), 1);
    EXPECT_EQ(codesOf(keys_), Codes{keyE});
    EXPECT_EQ(keys_.at(0).modifierFlags, 0U);
}

TEST_P(KeyMonitorContract, KeyIsSeenAndSwallowed) {
    monitor_ = install(keys_, false);
    EXPECT_EQ(reachedWindowDuring([this] {
                  world_->type(keyE, 0);
                  world_->type(space, 0);
              }),
              0);
    EXPECT_EQ(codesOf(keys_), (Codes{keyE, space}));
}

TEST_P(KeyMonitorContract, EveryModifierHasItsFlag) {
    monitor_ = install(keys_, false);
    const std::vector<std::pair<std::uint32_t, std::uint64_t>> modifiers = {
        {modifier_mask::command, event_flag::command},
        {modifier_mask::option, event_flag::option},
        {modifier_mask::control, event_flag::control},
        {modifier_mask::shift, event_flag::shift},
        {modifier_mask::command | modifier_mask::shift, event_flag::command | event_flag::shift}};
    for (const auto& [modifier, flag] : modifiers) {
        keys_.clear();
        EXPECT_EQ(reachedWindowDuring([&, held = modifier] { world_->type(keyE, held); }), 0);
        ASSERT_EQ(codesOf(keys_), Codes{keyE}) << modifier;
        EXPECT_EQ(ModifierMapper().toCarbonModifiers(keys_.at(0).modifierFlags), modifier);
        EXPECT_EQ(keys_.at(0).modifierFlags & flag, flag);
    }
}

TEST_P(KeyMonitorContract, ModifierByItselfIsNotReported) {
    monitor_ = install(keys_, false);
    for (const std::uint32_t modifier :
         {modifier_mask::command, modifier_mask::option, modifier_mask::control, modifier_mask::shift}) {
        world_->typeModifier(modifier);
    }
    world_->settle();
    EXPECT_TRUE(keys_.empty());
}

TEST_P(KeyMonitorContract, WindowGetsItsKeysAgainAfterTheMonitor) {
    monitor_ = install(keys_, false);
    EXPECT_EQ(reachedWindowDuring([this] { world_->type(keyE, 0); }), 0);
    monitor_.reset();
    EXPECT_EQ(reachedWindowDuring([this] { world_->type(keyE, 0); }), 1);
    EXPECT_EQ(keys_.size(), 1U);
}

TEST_P(KeyMonitorContract, MonitorMayGoFromWithinItsHandler) {
    monitor_ = install(keys_, false);
    onKey_ = [this] { monitor_.reset(); };
    EXPECT_EQ(reachedWindowDuring([this] { world_->type(space, 0); }), 0);
    EXPECT_EQ(reachedWindowDuring([this] { world_->type(keyE, 0); }), 1);
    EXPECT_EQ(codesOf(keys_), Codes{space});
}

TEST_P(KeyMonitorContract, MonitorMayBeReplacedFromWithinItsHandler) {
    std::vector<KeyEvent> later;
    monitor_ = install(keys_, false);
    onKey_ = [&] {
        onKey_ = nullptr;
        monitor_.reset();
        monitor_ = install(later, false);
    };
    EXPECT_EQ(reachedWindowDuring([this] { world_->type(keyE, 0); }), 0);
    EXPECT_EQ(reachedWindowDuring([this] { world_->type(keyR, 0); }), 0);
    EXPECT_EQ(codesOf(keys_), Codes{keyE});
    EXPECT_EQ(codesOf(later), Codes{keyR});
}

TEST_P(KeyMonitorContract, OfTwoMonitorsOneThatSwallowsIsTheLast) {
    std::vector<KeyEvent> second;
    monitor_ = install(keys_, true);
    std::unique_ptr<KeyMonitor> other = install(second, false);
    EXPECT_EQ(reachedWindowDuring([this] { world_->type(keyE, 0); }), 0);
    EXPECT_EQ(codesOf(keys_), Codes{keyE});
    EXPECT_EQ(codesOf(second), Codes{keyE});

    monitor_ = install(keys_, true);
    EXPECT_EQ(reachedWindowDuring([this] { world_->type(keyR, 0); }), 0);
    EXPECT_EQ(codesOf(keys_), Codes{keyE});
    EXPECT_EQ(codesOf(second), (Codes{keyE, keyR}));
}

TEST_P(KeyMonitorContract, RecorderTakesTheNextKey) {
    HotkeyRecorder recorder(world_->platform());
    std::vector<std::optional<HotkeyDefinition>> recorded;
    recorder.start([&](const std::optional<HotkeyDefinition>& hotkey) { recorded.push_back(hotkey); });
    world_->settle();
    const std::uint32_t modifiers = modifier_mask::command | modifier_mask::option;
    EXPECT_EQ(reachedWindowDuring([&] { world_->type(keyR, modifiers); }), 0);
    EXPECT_EQ(recorded, (std::vector<std::optional<HotkeyDefinition>>{HotkeyDefinition{keyR, modifiers}}));
    EXPECT_EQ(reachedWindowDuring([this] { world_->type(keyE, 0); }), 1);
    EXPECT_EQ(recorded.size(), 1U);
}

} // namespace tarvex::contract
