#pragma once

#include "Platform/MacOS/CoreFoundation/RunLoopMainLoop.h"
#include "Platform/MacOS/Input/MacEventTapPlatform.h"
#include "Tests/MacOS/Fakes/FakeMac.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace tarvex {

/// Receives events, and does what the test wants with each.
struct TapReceiver {
    std::vector<TapEvent> events;
    std::vector<double> times;
    std::function<void()> onEvent;

    static const TapEvent* callback(EventTap* /*proxy*/, EventType type, const TapEvent* event,
                                    void* refcon) {
        auto& self = *static_cast<TapReceiver*>(refcon);
        self.events.push_back({type, event->flags});
        self.times.push_back(fake::mac().runLoop.now());
        if (self.onEvent) {
            self.onEvent();
        }
        return nullptr;
    }
};

/// A tap whose events come to a receiver.
class MacTapTest : public testing::Test {
protected:
    static fake::FakeEventTaps& taps() { return fake::mac().eventTaps; }

    static fake::FakeRunLoop& loop() { return fake::mac().runLoop; }

    void install() {
        EventTapRequest request;
        request.eventMask = 0x1046;
        request.callback = &TapReceiver::callback;
        request.refcon = &receiver_;
        tap_ = platform_.createTap(request);
        ASSERT_NE(tap_, nullptr);
        source_ = platform_.createRunLoopSource(*tap_);
        ASSERT_NE(source_, nullptr);
        platform_.addSource(*source_);
        platform_.enableTap(*tap_);
    }

    void send(CGEventType type, std::uint64_t flags = 0) {
        taps().send(type, flags);
        loop().settle();
    }

    RunLoopMainLoop mainLoop_;
    MacEventTapPlatform platform_{mainLoop_};
    TapReceiver receiver_;
    std::unique_ptr<EventTap> tap_;
    std::unique_ptr<RunLoopSource> source_;
};

} // namespace tarvex
