#include "Tests/EndToEnd/ShellFixture.h"
#include "Tests/Support/X11/SessionBus.h"
#include "Tests/Support/X11/SilentSocket.h"

#include <string>
#include <vector>

namespace tarvex::test {
namespace {

constexpr const char* busVariable = "DBUS_SESSION_BUS_ADDRESS";
const ExitStatus success{0, std::nullopt};

/// Starts of the program while it runs.
class SecondStart : public ShellTest {
protected:
    Desktop& startFirst(const std::vector<std::string>& arguments = {}) {
        DesktopOptions options;
        options.startsTarvex = false;
        Desktop& desktop = start(options);
        paintRoot(desktop);
        desktop.tarvex.setVariable(busVariable, bus_.address());
        desktop.tarvex.start(arguments);
        return desktop;
    }

    /// Starts it once more in the same session and waits until that has ended.
    static ExitStatus startAgain(Desktop& desktop, const std::vector<std::string>& arguments,
                                 std::string* output = nullptr) {
        ChildProcess second(desktop.tarvex.command(arguments));
        const ExitStatus status = second.waitForExit().value_or(ExitStatus{});
        if (output != nullptr) {
            *output = second.standardOutput() + second.standardError();
        } else {
            EXPECT_EQ(second.standardOutput() + second.standardError(), "");
        }
        return status;
    }

    /// A start that finds the first one running and cannot reach it.
    static void expectUnreachable(Desktop& desktop, const std::vector<std::string>& arguments) {
        std::string output;
        EXPECT_EQ(startAgain(desktop, arguments, &output), (ExitStatus{1, std::nullopt}));
        EXPECT_EQ(output, "tarvex: already running, but not to be reached over the session bus\n");
    }

    /// Starts beside the first one all end, and it works.
    static void expectNoNeedOfTheBus(Desktop& desktop) {
        expectUnreachable(desktop, {});
        expectUnreachable(desktop, {"--quit"});
        std::string list;
        EXPECT_EQ(startAgain(desktop, {"--list-displays"}, &list), success);
        EXPECT_NE(list.find("1280x1024"), std::string::npos) << list;
        TestWindow window(desktop.server.displayName());
        snapAndExpect(desktop, window.managed(), rightHalf);
    }

    SessionBus bus_;
};

INSTANTIATE_TEST_SUITE_P(Sessions, SecondStart, plainSessions(), sessionName);

TEST_P(SecondStart, OpensThePreferencesOfTheFirst) {
    Desktop& desktop = startFirst();
    EXPECT_EQ(startAgain(desktop, {}), success);
    awaitPreferences(desktop);
}

TEST_P(SecondStart, AsksTheFirstForWhatItWasAsked) {
    Desktop& desktop = startFirst();
    desktop.tarvex.allowOnStandardError("GridEditorController.showEditor");
    bare_ = std::make_unique<Screenshot>(desktop.steadyScreen());
    focusBefore_ = focus(desktop);
    EXPECT_EQ(startAgain(desktop, {"--open-editor"}), success);
    desktop.client.waitUntil([&] { return isDarkened(desktop); }, "the editor is open");
    desktop.keyboard.tap(key::escape);
    awaitClosed(desktop);
    EXPECT_EQ(startAgain(desktop, {"--open-preferences"}), success);
    awaitPreferences(desktop);
}

TEST_P(SecondStart, EndsTheFirst) {
    Desktop& desktop = startFirst();
    EXPECT_EQ(startAgain(desktop, {"--quit"}), success);
    const auto status = desktop.tarvex.process().waitForExit();
    EXPECT_EQ(status, success);
    expectEndedAlready();
}

TEST_P(SecondStart, ListsTheDisplaysWithoutTheFirst) {
    Desktop& desktop = startFirst();
    std::string list;
    EXPECT_EQ(startAgain(desktop, {"--list-displays"}, &list), success);
    EXPECT_NE(list.find("1280x1024"), std::string::npos) << list;
}

TEST_P(SecondStart, IsKeptOutWithoutASessionBus) {
    Desktop& desktop = start();
    std::string output;
    EXPECT_EQ(startAgain(desktop, {}, &output).code, 1);
    EXPECT_TRUE(output.starts_with("tarvex: ")) << output;
    EXPECT_NE(output.find("already"), std::string::npos) << output;
    EXPECT_EQ(std::count(output.begin(), output.end(), '\n'), 1) << output;
}

TEST_P(SecondStart, TellsOfAFirstThatIsOnNoBus) {
    Desktop& desktop = start();
    desktop.tarvex.setVariable(busVariable, bus_.address());
    expectUnreachable(desktop, {});
    expectUnreachable(desktop, {"--quit"});
    EXPECT_TRUE(desktop.tarvex.process().isRunning());
}

TEST_P(SecondStart, InAnotherXSessionOnTheSameBusIsAFirst) {
    Desktop& desktop = startFirst();
    const XServer server;
    TarvexProgram other(server, TARVEX_PROGRAM);
    for (const char* shared : {busVariable, "XDG_RUNTIME_DIR"}) {
        other.setVariable(shared, desktop.tarvex.command({}).environment.at(shared));
    }
    other.start();
    ChildProcess quit(other.command({"--quit"}));
    EXPECT_EQ(quit.waitForExit(), success);
    EXPECT_EQ(other.process().waitForExit(), success);
    EXPECT_TRUE(desktop.tarvex.process().isRunning());
    EXPECT_FALSE(findWindow(desktop, "Preferences").has_value());
}

TEST_P(SecondStart, AndTheFirstDoWithoutABusThatNeverAnswers) {
    const SilentSocket silent;
    DesktopOptions options;
    options.startsTarvex = false;
    Desktop& desktop = start(options);
    desktop.tarvex.setVariable(busVariable, silent.busAddress());
    desktop.tarvex.start();
    expectNoNeedOfTheBus(desktop);
}

TEST_P(SecondStart, AndTheFirstDoWithoutABusThatHasStopped) {
    Desktop& desktop = startFirst();
    EXPECT_EQ(startAgain(desktop, {}), success);
    awaitPreferences(desktop);
    bus_.freeze();
    desktop.keyboard.tap(key::escape);
    awaitNoWindow(desktop, "Preferences");
    expectNoNeedOfTheBus(desktop);
}

TEST_P(SecondStart, IsTheFirstOnceThatHasEnded) {
    Desktop& desktop = startFirst();
    desktop.tarvex.expectCleanExit();
    desktop.tarvex.start();
    EXPECT_TRUE(desktop.tarvex.process().isRunning());
}

TEST_P(SecondStart, AtTheSameMomentLeavesOne) {
    DesktopOptions options;
    options.startsTarvex = false;
    Desktop& desktop = start(options);
    desktop.tarvex.setVariable(busVariable, bus_.address());
    desktop.tarvex.launch();
    std::vector<std::unique_ptr<ChildProcess>> others;
    for (int index = 0; index < 3; ++index) {
        others.push_back(std::make_unique<ChildProcess>(desktop.tarvex.command({})));
    }
    const auto running = [&] {
        int count = desktop.tarvex.process().isRunning() ? 1 : 0;
        for (const auto& other : others) {
            count += other->isRunning() ? 1 : 0;
        }
        return count;
    };
    desktop.client.waitUntil([&] { return running() == 1; }, "one is left");
    awaitPreferences(desktop);
    EXPECT_EQ(running(), 1);
    EXPECT_EQ(startAgain(desktop, {"--quit"}), success);
    desktop.client.waitUntil([&] { return running() == 0; }, "it has ended");
    EXPECT_EQ(desktop.tarvex.process().waitForExit(), success);
    for (const auto& other : others) {
        EXPECT_EQ(other->waitForExit(), success) << other->standardError();
    }
    expectEndedAlready();
}

} // namespace
} // namespace tarvex::test
