#include "Tests/MacOS/GNUstep/ActivationTest.h"

#include <cstddef>
#include <vector>

namespace tarvex::test {
namespace {

/// Several programs have been in front.
class ActivationLendersTest : public ActivationTest {};

TEST_F(ActivationLendersTest, FrontGoesToTheProgramBeforeTheOneThatHasQuit) {
    [second_.get() comeToFront];
    const auto window = makeForm("Window");
    show(*window);
    [second_.get() quit];
    window->close();
    endTurn();
    EXPECT_EQ([second_.get() requests], 0);
    EXPECT_EQ([first_.get() activations], 1);
}

TEST_F(ActivationLendersTest, FrontGoesToTheProgramBeforeTheOneThatMayNotHaveIt) {
    [second_.get() comeToFront];
    [second_.get() refuse];
    showAndClose();
    EXPECT_EQ([second_.get() requests], 1);
    EXPECT_EQ([first_.get() activations], 1);
}

TEST_F(ActivationLendersTest, ProgramThatCameToTheFrontAgainIsAskedOnce) {
    [second_.get() comeToFront];
    [first_.get() comeToFront];
    [first_.get() refuse];
    showAndClose();
    EXPECT_EQ([first_.get() requests], 1);
    EXPECT_EQ([second_.get() activations], 1);
}

TEST_F(ActivationLendersTest, NobodyIsAskedWhenAllHaveQuit) {
    ActivationLoan activation(loop_);
    AppKitFormWindowPlatform forms(loop_, activation);
    const auto window = forms.makeFormWindow({"Window", 3, {200, 100}}, owner_);
    show(*window);
    const int before = [TarvexTestRunningApplication activations];
    [first_.get() quit];
    window->close();
    endTurn();
    EXPECT_EQ([first_.get() requests], 0);
    EXPECT_EQ([TarvexTestRunningApplication activations], before);
}

TEST_F(ActivationLendersTest, LockedScreenAndPasswordPanelsAreNotGivenTheFront) {
    const auto window = makeForm("Window");
    NSWindow* const native = newestWindow();
    show(*window);
    const Program lock = makeProgram(@"com.apple.loginwindow");
    const Program panel = makeProgram(@"com.apple.SecurityAgent");
    [lock.get() comeToFront];
    [panel.get() comeToFront];
    clickOn(native);
    window->close();
    endTurn();
    EXPECT_EQ([panel.get() requests], 0);
    EXPECT_EQ([lock.get() requests], 0);
    EXPECT_EQ([first_.get() activations], 1);
}

TEST_F(ActivationLendersTest, NoMoreProgramsAreRememberedThanTheLastOnes) {
    std::vector<Program> programs;
    for (std::size_t count = 0; count < ActivationLoan::maximumLenders + 3; ++count) {
        programs.push_back(makeProgram(@"org.tarvex.test"));
        [programs.back().get() comeToFront];
        [programs.back().get() refuse];
    }
    showAndClose();
    int requests = 0;
    for (const Program& program : programs) {
        requests += [program.get() requests];
    }
    EXPECT_EQ(requests, static_cast<int>(ActivationLoan::maximumLenders));
    EXPECT_EQ([programs[2].get() requests], 0);
    EXPECT_EQ([programs[3].get() requests], 1);
}

TEST_F(ActivationLendersTest, ProgramsThatHaveQuitTakeNobodysPlace) {
    for (std::size_t count = 0; count < ActivationLoan::maximumLenders + 3; ++count) {
        const Program program = makeProgram();
        [program.get() comeToFront];
        [program.get() quit];
    }
    showAndClose();
    EXPECT_EQ([first_.get() activations], 1);
}

TEST_F(ActivationLendersTest, ProgramThatWasInFrontFromTheStartIsRemembered) {
    ActivationLoan activation(loop_);
    AppKitFormWindowPlatform forms(loop_, activation);
    const auto window = forms.makeFormWindow({"Window", 3, {200, 100}}, owner_);
    // The user may well turn to this program before it shows anything.
    [NSApp activateIgnoringOtherApps:YES];
    window->makeKeyAndOrderFront();
    endTurn();
    window->close();
    endTurn();
    EXPECT_EQ([first_.get() activations], 1);
}

} // namespace
} // namespace tarvex::test
