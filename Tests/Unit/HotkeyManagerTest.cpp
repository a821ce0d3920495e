#include "App/Hotkeys/HotkeyManager.h"

#include "Tests/Support/Simulated/SimulatedHotkeys.h"
#include "Tests/Support/Simulated/SimulatedLogs.h"
#include "Tests/Support/Simulated/SimulatedMainLoop.h"

#include <gtest/gtest.h>

namespace tarvex {

namespace {

using Lines = std::vector<std::string>;

constexpr std::uint32_t trvx = 0x74727678;

class HotkeyManagerTest : public ::testing::Test {
protected:
    HotkeyManagerTest() { manager_.emplace(HotkeySurroundings{hotkeys_, mainLoop_, log_, fileLog_}); }

    HotkeyManager::Action counting(int& count) {
        return [&count] { ++count; };
    }

    /// The lines of the system log since the last call; the log file must have the same.
    Lines takeLines() {
        EXPECT_EQ(log_.lines(), fileLog_.lines());
        Lines lines = log_.lines();
        log_.clear();
        fileLog_.clear();
        return lines;
    }

    Journal journal_;
    SimulatedMainLoop mainLoop_;
    SimulatedLog log_{journal_};
    SimulatedFileLog fileLog_{journal_};
    SimulatedHotkeys hotkeys_;
    std::optional<HotkeyManager> manager_;
    int fired_ = 0;
};

TEST_F(HotkeyManagerTest, RegistersUnderTheProgramsSignature) {
    manager_->registerHotkey(1, {14, 0x300}, counting(fired_));
    EXPECT_EQ(hotkeys_.registered(), (std::vector<SimulatedHotkey>{{14, 0x300, {trvx, 1}}}));
    EXPECT_EQ(takeLines(), (Lines{"HotkeyManager.unregister id=1",
                                  "HotkeyManager.register id=1 keyCode=14 modifiers=768"}));
}

TEST_F(HotkeyManagerTest, SystemLogComesFirst) {
    manager_->unregister(7);
    EXPECT_EQ(journal_.entries(),
              (Lines{"log: HotkeyManager.unregister id=7", "file log: HotkeyManager.unregister id=7"}));
}

TEST_F(HotkeyManagerTest, PressRunsTheActionOnALaterTurn) {
    manager_->registerHotkey(1, {14, 0x300}, counting(fired_));
    static_cast<void>(takeLines());
    hotkeys_.press({trvx, 1});
    EXPECT_EQ(fired_, 0);
    EXPECT_EQ(takeLines(), Lines{"HotkeyManager triggered (id=1)"});
    mainLoop_.runPosted();
    EXPECT_EQ(fired_, 1);
    hotkeys_.press({trvx, 1});
    hotkeys_.press({trvx, 1});
    mainLoop_.runPosted();
    EXPECT_EQ(fired_, 3);
}

TEST_F(HotkeyManagerTest, SignatureOfAPressIsNotLookedAt) {
    manager_->registerHotkey(1, {14, 0x300}, counting(fired_));
    hotkeys_.press({0, 1});
    mainLoop_.runPosted();
    EXPECT_EQ(fired_, 1);
}

TEST_F(HotkeyManagerTest, RegisteringAgainReplaces) {
    int second = 0;
    manager_->registerHotkey(1, {14, 0x300}, counting(fired_));
    manager_->registerHotkey(1, {15, 0x100}, counting(second));
    EXPECT_EQ(hotkeys_.registered(), (std::vector<SimulatedHotkey>{{15, 0x100, {trvx, 1}}}));
    hotkeys_.press({trvx, 1});
    mainLoop_.runPosted();
    EXPECT_EQ(fired_, 0);
    EXPECT_EQ(second, 1);
}

TEST_F(HotkeyManagerTest, IdsAreKeptApart) {
    int second = 0;
    manager_->registerHotkey(1, {14, 0x300}, counting(fired_));
    manager_->registerHotkey(2, {15, 0x100}, counting(second));
    manager_->unregister(1);
    EXPECT_EQ(hotkeys_.registered(), (std::vector<SimulatedHotkey>{{15, 0x100, {trvx, 2}}}));
    hotkeys_.press({trvx, 2});
    hotkeys_.press({trvx, 1});
    mainLoop_.runPosted();
    EXPECT_EQ(fired_, 0);
    EXPECT_EQ(second, 1);
}

TEST_F(HotkeyManagerTest, UnregisteringWhatWasNeverRegisteredIsOnlyLogged) {
    manager_->unregister(9);
    EXPECT_EQ(takeLines(), Lines{"HotkeyManager.unregister id=9"});
}

TEST_F(HotkeyManagerTest, PressWithoutAnActionLeavesNoTrace) {
    hotkeys_.press({trvx, 5});
    mainLoop_.runPosted();
    EXPECT_TRUE(takeLines().empty());
}

TEST_F(HotkeyManagerTest, RefusalIsLoggedAndNothingElse) {
    hotkeys_.answerWith(-9878, false);
    manager_->registerHotkey(2, {14, 0x300}, counting(fired_));
    EXPECT_EQ(takeLines(),
              (Lines{"HotkeyManager.unregister id=2", "HotkeyManager.register id=2 keyCode=14 modifiers=768",
                     "RegisterEventHotKey failed: -9878 (id=2)"}));
    EXPECT_TRUE(hotkeys_.registered().empty());
}

TEST_F(HotkeyManagerTest, ReferenceThatCameWithARefusalIsKept) {
    hotkeys_.answerWith(-1, true);
    manager_->registerHotkey(2, {14, 0x300}, counting(fired_));
    EXPECT_EQ(hotkeys_.registered().size(), 1U);
    manager_->unregister(2);
    EXPECT_TRUE(hotkeys_.registered().empty());
}

TEST_F(HotkeyManagerTest, UnregisterAllLeavesTheActionsOfRefusedHotkeys) {
    manager_->registerHotkey(1, {14, 0x300}, counting(fired_));
    hotkeys_.answerWith(-1, false);
    manager_->registerHotkey(2, {15, 0x300}, counting(fired_));
    static_cast<void>(takeLines());
    manager_->unregisterAll();
    EXPECT_EQ(takeLines(), Lines{"HotkeyManager.unregister id=1"});
    hotkeys_.press({trvx, 1});
    hotkeys_.press({trvx, 2});
    mainLoop_.runPosted();
    EXPECT_EQ(fired_, 1);
}

TEST_F(HotkeyManagerTest, EndsWithItsHotkeysAndItsHandler) {
    manager_->registerHotkey(1, {14, 0x300}, counting(fired_));
    manager_->registerHotkey(2, {15, 0x300}, counting(fired_));
    static_cast<void>(takeLines());
    manager_.reset();
    EXPECT_EQ(takeLines(), (Lines{"HotkeyManager.unregister id=1", "HotkeyManager.unregister id=2"}));
    EXPECT_TRUE(hotkeys_.registered().empty());
    EXPECT_FALSE(hotkeys_.hasHandler());
}

} // namespace

} // namespace tarvex
