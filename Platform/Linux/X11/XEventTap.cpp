#include "Platform/Linux/X11/XEventTap.h"

#include "Platform/Linux/X11/XkbProtocol.h"

#include <xcb/xinput.h>

#include <algorithm>
#include <utility>

namespace tarvex {

namespace {

constexpr std::uint32_t primaryButton = 1;
constexpr std::uint32_t buttonEvents =
    XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE;

bool holdsButton(const XPointer::Snapshot& pointer) {
    return (pointer.mask & XCB_KEY_BUT_MASK_BUTTON_1) != 0;
}

} // namespace

XEventTap::XEventTap(XConnection& connection, XEventPump& pump, XPointer& pointer, MotionPace pace,
                     const EventTapRequest& request)
    : connection_(&connection),
      pointer_(&pointer),
      pump_(&pump),
      pace_(pace),
      request_(request),
      modifierMap_(connection),
      buttonMap_(connection),
      inputOpcode_(connection.extension(xcb_input_id)->major_opcode),
      keyboardEvent_(connection.extension(xcb_xkb_id)->first_event) {}

XEventTap::~XEventTap() {
    stop();
}

void XEventTap::setOnRunLoop(bool isOnRunLoop) {
    isOnRunLoop_ = isOnRunLoop;
    if (isOnRunLoop_) {
        start();
    } else {
        stop();
    }
}

void XEventTap::start() {
    if (!isOnRunLoop_ || isListening()) {
        return;
    }
    subscriptions_ = {
        pump_->subscribe(XCB_GE_GENERIC, [this](const xcb_generic_event_t& event) { handleInput(event); }),
        pump_->subscribe(keyboardEvent_, [this](const xcb_generic_event_t& event) { handleKeyboard(event); }),
        pump_->subscribe(XCB_MAPPING_NOTIFY,
                         [this](const xcb_generic_event_t& event) { handleMappingChange(event); }),
        pump_->subscribeTurnEnd([this] { handleTurnEnd(); })};
    modifierMap_.invalidate();
    buttonMap_.invalidate();
    pointer_->beginPresses();
    selectModifiers(true);
    selectInput(XCB_INPUT_DEVICE_ALL, XCB_INPUT_XI_EVENT_MASK_HIERARCHY);
    // Listened to before the pointer is looked at, so that nothing goes by unseen in between. What is held by
    // then was not seen to be pressed, but its release will be.
    selectInput(XCB_INPUT_DEVICE_ALL_MASTER, buttonEvents);
    isButtonConfirmed_ = holdsButton(pointer_->refresh());
    setButtonDown(isButtonConfirmed_);
    flags_ = modifierMap_.eventFlags(pointer_->snapshot().mask);
    connection_->flush();
}

void XEventTap::stop() {
    if (!isListening()) {
        return;
    }
    subscriptions_ = {};
    isMotionPending_ = false;
    paceTimer_.reset();
    selectInput(XCB_INPUT_DEVICE_ALL_MASTER, 0);
    selectInput(XCB_INPUT_DEVICE_ALL, 0);
    selectModifiers(false);
    pointer_->endPresses();
    connection_->flush();
}

void XEventTap::handleInput(const xcb_generic_event_t& event) {
    const auto& generic = reinterpret_cast<const xcb_ge_generic_event_t&>(event);
    if (generic.extension != inputOpcode_) {
        return;
    }
    switch (generic.event_type) {
    case XCB_INPUT_RAW_MOTION:
        isMotionPending_ = isMotionPending_ || (isButtonDown_ && !isMotionPaused_);
        break;
    case XCB_INPUT_RAW_BUTTON_PRESS:
    case XCB_INPUT_RAW_BUTTON_RELEASE: {
        const auto& button = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
        const bool isPress = generic.event_type == XCB_INPUT_RAW_BUTTON_PRESS;
        if (buttonMap_.logicalButton(button.detail, button.sourceid) == primaryButton) {
            handleButton(isPress, button.sourceid, button.time);
        } else if (isPress) {
            pointer_->passOverPress(button.time);
        }
        break;
    }
    case XCB_INPUT_HIERARCHY:
        // Devices came or went, and the numbers of those that went are given out again. One may have gone
        // with its button down.
        buttonMap_.invalidate();
        isSampleDue_ = isButtonDown_;
        break;
    default:
        break;
    }
}

void XEventTap::handleKeyboard(const xcb_generic_event_t& event) {
    // The kind of event stands where core events have their detail.
    const auto& state = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
    switch (state.xkbType) {
    case XCB_XKB_STATE_NOTIFY:
        handleModifiers(state.mods);
        break;
    case XCB_XKB_MAP_NOTIFY:
    case XCB_XKB_NEW_KEYBOARD_NOTIFY:
        modifierMap_.invalidate();
        break;
    default:
        break;
    }
}

void XEventTap::handleMappingChange(const xcb_generic_event_t& event) {
    if (reinterpret_cast<const xcb_mapping_notify_event_t&>(event).request == XCB_MAPPING_POINTER) {
        buttonMap_.invalidate();
    } else {
        modifierMap_.invalidate();
    }
}

void XEventTap::handleTurnEnd() {
    const bool isReleaseSuspected = std::exchange(isReleaseSuspected_, false);
    if (!std::exchange(isSampleDue_, false) && !isMotionPending_ && !isReleaseSuspected) {
        return;
    }
    const bool isReallyDown = takeSnapshot();
    const bool isReleased = isButtonConfirmed_ && !isReallyDown;
    if (isReleased && !isReleaseSuspected) {
        // As a rule the release has just been read, behind all that came before it, and takes its turn.
        isReleaseSuspected_ = true;
        pump_->repeatTurn();
        return;
    }
    isButtonConfirmed_ = isReallyDown;
    if (!isMotionPending_ && !isReleased) {
        resumeMotion();
        return;
    }
    // The motion led up to the release: what it passed over counts.
    if (!deliverPendingMotion()) {
        return;
    }
    if (!isReleased) {
        pauseMotion();
        return;
    }
    // The release went by unseen.
    setButtonDown(false);
    static_cast<void>(deliver(EventType::leftMouseUp));
}

void XEventTap::pauseMotion() {
    if (pace_.mainLoop == nullptr || !isButtonDown_) {
        return;
    }
    if (!std::exchange(isMotionPaused_, true)) {
        selectInput(XCB_INPUT_DEVICE_ALL_MASTER, buttonEvents);
    }
    const std::chrono::duration<double> interval = pace_.interval;
    paceTimer_ = pace_.mainLoop->scheduleOnce(interval.count(), [this] {
        XEventTap& tap = *this;
        tap.isSampleDue_ = true;
        // This ends the action's own life.
        tap.paceTimer_.reset();
        tap.pump_->processQueued();
    });
}

void XEventTap::resumeMotion() {
    selectInput(XCB_INPUT_DEVICE_ALL_MASTER, buttonEvents | XCB_INPUT_XI_EVENT_MASK_RAW_MOTION);
    // What moves between the last look and this one is told of by nobody.
    static_cast<void>(takeSnapshot());
    isMotionPaused_ = false;
    if (isMotionPending_) {
        handleTurnEnd();
    }
}

void XEventTap::handleButton(bool isPress, xcb_input_device_id_t device, xcb_timestamp_t time) {
    if (!isPress && !isButtonDown_) {
        return;
    }
    if (isPress) {
        handlePress(device, time);
    } else {
        handleRelease(device);
    }
}

void XEventTap::handlePress(xcb_input_device_id_t device, xcb_timestamp_t time) {
    // The button of a pointer that several devices move is down from the first one's press to the last one's
    // release, and nobody else hears of those in between. Two presses of one device are another matter: a
    // release went by unseen.
    const bool isHeldHere = std::find(holders_.begin(), holders_.end(), device) != holders_.end();
    if (!holders_.empty() && !isHeldHere) {
        pointer_->passOverPress(time);
        holders_.push_back(device);
        return;
    }
    // Motion is listened to before the pointer is looked at, so that none goes by unseen in between.
    setButtonDown(true);
    // Motion that is delivered first must not end the snapshot of the press.
    const XPointer::Hold hold(*pointer_);
    const bool isReallyDown = holdsButton(pointer_->refreshAtPress(time));
    if (!pointer_->snapshot().isOnScreen) {
        // Every screen of the server hears of every press.
        isMotionPending_ = false;
        setButtonDown(false);
        return;
    }
    if (!deliverPendingMotion()) {
        return;
    }
    isButtonConfirmed_ = isReallyDown;
    holders_ = {device};
    static_cast<void>(deliver(EventType::leftMouseDown));
}

void XEventTap::handleRelease(xcb_input_device_id_t device) {
    std::erase(holders_, device);
    const bool isReallyDown = takeSnapshot();
    if (!holders_.empty() && isReallyDown) {
        return;
    }
    if (!deliverPendingMotion()) {
        return;
    }
    setButtonDown(false);
    static_cast<void>(deliver(EventType::leftMouseUp));
}

void XEventTap::handleModifiers(std::uint32_t modifiers) {
    const std::uint64_t flags = modifierMap_.eventFlags(modifiers);
    if (flags == flags_) {
        return;
    }
    static_cast<void>(takeSnapshot());
    if (!deliverPendingMotion()) {
        return;
    }
    flags_ = flags;
    static_cast<void>(deliver(EventType::flagsChanged));
}

bool XEventTap::takeSnapshot() {
    const XPointer::Snapshot before = pointer_->snapshot();
    const XPointer::Snapshot& now = pointer_->refresh();
    const bool hasMoved = now.x != before.x || now.y != before.y;
    isMotionPending_ = isMotionPending_ || (isButtonDown_ && hasMoved);
    return holdsButton(now);
}

void XEventTap::setButtonDown(bool isDown) {
    isButtonDown_ = isDown;
    holders_.clear();
    isMotionPaused_ = false;
    isSampleDue_ = false;
    isReleaseSuspected_ = false;
    paceTimer_.reset();
    selectInput(XCB_INPUT_DEVICE_ALL_MASTER,
                isDown ? buttonEvents | XCB_INPUT_XI_EVENT_MASK_RAW_MOTION : buttonEvents);
}

bool XEventTap::deliverPendingMotion() {
    return !std::exchange(isMotionPending_, false) || deliver(EventType::leftMouseDragged);
}

bool XEventTap::deliver(EventType type) {
    if (request_.callback == nullptr || (request_.eventMask >> static_cast<std::uint32_t>(type) & 1U) == 0) {
        return true;
    }
    const std::weak_ptr<const bool> life = life_;
    const XPointer::Hold hold(*pointer_);
    const TapEvent event{type, flags_};
    request_.callback(this, type, &event, request_.refcon);
    return !life.expired() && isListening();
}

void XEventTap::selectInput(std::uint16_t device, std::uint32_t eventMask) {
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } const selection{{device, 1}, eventMask};

    connection_->discard(
        xcb_input_xi_select_events_checked(connection_->get(), connection_->root(), 1, &selection.head));
}

void XEventTap::selectModifiers(bool isWanted) {
    // The notices of a changed keyboard map are rare and may serve others on this connection: they stay.
    constexpr std::uint16_t mapEvents =
        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr std::uint16_t mapParts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events_details_t details{};
    details.affectNewKeyboard = XCB_XKB_NKN_DETAIL_KEYCODES;
    details.newKeyboardDetails = XCB_XKB_NKN_DETAIL_KEYCODES;
    details.affectState = XCB_XKB_STATE_PART_MODIFIER_STATE;
    details.stateDetails = isWanted ? XCB_XKB_STATE_PART_MODIFIER_STATE : 0;
    connection_->discard(xcb_xkb_select_events_aux_checked(connection_->get(), XCB_XKB_ID_USE_CORE_KBD,
                                                           mapEvents | XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0, 0,
                                                           mapParts, mapParts, &details));
}

} // namespace tarvex
