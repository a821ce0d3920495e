#pragma once

#include "App/Input/EventTapPlatform.h"
#include "Platform/Linux/X11/XEventPump.h"
#include "Platform/Linux/X11/XEventTap.h"
#include "Platform/Linux/X11/XPointer.h"

#include <memory>

namespace tarvex {

/// The kind of desktop session that the program runs in.
struct SessionKind {
    /// There is a Wayland compositor. The X server need not be its guest: it may be a nested one with a
    /// desktop of its own, and a variable may have strayed in from another session.
    bool isWayland = false;

    /// As the environment of the process says.
    [[nodiscard]] static SessionKind fromEnvironment();
};

/// The event tap of an X11 session. X asks no user for leave, so that access is granted whenever a tap can be
/// made at all: the server needs XInput 2.2 and XKB, and must show all input. The guest of a Wayland
/// compositor, Xwayland, sees the input of X clients only. The server itself tells whether it is one; the
/// kind of session decides where it does not.
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
    [[nodiscard]] bool askServer() const;

    XConnection* connection_;
    XEventPump* pump_;
    XPointer* pointer_;
    SessionKind session_;
    MotionPace pace_;
    /// A server that does goes on doing so; one that does not may yet get its devices.
    bool serverShowsInput_ = false;
};

} // namespace tarvex
