#include "Platform/MacOS/AppKit/AppKitFormWindowPlatform.h"
#include "Tests/Contract/RecordingFormOwner.h"
#include "Tests/MacOS/GNUstep/AppKitTest.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tarvex::test {
namespace {

constexpr NSUInteger command = NSEventModifierFlagCommand;

/// A window whose controls' order is not that of their places.
class FormKeyboardTest : public AppKitTest {
protected:
    FormKeyboardTest() {
        owner_.add(ControlKind::label, "label", {20, 60, 90, 22});
        owner_.add(ControlKind::pushButton, "low", {20, 20, 90, 30});
        owner_.add(ControlKind::pushButton, "high", {20, 150, 90, 30});
        owner_.add(ControlKind::pushButton, "middle", {20, 100, 90, 30});
        window_ = platform_.makeFormWindow({"Window", 3, {200, 200}}, owner_);
        native_ = newestWindow();
        show();
    }

    void show() {
        window_->makeKeyAndOrderFront();
        endTurn();
    }

    void press(NSUInteger flags, NSString* characters) {
        [NSApp sendEvent:keyEvent(native_, 13, flags, characters)];
        endTurn();
    }

    /// The text of the control that has the keyboard.
    std::string keyControl() {
        NSResponder* const responder = [native_ firstResponder];
        return [responder isKindOfClass:[NSButton class]]
                   ? [[static_cast<NSButton*>(responder) title] UTF8String]
                   : "none";
    }

    contract::RecordingFormOwner owner_;
    AppKitFormWindowPlatform platform_{loop_, activation_};
    std::unique_ptr<FormWindow> window_;
    NSWindow* native_ = nil;
};

TEST_F(FormKeyboardTest, CommandWClosesTheWindow) {
    press(command, @"w");
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(owner_.closings, 1);
    show();
    press(command | NSEventModifierFlagCapsLock, @"W");
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(owner_.closings, 2);
}

TEST_F(FormKeyboardTest, NothingElseCloses) {
    const std::vector<std::pair<NSUInteger, NSString*>> presses{{command | NSEventModifierFlagShift, @"w"},
                                                                {command | NSEventModifierFlagOption, @"w"},
                                                                {command | NSEventModifierFlagControl, @"w"},
                                                                {NSEventModifierFlagShift, @"w"},
                                                                {NSEventModifierFlagOption, @"w"},
                                                                {NSEventModifierFlagControl, @"w"},
                                                                {command, @"q"},
                                                                {command, @"ww"},
                                                                {command, @""}};
    for (const auto& [flags, characters] : presses) {
        press(flags, characters);
        EXPECT_EQ(owner_.closings, 0) << flags << " " << [characters UTF8String];
    }
    // GNUstep's windows take a letter alone, which nobody else wants, for one with Command.
    EXPECT_FALSE([native_ performKeyEquivalent:keyEvent(native_, 13, 0, @"w")]);
    EXPECT_TRUE(window_->isVisible());
}

TEST_F(FormKeyboardTest, FirstControlOfTheFormHasTheKeyboardFirst) {
    EXPECT_EQ(keyControl(), "low");
}

TEST_F(FormKeyboardTest, TabulatorGoesTheWayOfTheFormFromTheFirstShowingOn) {
    std::string way;
    for (int presses = 0; presses < 4; ++presses) {
        press(0, @"\t");
        way += keyControl() + " ";
    }
    EXPECT_EQ(way, "high middle low high ");
}

TEST_F(FormKeyboardTest, WindowDoesNotArrangeItsControlsItself) {
    EXPECT_FALSE([native_ autorecalculatesKeyViewLoop]);
    EXPECT_EQ([native_ initialFirstResponder], [[[native_ contentView] subviews] objectAtIndex:1]);
}

TEST_F(FormKeyboardTest, ControlThatNobodyMayUseIsNotTheFirst) {
    owner_.control("low").isEnabled = false;
    owner_.control("high").isHidden = true;
    window_->setNeedsLayout();
    endTurn();
    EXPECT_EQ([native_ initialFirstResponder], [[[native_ contentView] subviews] objectAtIndex:3]);
    owner_.control("low").isEnabled = true;
    window_->setNeedsLayout();
    endTurn();
    EXPECT_EQ([native_ initialFirstResponder], [[[native_ contentView] subviews] objectAtIndex:1]);
}

TEST_F(FormKeyboardTest, FirstClickOnAButtonOnlyActivates) {
    NSView* const button = [[[native_ contentView] subviews] objectAtIndex:1];
    EXPECT_FALSE([button acceptsFirstMouse:mouseEvent(NSLeftMouseDown, native_, {65, 35})]);
}

} // namespace
} // namespace tarvex::test
