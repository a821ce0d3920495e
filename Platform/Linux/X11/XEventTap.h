#pragma once

#include "App/Input/EventTapPlatform.h"
#include "App/Toolkit/MainLoop.h"
#include "Platform/Linux/X11/XEventPump.h"
#include "Platform/Linux/X11/XModifierMap.h"
#include "Platform/Linux/X11/XPointer.h"
#include "Platform/Linux/X11/XPointerButtonMap.h"

#include <xcb/xinput.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

namespace tarvex {

/// How often motion is handed on at most. A mouse may report eight times as often as a display shows
/// pictures, and nobody sees the selection change in between.
struct MotionPace {
    /// Must outlive the tap; null to hand on every motion as it comes.
    MainLoop* mainLoop = nullptr;
    std::chrono::microseconds interval{3000};
};

/// A tap on the raw events of the X server, which arrive whoever holds the pointer or the keyboard. Motion is
/// asked for only while the first button is down, so that a moving pointer wakes nobody otherwise; what has
/// queued up of it is delivered once, at the newest position. The first motion is delivered at once. Then
/// nothing is heard of motion for the length of the pace, and after that the pointer itself is asked where it
/// is, for as long as it keeps moving: a fast mouse wakes the program no more often than a slow one. Every
/// other event finds the pointer where it is then, with the motion that led there delivered first.
///
/// Modifiers are followed by the server's own notices of its modifier state, in their order among the other
/// events. A key that is let go while another client holds the keyboard is therefore noticed, and one that is
/// let go after the button does not reach back to it.
class XEventTap final : public EventTap {
public:
    /// The server must have XInput 2.2 and XKB, and this client must have said so. All must outlive the tap.
    XEventTap(XConnection& connection, XEventPump& pump, XPointer& pointer, MotionPace pace,
              const EventTapRequest& request);
    XEventTap(const XEventTap&) = delete;
    XEventTap& operator=(const XEventTap&) = delete;
    XEventTap(XEventTap&&) = delete;
    XEventTap& operator=(XEventTap&&) = delete;
    ~XEventTap() override;

    /// Events are delivered while the tap is on the run loop. Waits for the server, so that none is missed
    /// from then on.
    void setOnRunLoop(bool isOnRunLoop);

private:
    void start();
    void stop();

    [[nodiscard]] bool isListening() const { return subscriptions_.front() != nullptr; }

    void handleInput(const xcb_generic_event_t& event);
    void handleKeyboard(const xcb_generic_event_t& event);
    void handleMappingChange(const xcb_generic_event_t& event);
    void handleTurnEnd();
    void handleButton(bool isPress, xcb_input_device_id_t device, xcb_timestamp_t time);
    void handlePress(xcb_input_device_id_t device, xcb_timestamp_t time);
    void handleRelease(xcb_input_device_id_t device);
    void handleModifiers(std::uint32_t modifiers);

    /// Stops listening to motion until the timer asks for the pointer.
    void pauseMotion();
    /// Listens to motion again; what happened until then is delivered.
    void resumeMotion();
    /// One question to the server; true when it says that the first button is down. A pointer that has moved
    /// in a drag leaves motion pending, also when nobody told of it: motion is not listened to all the time,
    /// and that of a pointer which another program puts elsewhere is never announced.
    [[nodiscard]] bool takeSnapshot();
    void setButtonDown(bool isDown);
    /// Both give false when the callback destroyed the tap or took it off the run loop.
    [[nodiscard]] bool deliverPendingMotion();
    [[nodiscard]] bool deliver(EventType type);

    void selectInput(std::uint16_t device, std::uint32_t eventMask);
    void selectModifiers(bool isWanted);

    XConnection* connection_;
    XPointer* pointer_;
    XEventPump* pump_;
    MotionPace pace_;
    EventTapRequest request_;
    XModifierMap modifierMap_;
    XPointerButtonMap buttonMap_;
    std::uint8_t inputOpcode_ = 0;
    std::uint8_t keyboardEvent_ = 0;
    std::array<std::unique_ptr<XEventPump::Subscription>, 4> subscriptions_;
    /// Ends with the tap, which tells a handler that the callback destroyed it.
    std::shared_ptr<const bool> life_ = std::make_shared<const bool>(true);
    std::uint64_t flags_ = 0;
    bool isOnRunLoop_ = false;
    bool isButtonDown_ = false;
    /// The devices whose presses hold it down, as far as they were seen.
    std::vector<xcb_input_device_id_t> holders_;
    /// The server's own state has shown the button down since the press. That is the state of one pointer,
    /// and the press may be another one's.
    bool isButtonConfirmed_ = false;
    bool isMotionPending_ = false;
    bool isMotionPaused_ = false;
    /// The server showed the button up, and nobody has told of its release yet.
    bool isReleaseSuspected_ = false;
    /// The pause is over.
    bool isSampleDue_ = false;
    std::unique_ptr<Timer> paceTimer_;
};

} // namespace tarvex
