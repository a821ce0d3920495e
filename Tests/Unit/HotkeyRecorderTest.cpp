#include "App/Hotkeys/HotkeyRecorder.h"

#include "App/Input/EventTapPlatform.h"
#include "Tests/Support/Simulated/SimulatedHotkeys.h"

#include <gtest/gtest.h>

namespace tarvex {

namespace {

class HotkeyRecorderTest : public ::testing::Test {
protected:
    HotkeyRecorder::RecordedCallback keep() {
        return [this](std::optional<HotkeyDefinition> hotkey) {
            recorded_.push_back(hotkey);
            monitorsAtCallback_ = monitors_.count();
        };
    }

    SimulatedKeyMonitors monitors_;
    HotkeyRecorder recorder_{monitors_};
    std::vector<std::optional<HotkeyDefinition>> recorded_;
    std::size_t monitorsAtCallback_ = 0;
};

TEST_F(HotkeyRecorderTest, RecordsTheNextKeyAndSwallowsIt) {
    recorder_.start(keep());
    EXPECT_TRUE(recorder_.isRecording());
    EXPECT_FALSE(monitors_.press({14, event_flag::command | event_flag::shift | event_flag::capsLock}));
    EXPECT_EQ(recorded_, (std::vector<std::optional<HotkeyDefinition>>{HotkeyDefinition{14, 0x300}}));
    EXPECT_FALSE(recorder_.isRecording());
    EXPECT_EQ(monitors_.count(), 0U);
    EXPECT_TRUE(monitors_.press({15, 0}));
    EXPECT_EQ(recorded_.size(), 1U);
}

TEST_F(HotkeyRecorderTest, CallbackComesBeforeTheMonitorGoes) {
    recorder_.start(keep());
    static_cast<void>(monitors_.press({14, 0}));
    EXPECT_EQ(monitorsAtCallback_, 1U);
}

TEST_F(HotkeyRecorderTest, KeyWithoutModifiersIsAccepted) {
    recorder_.start(keep());
    static_cast<void>(monitors_.press({0, 0}));
    EXPECT_EQ(recorded_, (std::vector<std::optional<HotkeyDefinition>>{HotkeyDefinition{0, 0}}));
}

TEST_F(HotkeyRecorderTest, EscapeRecordsNothingWhateverIsHeld) {
    for (const std::uint64_t flags : {std::uint64_t{0}, event_flag::command}) {
        recorded_.clear();
        recorder_.start(keep());
        EXPECT_FALSE(monitors_.press({53, flags}));
        EXPECT_EQ(recorded_, (std::vector<std::optional<HotkeyDefinition>>{std::nullopt}));
        EXPECT_EQ(monitors_.count(), 0U);
    }
}

TEST_F(HotkeyRecorderTest, StopEndsItWithoutACallback) {
    recorder_.stop();
    recorder_.start(keep());
    recorder_.stop();
    EXPECT_EQ(monitors_.count(), 0U);
    EXPECT_TRUE(monitors_.press({14, 0}));
    EXPECT_TRUE(recorded_.empty());
    recorder_.stop();
}

TEST_F(HotkeyRecorderTest, SecondStartDropsTheFirstCallback) {
    int first = 0;
    recorder_.start([&first](const std::optional<HotkeyDefinition>& /*hotkey*/) { ++first; });
    recorder_.start(keep());
    EXPECT_EQ(monitors_.count(), 1U);
    static_cast<void>(monitors_.press({14, 0}));
    EXPECT_EQ(first, 0);
    EXPECT_EQ(recorded_.size(), 1U);
}

TEST_F(HotkeyRecorderTest, CallbackMayStopTheRecorder) {
    int calls = 0;
    recorder_.start([&](const std::optional<HotkeyDefinition>& /*hotkey*/) {
        recorder_.stop();
        ++calls;
    });
    EXPECT_FALSE(monitors_.press({14, 0}));
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(monitors_.count(), 0U);
}

TEST_F(HotkeyRecorderTest, RecordingEndsWithTheRecorder) {
    {
        HotkeyRecorder passing(monitors_);
        passing.start(keep());
        EXPECT_EQ(monitors_.count(), 1U);
    }
    EXPECT_EQ(monitors_.count(), 0U);
}

} // namespace

} // namespace tarvex
