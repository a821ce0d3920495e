#pragma once

#include "Tests/Support/X11/ChildProcess.h"
#include "Tests/Support/X11/ManagedWindow.h"
#include "Tests/Support/X11/XServer.h"

#include <string>
#include <vector>

namespace tarvex::test {

/// A real program with one window, under a window manager. The window is shown when the constructor returns.
class RealApplication {
public:
    /// @param arguments the program and its arguments
    RealApplication(const XServer& server, const std::vector<std::string>& arguments);

    /// A terminal, whose size goes in steps of a character cell.
    [[nodiscard]] static std::vector<std::string> xterm();

    [[nodiscard]] ChildProcess& process() { return process_; }

    [[nodiscard]] ManagedWindow window() { return {client_, window_}; }

    [[nodiscard]] XClient& client() { return client_; }

private:
    void awaitWindow(const std::string& program);

    XClient client_;
    std::vector<xcb_window_t> windowsBefore_;
    ChildProcess process_;
    xcb_window_t window_ = XCB_NONE;
};

} // namespace tarvex::test
