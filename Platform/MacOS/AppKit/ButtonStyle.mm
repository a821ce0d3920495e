#include "Platform/MacOS/AppKit/ControlRealizer.h"
#include "Platform/MacOS/AppKit/NativeColors.h"
#include "Platform/MacOS/AppKit/NativeFonts.h"
#include "Platform/MacOS/AppKit/NativeGeometry.h"

#import <QuartzCore/QuartzCore.h>

namespace tarvex {

namespace {

NSColor* colorOrNil(const std::optional<Color>& color) {
    return color ? nativeColor(*color) : nil;
}

// A title with attributes of its own takes its alignment from them, and not from the button.
ObjCHandle<NSAttributedString*> makeTitle(const Control& control, NSColor* color) {
    const auto paragraph =
        ObjCHandle<NSMutableParagraphStyle*>::adopt([[NSMutableParagraphStyle alloc] init]);
    [paragraph.get() setAlignment:NSTextAlignmentCenter];
    const auto title = ObjCHandle<NSMutableAttributedString*>::adopt([[NSMutableAttributedString alloc]
        initWithAttributedString:makeAttributedString(control.text, control.font, color).get()]);
    [title.get() addAttribute:NSParagraphStyleAttributeName
                        value:paragraph.get()
                        range:NSMakeRange(0, [title.get() length])];
    return ObjCHandle<NSAttributedString*>::share(title.get());
}

void applyShadow(CALayer* layer, const ControlShadow& shadow) {
    [layer setShadowOpacity:static_cast<float>(shadow.opacity)];
    [layer setShadowRadius:shadow.radius];
    [layer setShadowOffset:nativeSize(shadow.offset)];
}

void applyToLayer(CALayer* layer, const ButtonStyle& style) {
    [layer setCornerRadius:style.cornerRadius];
    [layer setBorderWidth:style.borderWidth];
    if (style.shadow) {
        applyShadow(layer, *style.shadow);
    }
}

void applyColors(CALayer* layer, const ButtonStyle& style) {
    if (style.borderColor) {
        [layer setBorderColor:[nativeColor(*style.borderColor) CGColor]];
    }
    if (style.backgroundColor) {
        [layer setBackgroundColor:[nativeColor(*style.backgroundColor) CGColor]];
    }
    if (style.shadow) {
        [layer setShadowColor:[nativeColor(style.shadow->color) CGColor]];
    }
}

bool needsLayer(const ButtonStyle& style) {
    return style.cornerRadius != 0 || style.borderWidth != 0 || style.backgroundColor || style.shadow;
}

} // namespace

void applyButtonStyle(NSButton* button, const Control& control, const ButtonStyle& style) {
    [button setBezelStyle:static_cast<NSBezelStyle>(style.bezelStyle)];
    [button setAlphaValue:style.alpha];
    [button setBezelColor:colorOrNil(style.bezelColor)];
    [button setContentTintColor:colorOrNil(style.contentTintColor)];
    if (style.titleColor) {
        [button setAttributedTitle:makeTitle(control, nativeColor(*style.titleColor)).get()];
    }
    if (needsLayer(style)) {
        [button setWantsLayer:YES];
        applyToLayer([button layer], style);
        applyLayerColors(button, style);
    }
}

void applyLayerColors(NSButton* button, const ButtonStyle& style) {
    CALayer* const layer = [button layer];
    if (layer != nil) {
        // The block would take a copy of the style itself.
        const ButtonStyle* const shown = &style;
        [[button effectiveAppearance] performAsCurrentDrawingAppearance:^{
          applyColors(layer, *shown);
        }];
    }
}

} // namespace tarvex
