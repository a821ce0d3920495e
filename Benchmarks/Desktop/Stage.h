#pragma once

#include "Benchmarks/Desktop/ZoneLayout.h"
#include "Tests/Support/X11/Compositor.h"
#include "Tests/Support/X11/Keyboard.h"
#include "Tests/Support/X11/Pointer.h"
#include "Tests/Support/X11/TarvexProgram.h"
#include "Tests/Support/X11/TestWindow.h"
#include "Tests/Support/X11/WindowManager.h"
#include "Tests/Support/X11/XServer.h"

#include <memory>
#include <string>

namespace tarvex::benchmark {

/// The programs that are measured.
struct Programs {
    std::string tarvex;
    std::string snapFloor;
    std::string overlayFloor;
    std::string motionFloor;
    std::string widgetsFloor;
};

/// A private desktop with the program on it and one window to drag.
class Stage {
public:
    Stage(const Programs& programs, ZoneLayout layout, test::WindowManagerKind windowManager,
          bool isComposited);

    [[nodiscard]] const test::XServer& server() const { return server_; }

    [[nodiscard]] test::XClient& client() { return client_; }

    [[nodiscard]] test::Pointer& pointer() { return pointer_; }

    [[nodiscard]] test::Keyboard& keyboard() { return keyboard_; }

    [[nodiscard]] test::TestWindow& window() { return window_; }

    [[nodiscard]] test::TarvexProgram& program() { return program_; }

    [[nodiscard]] const ZoneLayout& layout() const { return layout_; }

    /// Puts the window back to where every run starts.
    void sendWindowHome();

    /// Takes the window by its title bar and brings the pointer there, with the button down.
    void drag(test::PixelPoint target);

    /// Returns when the window manager and the program have handled all that happened and wait.
    void settle();

    /// Stops the program, so that a floor has the machine to itself, and lets it go on.
    void freezeProgram();
    void resumeProgram();

private:
    test::XServer server_;
    test::WindowManager windowManager_;
    std::unique_ptr<test::Compositor> compositor_;
    ZoneLayout layout_;
    test::TarvexProgram program_;
    test::XClient client_;
    test::Pointer pointer_;
    test::Keyboard keyboard_;
    test::TestWindow window_;
    bool isFrozen_ = false;
};

/// Such as "openbox" or "openbox with picom".
[[nodiscard]] std::string describe(test::WindowManagerKind windowManager, bool isComposited);

} // namespace tarvex::benchmark
