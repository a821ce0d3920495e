#include "Tests/MacOS/Fakes/FakeEventTaps.h"

#include "Tests/MacOS/Fakes/FakeCoreFoundation.h"
#include "Tests/MacOS/Fakes/FakeMac.h"

#include <algorithm>

namespace tarvex::fake {

namespace {

class Event final : public Object {
public:
    explicit Event(std::uint64_t flags) : Object(eventType, "event"), flags(flags) {}

    std::uint64_t flags;
};

} // namespace

TapPort::TapPort(CGEventMask mask, CGEventTapCallBack callback, void* userInfo)
    : Port(machPortType, "event tap"), mask(mask), callback(callback), userInfo(userInfo) {}

void TapPort::wasInvalidated() {
    if (isInCallback_) {
        mac().heap.noteMisuse("a tap was invalidated in its own callback");
    }
    queue.clear();
    mac().eventTaps.forget(this);
}

bool TapPort::performNext() {
    if (queue.empty()) {
        return false;
    }
    const Waiting next = queue.front();
    queue.pop_front();
    Heap& heap = mac().heap;
    const auto* event = next.hasEvent ? heap.make<Event>(next.flags) : nullptr;
    const auto reference = referenceTo<CGEventRef>(event);
    isInCallback_ = true;
    if (callback(nullptr, next.type, reference, userInfo) != reference) {
        ++mac().eventTaps.alteredEvents;
    }
    isInCallback_ = false;
    if (event != nullptr) {
        heap.release(event);
    }
    return true;
}

void FakeEventTaps::send(CGEventType type, std::uint64_t flags) {
    if (type == kCGEventLeftMouseDown || type == kCGEventLeftMouseUp) {
        isLeftButtonDown = type == kCGEventLeftMouseDown;
    }
    for (TapPort* tap : taps_) {
        const bool isWanted = tap->isEnabled && (tap->mask & (CGEventMask{1} << type)) != 0;
        if (isWanted && tap->hasLostLeave) {
            ++heldUpEvents;
        } else if (isWanted) {
            tap->queue.push_back({type, flags, true});
        }
    }
}

void FakeEventTaps::disable(CGEventType notice, bool withEvent) {
    for (TapPort* tap : taps_) {
        tap->isEnabled = false;
        tap->queue.push_back({notice, kCGEventFlagMaskCommand, withEvent});
    }
}

void FakeEventTaps::revoke() {
    answersGranted = false;
    givesTaps = false;
    for (TapPort* tap : taps_) {
        tap->hasLostLeave = true;
    }
}

void FakeEventTaps::invalidateAll() {
    const std::vector<TapPort*> present = taps_;
    for (TapPort* tap : present) {
        tap->invalidate();
    }
}

void FakeEventTaps::invalidateFirst() {
    taps_.front()->invalidate();
}

std::vector<CFMachPortInvalidationCallBack> FakeEventTaps::invalidationCallbacks() const {
    std::vector<CFMachPortInvalidationCallBack> callbacks;
    for (const TapPort* tap : taps_) {
        callbacks.push_back(tap->invalidationCallback);
    }
    return callbacks;
}

void FakeEventTaps::handOut() {
    const std::vector<TapPort*> present = taps_;
    for (TapPort* tap : present) {
        while (tap->performNext()) {
        }
    }
}

void FakeEventTaps::add(TapPort* tap) {
    mac().heap.retain(tap);
    taps_.push_back(tap);
}

void FakeEventTaps::forget(TapPort* tap) {
    std::erase(taps_, tap);
    mac().heap.release(tap);
}

} // namespace tarvex::fake

using namespace tarvex::fake;

extern "C" {

bool CGPreflightListenEventAccess(void) {
    ++mac().eventTaps.preflights;
    return mac().eventTaps.answersGranted;
}

bool CGRequestListenEventAccess(void) {
    ++mac().eventTaps.accessRequests;
    return mac().eventTaps.answersGranted;
}

CFMachPortRef CGEventTapCreate(CGEventTapLocation location, CGEventTapPlacement placement,
                               CGEventTapOptions options, CGEventMask mask, CGEventTapCallBack callback,
                               void* userInfo) {
    FakeEventTaps& taps = mac().eventTaps;
    taps.requests.push_back({location, placement, options, mask});
    if (!taps.givesTaps) {
        return nullptr;
    }
    auto* tap = mac().heap.make<TapPort>(mask, callback, userInfo);
    tap->invalidationCallback = taps.ownInvalidationCallback;
    taps.add(tap);
    return referenceTo<CFMachPortRef>(tap);
}

void CGEventTapEnable(CFMachPortRef tap, bool isEnabled) {
    if (auto* object = mac().heap.as<TapPort>(tap, "CGEventTapEnable")) {
        object->isEnabled = isEnabled;
        mac().eventTaps.enabledTaps += isEnabled ? 1 : 0;
    }
}

bool CGEventSourceButtonState(CGEventSourceStateID state, CGMouseButton button) {
    if (state != kCGEventSourceStateHIDSystemState || button != kCGMouseButtonLeft) {
        mac().heap.noteMisuse("CGEventSourceButtonState of another button or state");
    }
    return mac().eventTaps.isLeftButtonDown;
}

CGEventFlags CGEventGetFlags(CGEventRef event) {
    const auto* object = mac().heap.as<const Event>(event, "CGEventGetFlags");
    return static_cast<CGEventFlags>(object == nullptr ? 0 : object->flags);
}
}
