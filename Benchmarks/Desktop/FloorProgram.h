#pragma once

#include "Tests/Support/X11/ChildProcess.h"
#include "Tests/Support/X11/XClient.h"
#include "Tests/Support/X11/XServer.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>

namespace tarvex::benchmark {

/// A bare client that does the least that a task needs, as a process of its own, since the program is one
/// too. Throws std::runtime_error when it does not start or does not answer.
class FloorProgram {
public:
    FloorProgram(const test::XServer& server, const std::string& path);

    /// Gives it a command and waits until it has carried it out.
    void command(const std::array<std::uint32_t, 5>& words);

    [[nodiscard]] pid_t pid() const { return process_.pid(); }

private:
    [[nodiscard]] std::uint32_t doneCount();

    test::ChildProcess process_;
    test::XClient client_;
    xcb_window_t window_ = XCB_NONE;
};

/// Starts the program that makes one QApplication and no window, and waits until it is ready. Throws
/// std::runtime_error when it does not start.
[[nodiscard]] std::unique_ptr<test::ChildProcess> startWidgetsFloor(const test::XServer& server,
                                                                    const std::string& path);

} // namespace tarvex::benchmark
