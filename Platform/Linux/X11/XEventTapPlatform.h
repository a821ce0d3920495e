#pragma once

#include "App/Input/EventTapPlatform.h"
#include "Platform/Linux/X11/XEventPump.h"
#include "Platform/Linux/X11/XEventTap.h"
#include "Platform/Linux/X11/XPointer.h"

#include <memory>
#include <optional>

namespace tarvex {

/// The kind of desktop session that the program runs in.
struct SessionKind {
    /// The X server is a guest of a Wayland compositor and sees the input of X clients only.
    bool isWayland = false;

    /// As the environment of the process says.
    [[nodiscard]] static SessionKind fromEnvironment();
};

/// The event tap of an X11 session. X asks no user for leave, so that access is granted whenever a tap can be
/// made at all: the server needs XInput 2.2 and XKB, and must show all input.
class XEventTapPlatform final : public EventTapPlatform {
public:
    /// All must outlive the platform and its taps.
    XEventTapPlatform(XConnection& connection, XEventPump& pump, XPointer& pointer, SessionKind session,
                      MotionPace pace = {});

    [[nodiscard]] bool preflightListenEventAccess() override;
    [[nodiscard]] bool requestListenEventAccess() override;
    [[nodiscard]] std::unique_ptr<EventTap> createTap(const EventTapRequest& request) override;
    [[nodiscard]] std::unique_ptr<RunLoopSource> createRunLoopSource(EventTap& tap) override;
    void addSource(RunLoopSource& source) override;
    void removeSource(RunLoopSource& source) override;
    void enableTap(EventTap& tap) override;

private:
    [[nodiscard]] bool canListen();
    [[nodiscard]] bool askServer();

    XConnection* connection_;
    XEventPump* pump_;
    XPointer* pointer_;
    SessionKind session_;
    MotionPace pace_;
    /// A server does not change in this; asked once.
    std::optional<bool> serverShowsInput_;
};

} // namespace tarvex
