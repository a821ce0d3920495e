#pragma once

#include "Tests/MacOS/Fakes/FakeRunLoop.h"

#include <CoreGraphics/CoreGraphics.h>
#include <cstdint>
#include <deque>
#include <vector>

namespace tarvex::fake {

/// What a tap was asked to be.
struct TapRequest {
    CGEventTapLocation location{};
    CGEventTapPlacement placement{};
    CGEventTapOptions options{};
    CGEventMask mask = 0;

    bool operator==(const TapRequest&) const = default;
};

class TapPort;

/// The window server's side of event taps. What a person does waits in each tap until its source hands it
/// out.
class FakeEventTaps {
public:
    /// What a person does, for every tap that wants it; flags are CGEventFlags.
    void send(CGEventType type, std::uint64_t flags = 0);

    /// The system disables every tap and tells it so, with an event or with none.
    void disable(CGEventType notice, bool withEvent);

    /// The user takes the leave to listen away: no new tap, and each old one holds up every event that it
    /// wants until it is removed.
    void revoke();

    /// The system ends every tap's port, or only that of the oldest tap.
    void invalidateAll();
    void invalidateFirst();

    /// The callbacks that the present taps' ports have for it.
    [[nodiscard]] std::vector<CFMachPortInvalidationCallBack> invalidationCallbacks() const;

    /// Has every tap hand out what waits in it, whether its source is on the loop or not.
    void handOut();

    /// How many events were held up by taps that have lost their leave.
    int heldUpEvents = 0;

    /// What Core Graphics does itself when a port ends.
    CFMachPortInvalidationCallBack ownInvalidationCallback = nullptr;

    /// The hardware's own state.
    bool isLeftButtonDown = false;

    /// The answer to a question about listening, and whether a tap is given. The two differ on a system that
    /// has not caught up with its own settings.
    bool answersGranted = true;
    bool givesTaps = true;
    bool refusesSources = false;

    /// What was asked.
    int preflights = 0;
    int accessRequests = 0;
    std::vector<TapRequest> requests;

    /// How many events a callback did not hand back as they came.
    int alteredEvents = 0;

    [[nodiscard]] std::size_t liveTaps() const { return taps_.size(); }

    /// How many taps were switched on by their owner.
    int enabledTaps = 0;

    void add(TapPort* tap);

    void forget(TapPort* tap);

private:
    std::vector<TapPort*> taps_;
};

/// One tap.
class TapPort final : public Port {
public:
    TapPort(CGEventMask mask, CGEventTapCallBack callback, void* userInfo);

    bool performNext() override;

    struct Waiting {
        CGEventType type{};
        std::uint64_t flags = 0;
        bool hasEvent = true;
    };

    CGEventMask mask;
    CGEventTapCallBack callback;
    void* userInfo;
    bool isEnabled = true;
    bool hasLostLeave = false;
    std::deque<Waiting> queue;

protected:
    void wasInvalidated() override;

private:
    bool isInCallback_ = false;
};

} // namespace tarvex::fake
