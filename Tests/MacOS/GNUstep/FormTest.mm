#include "Platform/MacOS/AppKit/AppKitFormWindowPlatform.h"
#include "Tests/MacOS/GNUstep/AppKitTest.h"
#include "Tests/MacOS/GNUstep/UnifiedLog.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tarvex::test {
namespace {

/// Gives the form that it was given and writes down what is used.
class RecordingOwner final : public FormOwner {
public:
    [[nodiscard]] Form form(const Size& contentSize) override {
        ++forms;
        lastSize = contentSize;
        return shown;
    }

    void controlChanged(const std::string& controlId, double value) override {
        used.push_back(controlId + "=" + std::to_string(value));
        onUse();
    }

    Form shown;
    int forms = 0;
    Size lastSize;
    std::vector<std::string> used;
    std::function<void()> onUse = [] {};
};

class FormTest : public AppKitTest {
protected:
    NSWindow* make() {
        window_ = platform_.makeFormWindow({"Preferences", 3, {400, 300}, 3}, owner_);
        native_ = newestWindow();
        return native_;
    }

    NSView* subview(NSUInteger index) {
        NSArray* const views = [[native_ contentView] subviews];
        return index < [views count] ? [views objectAtIndex:index] : nil;
    }

    /// What assistive technology calls the control, or "none". It finds the cell, which is to say the same as
    /// the view.
    std::string spokenName(NSUInteger index) {
        auto* const control = static_cast<NSControl*>(subview(index));
        NSString* const name = [[control cell] accessibilityLabel];
        EXPECT_TRUE(name == [control accessibilityLabel] ||
                    [name isEqualToString:[control accessibilityLabel]]);
        return name == nil ? "none" : [name UTF8String];
    }

    NSWindow* show() {
        NSWindow* const native = make();
        window_->makeKeyAndOrderFront();
        endTurn();
        return native;
    }

    RecordingOwner owner_;
    AppKitFormWindowPlatform platform_{loop_, activation_};
    std::unique_ptr<FormWindow> window_;
    NSWindow* native_ = nil;
};

Control label(const std::string& text) {
    Control control;
    control.kind = ControlKind::label;
    control.id = "label";
    control.frame = {20, 250, 120, 22};
    control.text = text;
    return control;
}

Control slider(double value) {
    Control control;
    control.kind = ControlKind::slider;
    control.id = "slider";
    control.frame = {20, 200, 200, 24};
    control.value = value;
    control.maximumValue = 40;
    return control;
}

Control button(const std::string& controlId, const Rect& frame) {
    Control control;
    control.kind = ControlKind::pushButton;
    control.id = controlId;
    control.frame = frame;
    control.text = "Close";
    return control;
}

Control checkbox(double value) {
    Control control;
    control.kind = ControlKind::checkbox;
    control.id = "checkbox";
    control.frame = {20, 100, 200, 24};
    control.text = "Launch at login";
    control.value = value;
    return control;
}

TEST_F(FormTest, WindowHasItsTitleStyleSizeAndLevel) {
    NSWindow* const native = make();
    EXPECT_STREQ([[native title] UTF8String], "Preferences");
    EXPECT_EQ([native styleMask], 3U);
    EXPECT_EQ([native level], 3);
    EXPECT_FALSE([native isReleasedWhenClosed]);
    EXPECT_EQ([[native contentView] frame].size.width, 400);
    EXPECT_EQ([[native contentView] frame].size.height, 300);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(owner_.forms, 1);
    EXPECT_EQ(owner_.lastSize, (Size{400, 300}));
}

TEST_F(FormTest, ClosingHidesAndShowingBringsBackTheSameWindow) {
    NSWindow* const native = show();
    EXPECT_TRUE(window_->isVisible());
    window_->close();
    EXPECT_FALSE(window_->isVisible());
    window_->makeKeyAndOrderFront();
    EXPECT_TRUE([native isVisible]);
}

TEST_F(FormTest, PictureIsHandedOverBeforeTheWindowShowsItselfAgain) {
    owner_.shown = {{label("old")}};
    NSWindow* const native = show();
    window_->close();
    owner_.shown = {{label("new")}};
    window_->setNeedsLayout();
    const HandOvers handOvers(native);
    window_->makeKeyAndOrderFront();
    EXPECT_TRUE([native isVisible]);
    EXPECT_EQ(handOvers.all(), 1);
    EXPECT_EQ(handOvers.good(), 1);
    EXPECT_STREQ([[static_cast<NSTextField*>(subview(0)) stringValue] UTF8String], "new");
}

TEST_F(FormTest, LabelShowsItsTextAndCannotBeEdited) {
    Control shown = label("Cell margin");
    shown.alignment = TextAlignment::center;
    shown.wrapsText = true;
    owner_.shown = {{shown}};
    make();
    NSTextField* const field = static_cast<NSTextField*>(subview(0));
    ASSERT_TRUE([field isKindOfClass:[NSTextField class]]);
    EXPECT_STREQ([[field stringValue] UTF8String], "Cell margin");
    EXPECT_TRUE(NSEqualRects([field frame], NSMakeRect(20, 250, 120, 22)));
    EXPECT_FALSE([field isEditable]);
    EXPECT_FALSE([field isSelectable]);
    EXPECT_FALSE([field isBezeled]);
    EXPECT_FALSE([field drawsBackground]);
    EXPECT_EQ([field alignment], NSTextAlignmentCenter);
    EXPECT_TRUE([[field cell] wraps]);
}

TEST_F(FormTest, SliderHasItsEndsAndItsValue) {
    owner_.shown = {{slider(12.5)}};
    make();
    NSSlider* const native = static_cast<NSSlider*>(subview(0));
    ASSERT_TRUE([native isKindOfClass:[NSSlider class]]);
    EXPECT_EQ([native minValue], 0);
    EXPECT_EQ([native maxValue], 40);
    EXPECT_EQ([native doubleValue], 12.5);
    EXPECT_TRUE([native isContinuous]);
}

TEST_F(FormTest, ClickOnASliderReportsWhereItWasSetTo) {
    owner_.shown = {{slider(0)}};
    NSWindow* const native = show();
    owner_.onUse = [&] { owner_.shown = {{slider(std::stod(owner_.used.back().substr(7)))}}; };
    click(native, middleOf(subview(0)));
    ASSERT_FALSE(owner_.used.empty());
    EXPECT_EQ(owner_.used.back().substr(0, 7), "slider=");
    EXPECT_NEAR(std::stod(owner_.used.back().substr(7)), 20, 2);
    EXPECT_EQ([static_cast<NSSlider*>(subview(0)) doubleValue], owner_.shown.controls[0].value);
}

TEST_F(FormTest, ClickOnACheckboxReportsItsNewStateAndTheOwnerDecidesWhatItShows) {
    owner_.shown = {{checkbox(0)}};
    NSWindow* const native = show();
    NSButton* const box = static_cast<NSButton*>(subview(0));
    owner_.onUse = [&] { owner_.shown = {{checkbox(1)}}; };
    click(native, middleOf(box));
    EXPECT_EQ(owner_.used, std::vector<std::string>{"checkbox=1.000000"});
    EXPECT_EQ([box state], static_cast<NSInteger>(NSControlStateValueOn));
    ASSERT_FALSE(owner_.used.empty());
    // The owner keeps it on.
    owner_.onUse = [] {};
    click(native, middleOf(box));
    EXPECT_EQ(owner_.used.back(), "checkbox=0.000000");
    EXPECT_EQ([box state], static_cast<NSInteger>(NSControlStateValueOn));
}

TEST_F(FormTest, ClickOnAPushButtonReportsIt) {
    owner_.shown = {{button("first", {20, 20, 90, 30}), button("second", {120, 20, 90, 30})}};
    NSWindow* const native = show();
    click(native, {165, 35});
    EXPECT_EQ(owner_.used, std::vector<std::string>{"second=0.000000"});
}

TEST_F(FormTest, DisabledControlIsNotUsedAndAHiddenOneNotSeen) {
    Control disabled = button("disabled", {20, 20, 90, 30});
    disabled.isEnabled = false;
    Control hidden = button("hidden", {120, 20, 90, 30});
    hidden.isHidden = true;
    owner_.shown = {{disabled, hidden}};
    NSWindow* const native = show();
    EXPECT_FALSE([static_cast<NSControl*>(subview(0)) isEnabled]);
    EXPECT_TRUE([subview(1) isHidden]);
    click(native, {65, 35});
    click(native, {165, 35});
    EXPECT_TRUE(owner_.used.empty());
}

TEST_F(FormTest, NewFormChangesTheSameControlsAndTakesOthersAway) {
    owner_.shown = {{label("one"), slider(3)}};
    make();
    NSView* const field = subview(0);
    owner_.shown = {{label("two")}};
    window_->setNeedsLayout();
    EXPECT_EQ(owner_.forms, 1);
    endTurn();
    EXPECT_EQ(owner_.forms, 2);
    EXPECT_EQ(subview(0), field);
    EXPECT_EQ(subview(1), nil);
    EXPECT_STREQ([[static_cast<NSTextField*>(field) stringValue] UTF8String], "two");
}

TEST_F(FormTest, ControlsLieInTheOrderOfTheForm) {
    owner_.shown = {{slider(3)}};
    make();
    NSView* const native = subview(0);
    owner_.shown = {{label("below"), slider(3)}};
    window_->setNeedsLayout();
    endTurn();
    EXPECT_EQ(subview(1), native);
}

TEST_F(FormTest, ControlThatIsTakenAwayByItsOwnUseOutlivesIt) {
    owner_.shown = {{button("gone", {20, 20, 90, 30})}};
    NSWindow* const native = show();
    owner_.onUse = [&] { owner_.shown = {}; };
    click(native, {65, 35});
    EXPECT_EQ(owner_.used.size(), 1U);
    EXPECT_EQ(subview(0), nil);
}

TEST_F(FormTest, UseThatThrowsDoesNotReachTheToolkit) {
    owner_.shown = {{button("bad", {20, 20, 90, 30})}};
    NSWindow* const native = show();
    owner_.onUse = [] { std::vector<int>().at(0) = 1; };
    static_cast<void>(takeUnifiedLog());
    click(native, {65, 35});
    EXPECT_EQ(owner_.used.size(), 1U);
    EXPECT_EQ(takeUnifiedLog().size(), 1U);
}

TEST_F(FormTest, SymbolIsSpokenAsItsToolTip) {
    Control symbol = checkbox(0);
    symbol.text = "\xE2\x8C\x98";
    symbol.toolTip = "Command";
    Control words = checkbox(0);
    words.id = "words";
    words.toolTip = "more";
    owner_.shown = {{symbol, words}};
    make();
    EXPECT_EQ(spokenName(0), "Command");
    EXPECT_STREQ([[subview(0) toolTip] UTF8String], "Command");
    EXPECT_EQ(spokenName(1), "none");
    owner_.shown.controls[0].text = "Launch";
    window_->setNeedsLayout();
    endTurn();
    EXPECT_EQ(spokenName(0), "none");
}

TEST_F(FormTest, SliderHasTheNameOfItsControlAndNoEmptyOne) {
    Control named = slider(1);
    named.text = "Cell margin";
    Control nameless = slider(1);
    nameless.id = "nameless";
    owner_.shown = {{named, nameless, label("text")}};
    make();
    EXPECT_EQ(spokenName(0), "Cell margin");
    EXPECT_EQ(spokenName(1), "none");
    EXPECT_EQ(spokenName(2), "none");
}

TEST_F(FormTest, NameOfItsOwnComesBeforeTheTextAndTheToolTip) {
    Control close = button("first", {20, 20, 90, 30});
    close.accessibleName = "Close (preferences)";
    Control symbol = checkbox(0);
    symbol.text = "\xE2\x8C\x98";
    symbol.toolTip = "Command";
    symbol.accessibleName = "Command (snapping)";
    owner_.shown = {{close, symbol}};
    make();
    EXPECT_EQ(spokenName(0), "Close (preferences)");
    EXPECT_EQ(spokenName(1), "Command (snapping)");
}

TEST_F(FormTest, LabelWithANameOfItsOwnIsReadByIt) {
    Control named = label("\xE2\x8C\x98 E");
    named.accessibleName = "Command E (zone editor)";
    Control plain = label("plain");
    plain.id = "plain";
    owner_.shown = {{named, plain}};
    make();
    const auto read = [&](NSUInteger index) {
        auto* const field = static_cast<NSTextField*>(subview(index));
        EXPECT_STREQ([[field accessibilityValue] UTF8String], [[[field cell] accessibilityValue] UTF8String]);
        return std::string([[[field cell] accessibilityValue] UTF8String]);
    };
    EXPECT_EQ(spokenName(0), "Command E (zone editor)");
    EXPECT_EQ(read(0), "Command E (zone editor)");
    EXPECT_STREQ([[static_cast<NSTextField*>(subview(0)) stringValue] UTF8String], "\xE2\x8C\x98 E");
    EXPECT_EQ(read(1), "plain");
    owner_.shown.controls[0].accessibleName.clear();
    owner_.shown.controls[0].text = "none";
    window_->setNeedsLayout();
    endTurn();
    EXPECT_EQ(spokenName(0), "none");
    EXPECT_EQ(read(0), "none");
}

TEST_F(FormTest, ControlThatChangesItsPlaceStaysInTheWindow) {
    owner_.shown = {{button("first", {20, 20, 90, 30}), button("second", {120, 20, 90, 30})}};
    NSWindow* const native = show();
    NSView* const first = subview(0);
    ASSERT_TRUE([native makeFirstResponder:first]);
    owner_.shown = {{slider(3), button("second", {120, 20, 90, 30}), button("first", {20, 20, 90, 30})}};
    window_->setNeedsLayout();
    endTurn();
    EXPECT_EQ(subview(2), first);
    EXPECT_EQ([native firstResponder], first);
}

TEST_F(FormTest, TextThatIsNoUtf8IsShownAllTheSame) {
    owner_.shown = {{label("\xFF")}};
    make();
    EXPECT_STREQ([[static_cast<NSTextField*>(subview(0)) stringValue] UTF8String], "\xC3\xBF");
}

} // namespace
} // namespace tarvex::test
