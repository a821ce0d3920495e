#include "Platform/MacOS/AppKit/AppKitFormWindowPlatform.h"
#include "Platform/MacOS/AppKit/NativeColors.h"
#include "Tests/Contract/RecordingFormOwner.h"
#include "Tests/MacOS/GNUstep/AppKitTest.h"

#include <memory>

/// A colour that follows the appearance, as those of a Mac's system do, until it is given an alpha. GNUstep
/// has none.
@interface TarvexTestFollowingColor : NSColor
@end

@implementation TarvexTestFollowingColor

- (NSColor*)colorWithAlphaComponent:(CGFloat)alpha {
    return [NSColor colorWithCalibratedRed:1 green:0 blue:0 alpha:alpha];
}

@end

namespace tarvex::test {
namespace {

/// One button in a window.
class ButtonTest : public AppKitTest {
protected:
    void make(const ButtonStyle& style) {
        owner_.add(ControlKind::pushButton, "styled", {20, 20, 96, 32});
        owner_.control("styled").buttonStyle = style;
        window_ = platform_.makeFormWindow({"Window", 3, {200, 100}}, owner_);
        native_ = static_cast<NSButton*>([[[newestWindow() contentView] subviews] objectAtIndex:0]);
    }

    contract::RecordingFormOwner owner_;
    AppKitFormWindowPlatform platform_{loop_, activation_};
    std::unique_ptr<FormWindow> window_;
    NSButton* native_ = nil;
};

TEST_F(ButtonTest, StyledButtonHasTheLookThatItWasGiven) {
    ButtonStyle style;
    style.alpha = 0.5;
    style.bezelColor = Color{ColorName::gray, 1, 0.2};
    style.contentTintColor = Color{ColorName::black, 1};
    style.titleColor = Color{ColorName::white, 1};
    style.backgroundColor = Color{ColorName::gray, 1, 0.2};
    style.cornerRadius = 8;
    style.borderWidth = 2.5;
    style.borderColor = Color{ColorName::gray, 1, 0.4};
    style.shadow = ControlShadow{{ColorName::black, 0.5}, 0.5, 5, {0, -2}};
    make(style);
    EXPECT_EQ([native_ bezelStyle], NSRoundedBezelStyle);
    EXPECT_EQ([native_ alphaValue], 0.5);
    EXPECT_EQ([[native_ bezelColor] whiteComponent], 0.2);
    EXPECT_EQ([[native_ contentTintColor] whiteComponent], 0);
    NSColor* const titleColor = [[native_ attributedTitle] attribute:NSForegroundColorAttributeName
                                                             atIndex:0
                                                      effectiveRange:nullptr];
    EXPECT_EQ([titleColor whiteComponent], 1);
    NSParagraphStyle* const paragraph = [[native_ attributedTitle] attribute:NSParagraphStyleAttributeName
                                                                     atIndex:0
                                                              effectiveRange:nullptr];
    EXPECT_EQ([paragraph alignment], NSTextAlignmentCenter);
    CALayer* const layer = [native_ layer];
    EXPECT_EQ([layer cornerRadius], 8);
    EXPECT_EQ([layer borderWidth], 2.5);
    EXPECT_EQ([[layer borderNSColor] whiteComponent], 0.4);
    EXPECT_EQ([[layer backgroundNSColor] whiteComponent], 0.2);
    EXPECT_EQ([[layer shadowNSColor] alphaComponent], 0.5);
    EXPECT_EQ([layer shadowOpacity], 0.5F);
    EXPECT_EQ([layer shadowRadius], 5);
    EXPECT_TRUE(NSEqualSizes([layer shadowOffset], NSMakeSize(0, -2)));
}

TEST_F(ButtonTest, LayerFollowsTheColorsOfTheSystem) {
    ButtonStyle style;
    style.backgroundColor = Color{ColorName::accent, 1};
    style.borderColor = Color{ColorName::accent, 1};
    style.borderWidth = 1;
    style.shadow = ControlShadow{{ColorName::accent, 1}, 0.5, 5, {0, -2}};
    make(style);
    CALayer* const layer = [native_ layer];
    for (const bool isDark : {false, true, false}) {
        setDark(native_, isDark);
        const double green = isDark ? 0.75 : 0.5;
        EXPECT_EQ([[layer backgroundNSColor] greenComponent], green);
        EXPECT_EQ([[layer borderNSColor] greenComponent], green);
        EXPECT_EQ([[layer shadowNSColor] greenComponent], green);
    }
}

TEST_F(ButtonTest, LayerHasTheColorsOfItsOwnAppearanceAndNotOfWhoeverDraws) {
    make({});
    setDark(native_, true);
    owner_.control("styled").buttonStyle->backgroundColor = Color{ColorName::accent, 1};
    window_->setNeedsLayout();
    endTurn();
    EXPECT_EQ([[[native_ layer] backgroundNSColor] greenComponent], 0.75);
}

TEST_F(ButtonTest, ButtonWithoutALayerGetsNoneOfANewAppearance) {
    make({});
    setDark(native_, true);
    EXPECT_EQ([native_ layer], nil);
}

TEST_F(ButtonTest, ButtonThatOutlivesItsControlIsSilent) {
    ButtonStyle style;
    style.backgroundColor = Color{ColorName::accent, 1};
    make(style);
    const auto button = ObjCHandle<NSButton*>::share(native_);
    window_.reset();
    setDark(button.get(), true);
    EXPECT_EQ([[[button.get() layer] backgroundNSColor] greenComponent], 0.5);
}

id followingColor(id /*owner*/, SEL /*selector*/) {
    static NSColor* const color = [[TarvexTestFollowingColor alloc] init];
    return color;
}

TEST_F(ButtonTest, OpaqueColorOfTheSystemIsTheSystemsOwn) {
    const Class colors = object_getClass([NSColor class]);
    const auto red = replaceMethod(colors, @selector(systemRedColor), &followingColor);
    EXPECT_EQ(nativeColor({ColorName::red, 1}), [NSColor systemRedColor]);
    EXPECT_EQ([nativeColor({ColorName::red, 0.5}) alphaComponent], 0.5);
    replaceMethod(colors, @selector(systemRedColor), red);
}

} // namespace
} // namespace tarvex::test
