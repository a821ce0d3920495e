#include "Tests/Support/X11/Keyboard.h"
#include "Tests/Support/X11/Pointer.h"
#include "Tests/Support/X11/TarvexProgram.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace tarvex::test {
namespace {

TEST(SystemLimits, ALogThatMayNotGrowEndsNothing) {
    XServer server;
    // The shell's limit counts blocks; none is granted.
    const std::filesystem::path limited = server.scratch().write(
        "limited", "#!/bin/sh\nulimit -f 0\nexec '" + std::string(TARVEX_PROGRAM) + "'\n");
    std::filesystem::permissions(limited, std::filesystem::perms::owner_all);
    TarvexProgram tarvex(server, limited.string());
    tarvex.start();
    tarvex.allowOnStandardError("SnapController.snapAndHide: activeWindow=nil");
    Pointer pointer(server.displayName());
    Keyboard keyboard(server.displayName());
    const std::string line = "SnapController.snapAndHide: activeWindow=nil";
    // It announces itself a moment before it observes events, so the gesture is made until it answers.
    const auto isAnswered = [&] {
        pointer.moveTo({300, 300});
        pointer.press();
        keyboard.press(key::super);
        pointer.glideTo({600, 400});
        pointer.release();
        const auto isThere = [&] { return tarvex.process().standardError().find(line) != std::string::npos; };
        const bool isWritten =
            tarvex.process().waitForOutput(isThere, Deadline(std::chrono::milliseconds(500)));
        keyboard.release(key::super);
        return isWritten;
    };
    XClient(server.displayName()).waitUntil(isAnswered, "tarvex answers");
    // The end waits for the log, so that a line which is fatal is so by then.
    tarvex.expectCleanExit();
    EXPECT_EQ(tarvex.log(), "") << "the limit holds";
}

} // namespace
} // namespace tarvex::test
