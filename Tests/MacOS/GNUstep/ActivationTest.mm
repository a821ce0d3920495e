#include "Tests/MacOS/GNUstep/ActivationTest.h"

#include "Platform/MacOS/AppKit/ActionTarget.h"

#include <optional>

namespace tarvex::test {
namespace {

TEST_F(ActivationTest, FrontGoesBackAfterTheTurnInWhichTheEditorCloses) {
    auto editor = openEditor();
    endTurn();
    ASSERT_TRUE([NSApp isActive]);
    EXPECT_EQ([first_.get() activations], 0);
    editor.reset();
    EXPECT_EQ([first_.get() activations], 0);
    endTurn();
    EXPECT_EQ([first_.get() activations], 1) << "not let in, or not asked for";
    EXPECT_FALSE([NSApp isActive]);
}

TEST_F(ActivationTest, ProgramThatWasInFrontItselfStaysThere) {
    [NSApp activateIgnoringOtherApps:YES];
    ActivationLoan activation(loop_);
    AppKitViewWindowPlatform views(loop_, activation);
    const int before = [TarvexTestRunningApplication activations];
    auto editor = views.makeViewWindow({.contentRect = {0, 0, 50, 50}, .canBecomeKey = true}, view_);
    editor->makeKeyAndOrderFront();
    endTurn();
    editor.reset();
    endTurn();
    EXPECT_EQ([TarvexTestRunningApplication activations], before);
}

TEST_F(ActivationTest, EditorThatTakesThePlaceOfAnotherHasTheKeyboardAndTheWayBack) {
    auto editor = openEditor();
    endTurn();
    editor.reset();
    editor = openEditor();
    endTurn();
    EXPECT_EQ([first_.get() activations], 0);
    EXPECT_TRUE([NSApp isActive]);
    EXPECT_TRUE([newestWindow() isKeyWindow]);
    editor.reset();
    endTurn();
    EXPECT_EQ([first_.get() activations], 1);
}

TEST_F(ActivationTest, EditorThatOpensAgainBeforeTheProgramIsActiveHasTheWayBack) {
    auto editor = openEditor();
    [NSApp deactivate];
    editor.reset();
    editor = openEditor();
    endTurn();
    EXPECT_EQ([first_.get() activations], 0);
    editor.reset();
    endTurn();
    EXPECT_EQ([first_.get() activations], 1);
}

TEST_F(ActivationTest, FrontGoesBackHoweverAFormWindowCloses) {
    auto window = makeForm("Preferences");
    NSWindow* const native = newestWindow();
    show(*window);
    window->close();
    endTurn();
    EXPECT_EQ([first_.get() activations], 1);
    show(*window);
    [native performClose:nil];
    endTurn();
    EXPECT_EQ([first_.get() activations], 2);
    show(*window);
    window.reset();
    endTurn();
    EXPECT_EQ([first_.get() activations], 3);
}

TEST_F(ActivationTest, WindowThatIsNotOpenGivesNothingBack) {
    auto window = makeForm("Preferences");
    auto editor = views_.makeViewWindow({.contentRect = {0, 0, 50, 50}}, view_);
    [NSApp activateIgnoringOtherApps:YES];
    window->close();
    window.reset();
    editor.reset();
    endTurn();
    EXPECT_EQ([first_.get() activations], 0);
}

TEST_F(ActivationTest, FrontStaysUntilTheLastWindowHasClosedThatItWasTakenFor) {
    const auto window = makeForm("Preferences");
    NSWindow* const native = newestWindow();
    show(*window);
    auto editor = openEditor();
    endTurn();
    editor.reset();
    endTurn();
    EXPECT_EQ([first_.get() activations], 0);
    clickOn(native);
    window->close();
    endTurn();
    EXPECT_EQ([first_.get() activations], 1);
}

TEST_F(ActivationTest, WindowLeftOpenBehindAnotherProgramDoesNotKeepTheFront) {
    const auto about = makeForm("About");
    show(*about);
    [second_.get() comeToFront];
    auto editor = openEditor();
    endTurn();
    editor.reset();
    endTurn();
    EXPECT_EQ([first_.get() activations], 0);
    EXPECT_EQ([second_.get() activations], 1);
    EXPECT_TRUE(about->isVisible());
}

TEST_F(ActivationTest, WindowThatTheToolkitGivesTheKeyboardToDoesNotKeepTheFront) {
    const auto about = makeForm("About");
    NSWindow* const native = newestWindow();
    show(*about);
    [second_.get() comeToFront];
    const auto window = makeForm("Preferences");
    show(*window);
    // GNUstep gives the keyboard to nobody.
    const ActionTarget giving([native](id /*notification*/) { [native makeKeyWindow]; });
    [[NSNotificationCenter defaultCenter] addObserver:giving.object()
                                             selector:ActionTarget::selector()
                                                 name:NSWindowWillCloseNotification
                                               object:nil];
    window->close();
    EXPECT_TRUE([native isKeyWindow]);
    [[NSNotificationCenter defaultCenter] removeObserver:giving.object()];
    endTurn();
    EXPECT_EQ([second_.get() activations], 1);
}

TEST_F(ActivationTest, WindowThatTheUserWentBackToKeepsTheFrontUntilItCloses) {
    const auto about = makeForm("About");
    NSWindow* const native = newestWindow();
    show(*about);
    [second_.get() comeToFront];
    auto editor = openEditor();
    endTurn();
    clickOn(native);
    editor.reset();
    endTurn();
    EXPECT_EQ([second_.get() activations], 0);
    EXPECT_TRUE([NSApp isActive]);
    about->close();
    endTurn();
    EXPECT_EQ([second_.get() activations], 1);
}

TEST_F(ActivationTest, WindowThatHadTheKeyboardKeepsTheFrontAfterTheEditor) {
    const auto about = makeForm("About");
    NSWindow* const native = newestWindow();
    show(*about);
    [second_.get() comeToFront];
    openEditor();
    endTurn();
    clickOn(native);
    auto editor = openEditor();
    endTurn();
    editor.reset();
    endTurn();
    EXPECT_EQ([second_.get() activations], 1) << "the first editor's, before the click";
}

TEST_F(ActivationTest, ProgramThatTheUserTurnedToStaysInFront) {
    const int before = [TarvexTestRunningApplication activations];
    const auto window = makeForm("Preferences");
    show(*window);
    auto editor = openEditor();
    endTurn();
    [second_.get() comeToFront];
    editor.reset();
    window->close();
    endTurn();
    EXPECT_EQ([TarvexTestRunningApplication activations], before);
}

TEST_F(ActivationTest, FrontGoesToTheProgramThatWasThereLast) {
    const auto window = makeForm("Preferences");
    NSWindow* const native = newestWindow();
    show(*window);
    [second_.get() comeToFront];
    clickOn(native);
    window->close();
    endTurn();
    EXPECT_EQ([first_.get() activations], 0);
    EXPECT_EQ([second_.get() activations], 1);
}

TEST_F(ActivationTest, ProgramItselfIsNeverTheOneThatWasThereLast) {
    const auto window = makeForm("Preferences");
    show(*window);
    NSRunningApplication* const current = [NSRunningApplication currentApplication];
    ASSERT_NE(current, nil);
    [[[NSWorkspace sharedWorkspace] notificationCenter]
        postNotificationName:NSWorkspaceDidActivateApplicationNotification
                      object:nil
                    userInfo:[NSDictionary dictionaryWithObject:current forKey:NSWorkspaceApplicationKey]];
    window->close();
    endTurn();
    EXPECT_EQ([first_.get() activations], 1);
}

TEST_F(ActivationTest, LoanThatEndsForgetsWhatWasPosted) {
    std::optional<ActivationLoan> activation(std::in_place, loop_);
    AppKitFormWindowPlatform forms(loop_, *activation);
    auto window = forms.makeFormWindow({"Window", 3, {200, 100}}, owner_);
    show(*window);
    window.reset();
    activation.reset();
    endTurn();
    EXPECT_EQ([first_.get() activations], 0);
}

} // namespace
} // namespace tarvex::test
