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

    /// The user takes the leave to listen away: no new tap, and nothing reaches the old ones.
    void revoke();

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

    void add(TapPort* tap) { taps_.push_back(tap); }

    void forget(TapPort* tap);

private:
    std::vector<TapPort*> taps_;
};

/// One tap.
class TapPort final : public Port {
public:
    TapPort(CGEventMask mask, CGEventTapCallBack callback, void* userInfo);

    void dispose() override;
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
    std::deque<Waiting> queue;
};

} // namespace tarvex::fake
