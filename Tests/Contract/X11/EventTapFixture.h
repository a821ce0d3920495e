#pragma once

#include "Tests/Contract/X11/InputAdapters.h"
#include "Tests/Support/X11/Keyboard.h"
#include "Tests/Support/X11/Pointer.h"
#include "Tests/Support/X11/XServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <memory>
#include <vector>

namespace tarvex::contract {

/// Receives a tap's events, and asks at each where the pointer is.
struct Recorder {
    std::vector<TapEvent> events;
    std::vector<Point> places;
    PointerPlatform* pointer = nullptr;
    std::function<void()> onEvent = [] {};

    static const TapEvent* callback(EventTap* /*proxy*/, EventType /*type*/, const TapEvent* event,
                                    void* refcon) {
        auto& self = *static_cast<Recorder*>(refcon);
        self.events.push_back(*event);
        self.places.push_back(self.pointer->mouseLocation());
        self.onEvent();
        return event;
    }
};

inline std::vector<EventType> typesOf(const std::vector<TapEvent>& events) {
    std::vector<EventType> types;
    std::transform(events.begin(), events.end(), std::back_inserter(types),
                   [](const TapEvent& event) { return event.type; });
    return types;
}

/// A tap of which every event is noted. The pointer starts at (200, 200).
class EventTapTest : public ::testing::Test {
protected:
    explicit EventTapTest(int screens = 1) : server_(1280, 1024, screens) {
        recorder_.pointer = &adapters_.pointer;
        mouse_.moveTo({200, 200});
    }

    void create(EventTapPlatform& taps) {
        EventTapRequest request;
        request.eventMask = 0x1046;
        request.callback = &Recorder::callback;
        request.refcon = &recorder_;
        tap_ = taps.createTap(request);
        ASSERT_NE(tap_, nullptr);
        source_ = taps.createRunLoopSource(*tap_);
        ASSERT_NE(source_, nullptr);
    }

    void install(EventTapPlatform& taps) {
        create(taps);
        taps.addSource(*source_);
        taps.enableTap(*tap_);
        adapters_.catchUp();
    }

    void install() { install(adapters_.taps); }

    [[nodiscard]] std::vector<EventType> types() const { return typesOf(recorder_.events); }

    /// How many events of the X server reach this process while the work is done.
    int eventsDuring(const std::function<void()>& work) {
        adapters_.catchUp();
        work();
        adapters_.awaitServer();
        int count = 0;
        while (const XcbOwned<xcb_generic_event_t> event{xcb_poll_for_event(adapters_.connection->get())}) {
            ++count;
        }
        return count;
    }

    test::XServer server_;
    XInputAdapters adapters_{server_.displayName()};
    test::XClient other_{server_.displayName()};
    test::Pointer mouse_{server_.displayName()};
    test::Keyboard keyboard_{server_.displayName()};
    Recorder recorder_;
    std::unique_ptr<EventTap> tap_;
    std::unique_ptr<RunLoopSource> source_;
};

inline const std::vector<EventType> click{EventType::leftMouseDown, EventType::leftMouseUp};
inline const std::vector<EventType> drag{EventType::leftMouseDown, EventType::leftMouseDragged,
                                         EventType::leftMouseUp};

} // namespace tarvex::contract
