#pragma once

#include "Platform/MacOS/AppKit/AppKitFormWindowPlatform.h"
#include "Platform/MacOS/AppKit/AppKitViewWindowPlatform.h"
#include "Platform/MacOS/AppKit/ObjCHandle.h"
#include "Tests/Contract/RecordingFormOwner.h"
#include "Tests/MacOS/GNUstep/AppKitTest.h"
#include "Tests/MacOS/GNUstep/EmptyView.h"

#include <memory>
#include <string>

namespace tarvex::test {

using Program = ObjCHandle<TarvexTestRunningApplication*>;

/// Two other programs, the first of which is in front, and the windows of this one.
class ActivationTest : public AppKitTest {
protected:
    ActivationTest() { [first_.get() comeToFront]; }

    std::unique_ptr<ViewWindow> openEditor() {
        auto editor = views_.makeViewWindow(
            {.contentRect = {100, 80, 300, 200}, .canBecomeKey = true, .canBecomeMain = true}, view_);
        editor->makeKeyAndOrderFront();
        views_.activateIgnoringOtherApps();
        return editor;
    }

    std::unique_ptr<FormWindow> makeForm(const std::string& title) {
        return forms_.makeFormWindow({title, 3, {200, 100}}, owner_);
    }

    void show(FormWindow& window) {
        window.makeKeyAndOrderFront();
        forms_.activateIgnoringOtherApps();
        endTurn();
    }

    /// The user clicks on a window of this program. GNUstep's needs it also when another one of it has
    /// closed: nobody gives it the keyboard back there.
    void clickOn(NSWindow* window) {
        [NSApp activateIgnoringOtherApps:YES];
        [window makeKeyAndOrderFront:nil];
        endTurn();
    }

    static Program makeProgram(NSString* identifier = nil) {
        return Program::adopt([TarvexTestRunningApplication newWithIdentifier:identifier]);
    }

    /// A window of this program takes the front, and closes.
    void showAndClose() {
        const auto window = makeForm("Window");
        show(*window);
        window->close();
        endTurn();
    }

    Program first_ = makeProgram();
    Program second_ = makeProgram();
    EmptyView view_;
    contract::RecordingFormOwner owner_;
    AppKitViewWindowPlatform views_{loop_, activation_};
    AppKitFormWindowPlatform forms_{loop_, activation_};
};

} // namespace tarvex::test
