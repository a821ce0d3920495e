#pragma once

#include "Tests/Contract/EventTapWorld.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace tarvex::contract {

class EventTapContract : public ::testing::TestWithParam<WorldFactory<EventTapWorld>> {
protected:
    static constexpr std::uint64_t allEvents = 0x1046;

    void SetUp() override {
        world_ = GetParam().make();
        recorder_.pointer = &world_->pointer();
    }

    // Taps point at the recorder and must be gone before the world is.
    void TearDown() override { drop(); }

    EventTapPlatform& platform() { return world_->platform(); }

    void create(std::uint64_t mask = allEvents) {
        EventTapRequest request;
        request.eventMask = mask;
        request.callback = &TapRecorder::callback;
        request.refcon = &recorder_;
        tap_ = platform().createTap(request);
        ASSERT_NE(tap_, nullptr);
        source_ = platform().createRunLoopSource(*tap_);
        ASSERT_NE(source_, nullptr);
    }

    void install(std::uint64_t mask = allEvents) {
        create(mask);
        platform().addSource(*source_);
        platform().enableTap(*tap_);
        world_->settle();
    }

    // In the order in which the program drops them.
    void drop() {
        if (source_) {
            platform().removeSource(*source_);
        }
        source_.reset();
        tap_.reset();
    }

    // A modifier pressed and released ends every sequence whose other events must not be seen.
    void mark() {
        world_->pressKey(ModifierKey::control);
        world_->releaseKey(ModifierKey::control);
    }

    static std::vector<TapEvent> markEvents() {
        return {{EventType::flagsChanged, event_flag::control}, {EventType::flagsChanged, 0}};
    }

    bool waitForEvents(std::size_t count) {
        return world_->waitUntil([this, count] { return recorder_.events.size() >= count; });
    }

    std::unique_ptr<EventTapWorld> world_;
    TapRecorder recorder_;
    std::unique_ptr<EventTap> tap_;
    std::unique_ptr<RunLoopSource> source_;
};

TEST_P(EventTapContract, PermittedDesktopGrantsListening) {
    EXPECT_TRUE(platform().preflightListenEventAccess());
    EXPECT_TRUE(platform().requestListenEventAccess());
}

TEST_P(EventTapContract, RefusingPlatformCreatesNoTap) {
    const std::unique_ptr<EventTapPlatform> refusing = world_->makeRefusingPlatform();
    EventTapRequest request;
    request.eventMask = allEvents;
    request.callback = &TapRecorder::callback;
    request.refcon = &recorder_;
    EXPECT_EQ(refusing->createTap(request), nullptr);
    EXPECT_EQ(refusing->createTap(request), nullptr);
}

TEST_P(EventTapContract, ButtonIsSeenDownAndUp) {
    install();
    world_->moveTo({300, 200});
    world_->pressButton();
    ASSERT_TRUE(waitForEvents(1));
    EXPECT_EQ(recorder_.places.back(), (Point{300, 200}));
    world_->releaseButton();
    ASSERT_TRUE(waitForEvents(2));
    EXPECT_EQ(recorder_.events,
              (std::vector<TapEvent>{{EventType::leftMouseDown, 0}, {EventType::leftMouseUp, 0}}));
}

TEST_P(EventTapContract, NothingIsSeenBeforeTheSourceIsOnTheLoop) {
    create();
    world_->pressButton();
    world_->releaseButton();
    world_->settle();
    EXPECT_TRUE(recorder_.events.empty());
}

TEST_P(EventTapContract, NothingIsSeenAfterTheTapWasDropped) {
    install();
    drop();
    world_->pressButton();
    world_->moveTo({310, 210});
    mark();
    world_->releaseButton();
    world_->settle();
    EXPECT_TRUE(recorder_.events.empty());
}

TEST_P(EventTapContract, NewTapTakesOverFromTheOldOne) {
    install();
    drop();
    TapRecorder old = std::exchange(recorder_, TapRecorder{});
    recorder_.pointer = &world_->pointer();
    install();
    world_->pressButton();
    world_->releaseButton();
    ASSERT_TRUE(waitForEvents(2));
    EXPECT_EQ(recorder_.events,
              (std::vector<TapEvent>{{EventType::leftMouseDown, 0}, {EventType::leftMouseUp, 0}}));
    EXPECT_TRUE(old.events.empty());
}

TEST_P(EventTapContract, MotionIsSeenOnlyWhileTheButtonIsDown) {
    install();
    world_->moveTo({200, 200});
    world_->moveTo({220, 220});
    world_->settle();
    EXPECT_TRUE(recorder_.events.empty());
    world_->pressButton();
    ASSERT_TRUE(waitForEvents(1));
    world_->moveTo({260, 240});
    ASSERT_TRUE(waitForEvents(2));
    EXPECT_EQ(recorder_.events.back(), (TapEvent{EventType::leftMouseDragged, 0}));
    EXPECT_EQ(recorder_.places.back(), (Point{260, 240}));
    world_->releaseButton();
    ASSERT_TRUE(waitForEvents(3));
    world_->moveTo({200, 200});
    mark();
    ASSERT_TRUE(waitForEvents(5));
    EXPECT_EQ(recorder_.count(EventType::leftMouseDragged), 1U);
}

TEST_P(EventTapContract, QueuedMotionIsHandledAtTheNewestPosition) {
    install();
    world_->moveTo({100, 100});
    world_->pressButton();
    ASSERT_TRUE(waitForEvents(1));
    for (int step = 1; step <= 50; ++step) {
        world_->moveTo({100.0 + step, 100.0 + 2 * step});
    }
    const auto isNewest = [this] { return recorder_.places.back() == Point{150, 200}; };
    EXPECT_TRUE(world_->waitUntil(isNewest));
    world_->settle();
    const std::size_t drags = recorder_.count(EventType::leftMouseDragged);
    EXPECT_GE(drags, 1U);
    EXPECT_LT(drags, 25U);
    EXPECT_EQ(recorder_.events.size(), drags + 1);
    world_->releaseButton();
    EXPECT_TRUE(world_->waitUntil([this] { return recorder_.count(EventType::leftMouseUp) == 1; }));
}

TEST_P(EventTapContract, EachModifierHasItsFlag) {
    install();
    const std::vector<std::pair<ModifierKey, std::uint64_t>> keys = {
        {ModifierKey::shift, event_flag::shift},
        {ModifierKey::control, event_flag::control},
        {ModifierKey::option, event_flag::option},
        {ModifierKey::command, event_flag::command},
    };
    std::vector<TapEvent> expected;
    for (const auto& [key, flag] : keys) {
        world_->pressKey(key);
        expected.push_back({EventType::flagsChanged, flag});
        ASSERT_TRUE(waitForEvents(expected.size()));
        world_->releaseKey(key);
        expected.push_back({EventType::flagsChanged, 0});
        ASSERT_TRUE(waitForEvents(expected.size()));
    }
    EXPECT_EQ(recorder_.events, expected);
}

TEST_P(EventTapContract, ModifiersAddUp) {
    install();
    world_->pressKey(ModifierKey::command);
    ASSERT_TRUE(waitForEvents(1));
    world_->pressKey(ModifierKey::shift);
    ASSERT_TRUE(waitForEvents(2));
    world_->releaseKey(ModifierKey::command);
    ASSERT_TRUE(waitForEvents(3));
    world_->releaseKey(ModifierKey::shift);
    ASSERT_TRUE(waitForEvents(4));
    EXPECT_EQ(recorder_.events,
              (std::vector<TapEvent>{{EventType::flagsChanged, event_flag::command},
                                     {EventType::flagsChanged, event_flag::command | event_flag::shift},
                                     {EventType::flagsChanged, event_flag::shift},
                                     {EventType::flagsChanged, 0}}));
}

TEST_P(EventTapContract, LocksDoNotCountAsModifiers) {
    install();
    world_->toggleCapsLock();
    world_->settle();
    recorder_.events.clear();
    world_->pressKey(ModifierKey::command);
    ASSERT_TRUE(waitForEvents(1));
    EXPECT_EQ(recorder_.events.front(), (TapEvent{EventType::flagsChanged, event_flag::command}));
    world_->releaseKey(ModifierKey::command);
    ASSERT_TRUE(waitForEvents(2));
    EXPECT_EQ(recorder_.events.back(), (TapEvent{EventType::flagsChanged, 0}));
}

TEST_P(EventTapContract, ButtonAndMotionCarryTheModifiersHeld) {
    install();
    world_->moveTo({200, 200});
    world_->pressKey(ModifierKey::option);
    ASSERT_TRUE(waitForEvents(1));
    world_->pressButton();
    ASSERT_TRUE(waitForEvents(2));
    world_->moveTo({230, 230});
    ASSERT_TRUE(waitForEvents(3));
    world_->releaseButton();
    ASSERT_TRUE(waitForEvents(4));
    world_->releaseKey(ModifierKey::option);
    ASSERT_TRUE(waitForEvents(5));
    EXPECT_EQ(recorder_.events, (std::vector<TapEvent>{{EventType::flagsChanged, event_flag::option},
                                                       {EventType::leftMouseDown, event_flag::option},
                                                       {EventType::leftMouseDragged, event_flag::option},
                                                       {EventType::leftMouseUp, event_flag::option},
                                                       {EventType::flagsChanged, 0}}));
}

TEST_P(EventTapContract, WholeDragKeepsItsOrderWhenItQueuedUp) {
    install();
    world_->moveTo({200, 200});
    world_->pressButton();
    world_->moveTo({240, 240});
    world_->pressKey(ModifierKey::command);
    world_->moveTo({280, 280});
    world_->releaseButton();
    world_->releaseKey(ModifierKey::command);
    EXPECT_TRUE(world_->waitUntil([this] { return recorder_.count(EventType::flagsChanged) == 2; }));
    std::vector<EventType> order;
    for (const TapEvent& event : recorder_.events) {
        if (event.type != EventType::leftMouseDragged) {
            order.push_back(event.type);
        }
    }
    EXPECT_EQ(order, (std::vector<EventType>{EventType::leftMouseDown, EventType::flagsChanged,
                                             EventType::leftMouseUp, EventType::flagsChanged}));
    EXPECT_NE(recorder_.events.front().type, EventType::leftMouseDragged);
    EXPECT_EQ(recorder_.places.back(), (Point{280, 280}));
}

TEST_P(EventTapContract, OtherButtonsWheelAndLettersAreNotSeen) {
    install();
    world_->moveTo({200, 200});
    world_->clickSecondaryButton();
    world_->turnWheel();
    world_->typeLetter();
    mark();
    ASSERT_TRUE(waitForEvents(2));
    EXPECT_EQ(recorder_.events, markEvents());
}

TEST_P(EventTapContract, OnlyTheWantedTypesAreDelivered) {
    install(std::uint64_t{1} << static_cast<std::uint32_t>(EventType::flagsChanged));
    world_->pressButton();
    world_->moveTo({240, 240});
    world_->releaseButton();
    mark();
    ASSERT_TRUE(waitForEvents(2));
    EXPECT_EQ(recorder_.events, markEvents());
}

TEST_P(EventTapContract, TapMayBeDroppedFromWithinItsOwnCallback) {
    install();
    recorder_.onEvent = [this] { drop(); };
    world_->pressButton();
    ASSERT_TRUE(waitForEvents(1));
    world_->moveTo({240, 240});
    world_->releaseButton();
    world_->settle();
    EXPECT_EQ(recorder_.events, (std::vector<TapEvent>{{EventType::leftMouseDown, 0}}));
}

TEST_P(EventTapContract, TapMayBeReplacedFromWithinItsOwnCallback) {
    install();
    recorder_.onEvent = [this] {
        recorder_.onEvent = nullptr;
        drop();
        create();
        platform().addSource(*source_);
        platform().enableTap(*tap_);
    };
    world_->pressButton();
    ASSERT_TRUE(waitForEvents(1));
    world_->settle();
    world_->releaseButton();
    ASSERT_TRUE(waitForEvents(2));
    mark();
    ASSERT_TRUE(waitForEvents(4));
    std::vector<TapEvent> expected = {{EventType::leftMouseDown, 0}, {EventType::leftMouseUp, 0}};
    for (const TapEvent& event : markEvents()) {
        expected.push_back(event);
    }
    EXPECT_EQ(recorder_.events, expected);
}

TEST_P(EventTapContract, PointerIsReadNow) {
    world_->moveTo({321, 123});
    world_->settle();
    EXPECT_EQ(world_->pointer().mouseLocation(), (Point{321, 123}));
    world_->moveTo({12, 600});
    world_->settle();
    EXPECT_EQ(world_->pointer().mouseLocation(), (Point{12, 600}));
}

} // namespace tarvex::contract
