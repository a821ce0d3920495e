#pragma once

#include <cstdint>
#include <memory>

namespace tarvex {

/// Event types of a tap (Apple, CGEventType).
enum class EventType : std::uint32_t {
    leftMouseDown = 1,
    leftMouseUp = 2,
    leftMouseDragged = 6,
    flagsChanged = 12,
    tapDisabledByTimeout = 0xFFFFFFFE,
    tapDisabledByUserInput = 0xFFFFFFFF,
};

/// Bits of an event's modifier flags (Apple, CGEventFlags and NSEvent.ModifierFlags).
namespace event_flag {
inline constexpr std::uint64_t capsLock = 0x10000;
inline constexpr std::uint64_t shift = 0x20000;
inline constexpr std::uint64_t control = 0x40000;
inline constexpr std::uint64_t option = 0x80000;
inline constexpr std::uint64_t command = 0x100000;
} // namespace event_flag

/// One observed event. Where it happened is asked of the PointerPlatform, not of the event.
struct TapEvent {
    EventType type{};
    /// The modifiers held, as event_flag bits.
    std::uint64_t flags = 0;

    bool operator==(const TapEvent&) const = default;
};

/// An installed tap; destroying it removes it, also from within its own callback.
class EventTap {
public:
    EventTap() = default;
    EventTap(const EventTap&) = delete;
    EventTap& operator=(const EventTap&) = delete;
    EventTap(EventTap&&) = delete;
    EventTap& operator=(EventTap&&) = delete;
    virtual ~EventTap() = default;
};

/// What connects a tap to a run loop.
class RunLoopSource {
public:
    RunLoopSource() = default;
    RunLoopSource(const RunLoopSource&) = delete;
    RunLoopSource& operator=(const RunLoopSource&) = delete;
    RunLoopSource(RunLoopSource&&) = delete;
    RunLoopSource& operator=(RunLoopSource&&) = delete;
    virtual ~RunLoopSource() = default;
};

/// Called for every event of a tap, on the main thread. Returns the event that goes on to its receiver.
using EventTapCallback = const TapEvent* (*)(EventTap* proxy, EventType type, const TapEvent* event,
                                             void* refcon);

/// What a tap listens to and how (Apple, CGEventTapCreate).
struct EventTapRequest {
    /// 1 is the session tap.
    std::uint32_t location = 1;
    /// 0 is before existing taps.
    std::uint32_t placement = 0;
    /// 0 is the default, an active filter.
    std::uint32_t options = 0;
    /// Bit (1 << type) for each wanted event type.
    std::uint64_t eventMask = 0;
    EventTapCallback callback = nullptr;
    /// Handed to the callback as it is.
    void* refcon = nullptr;
};

/// Port: observes the mouse button and the modifier keys wherever they are pressed. Each event is delivered
/// once, in order, when the tap's source is on the run loop and the tap is enabled. Motion that queued up is
/// delivered as one event. Nothing throws.
class EventTapPlatform {
public:
    EventTapPlatform() = default;
    EventTapPlatform(const EventTapPlatform&) = delete;
    EventTapPlatform& operator=(const EventTapPlatform&) = delete;
    EventTapPlatform(EventTapPlatform&&) = delete;
    EventTapPlatform& operator=(EventTapPlatform&&) = delete;
    virtual ~EventTapPlatform() = default;

    /// Whether the user lets this program listen.
    [[nodiscard]] virtual bool preflightListenEventAccess() = 0;

    /// Asks the user to let this program listen; true when it may already. Does not wait for the answer.
    [[nodiscard]] virtual bool requestListenEventAccess() = 0;

    /// A new tap; null while the platform refuses. It may be enabled already (Apple, CGEventTapCreate).
    [[nodiscard]] virtual std::unique_ptr<EventTap> createTap(const EventTapRequest& request) = 0;

    /// The source of a tap; null when it cannot be made. The tap must outlive it.
    [[nodiscard]] virtual std::unique_ptr<RunLoopSource> createRunLoopSource(EventTap& tap) = 0;

    /// Puts the source on the main run loop in all common modes, and takes it off again.
    virtual void addSource(RunLoopSource& source) = 0;
    virtual void removeSource(RunLoopSource& source) = 0;

    virtual void enableTap(EventTap& tap) = 0;
};

} // namespace tarvex
