#pragma once

#include "App/Input/EventTapPlatform.h"
#include "App/Toolkit/PointerPlatform.h"
#include "Tests/Contract/ContractWorld.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace tarvex::contract {

enum class ModifierKey : std::uint8_t { shift, control, option, command };

/// A desktop with a mouse and a keyboard, which at the start rests: no button or key is held, no lock is on,
/// and the program may listen. Points are in screen space (y up), on whole points, on a screen at least 1000
/// by 700 points large with its bottom-left corner at the origin.
class EventTapWorld : public ContractWorld {
public:
    virtual EventTapPlatform& platform() = 0;
    virtual PointerPlatform& pointer() = 0;

    /// A platform that grants no tap, as on a system that lacks what the tap is made of.
    virtual std::unique_ptr<EventTapPlatform> makeRefusingPlatform() = 0;

    /// What a person does. None of these lets the main loop run.
    virtual void pressButton() = 0;
    virtual void releaseButton() = 0;
    virtual void moveTo(Point point) = 0;
    virtual void pressKey(ModifierKey key) = 0;
    virtual void releaseKey(ModifierKey key) = 0;

    /// Presses and releases the other mouse button; turns the wheel by one notch; types a letter.
    virtual void clickSecondaryButton() = 0;
    virtual void turnWheel() = 0;
    virtual void typeLetter() = 0;

    /// Switches Caps Lock; the world switches it off again at its end.
    virtual void toggleCapsLock() = 0;
};

/// Receives a tap's events.
struct TapRecorder {
    std::vector<TapEvent> events;
    std::vector<Point> places;
    PointerPlatform* pointer = nullptr;
    std::function<void()> onEvent;

    [[nodiscard]] std::size_t count(EventType type) const {
        std::size_t found = 0;
        for (const TapEvent& event : events) {
            found += event.type == type ? 1U : 0U;
        }
        return found;
    }

    static const TapEvent* callback(EventTap* /*proxy*/, EventType type, const TapEvent* event,
                                    void* refcon) {
        auto& self = *static_cast<TapRecorder*>(refcon);
        EXPECT_NE(event, nullptr);
        EXPECT_EQ(event->type, type);
        constexpr std::uint64_t keys =
            event_flag::shift | event_flag::control | event_flag::option | event_flag::command;
        self.events.push_back({type, event->flags & keys});
        self.places.push_back(self.pointer->mouseLocation());
        if (self.onEvent) {
            const std::function<void()> action = self.onEvent;
            action();
        }
        return event;
    }
};

} // namespace tarvex::contract
