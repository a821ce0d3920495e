#pragma once

#include "Tests/Support/X11/ChildProcess.h"
#include "Tests/Support/X11/SessionBus.h"
#include "Tests/Support/X11/XClient.h"
#include "Tests/Support/X11/XServer.h"

#include <memory>
#include <string>

namespace tarvex::test {

enum class WindowManagerKind {
    openbox,
    xfwm4,
    /// xfwm4 that denies the keyboard to windows which nobody asked for.
    xfwm4Strict,
    /// Tiles all windows.
    i3,
    /// The same with a bar of its own (i3bar).
    i3WithBar,
    metacity,
    kwin,
};

/// Such as "openbox"; fit for the name of a test.
[[nodiscard]] std::string nameOf(WindowManagerKind kind);

/// The one of that name. Throws std::runtime_error when there is none.
[[nodiscard]] WindowManagerKind windowManagerOfName(const std::string& name);

/// A window manager on a private X server, with settings of its own. It takes part when the constructor
/// returns; destroying it ends it. Throws std::runtime_error when it does not start.
class WindowManager {
public:
    WindowManager(const XServer& server, WindowManagerKind kind);

    [[nodiscard]] WindowManagerKind kind() const { return kind_; }

    /// Ends it as a crash does; its windows go back to the root window.
    void kill();

    /// Starts it again after kill() and waits until it takes part.
    void start();

    /// Makes it as slow as one on a busy computer: once it has handled what came before this call, it does
    /// nothing until it resumes. It does not hold the server while it pauses.
    void pause();
    void resume();

    /// Returns when it has handled every message and event that the X server sent it before this call.
    void barrier();

private:
    [[nodiscard]] bool isReady();
    /// Whether nobody keeps others from being served by the X server (GrabServer).
    [[nodiscard]] bool isServerFree();
    [[nodiscard]] bool answers(Deadline deadline);
    [[nodiscard]] bool answersAboutFrames(Deadline deadline);
    [[nodiscard]] bool answersAboutItsOffice(Deadline deadline);
    [[nodiscard]] Command makeCommand();

    const XServer* server_;
    WindowManagerKind kind_;
    XClient client_;
    /// For those that do not start without one.
    std::unique_ptr<SessionBus> bus_;
    std::unique_ptr<ChildProcess> process_;
};

} // namespace tarvex::test
