#include "Platform/MacOS/AppKit/NativeFonts.h"

#include "Platform/MacOS/AppKit/NativeText.h"

#include <array>

namespace tarvex {

namespace {

struct FontWeight {
    int cssWeight;
    CGFloat nativeWeight;
};

} // namespace

CGFloat nativeFontWeight(int cssWeight) {
    const std::array<FontWeight, 6> weights{{{300, NSFontWeightLight},
                                             {400, NSFontWeightRegular},
                                             {500, NSFontWeightMedium},
                                             {600, NSFontWeightSemibold},
                                             {700, NSFontWeightBold},
                                             {800, NSFontWeightHeavy}}};
    for (const FontWeight& weight : weights) {
        if (cssWeight <= weight.cssWeight) {
            return weight.nativeWeight;
        }
    }
    return NSFontWeightBlack;
}

NSFont* nativeFont(const Font& font) {
    const CGFloat weight = nativeFontWeight(font.weight);
    return font.hasMonospacedDigits ? [NSFont monospacedDigitSystemFontOfSize:font.size weight:weight]
                                    : [NSFont systemFontOfSize:font.size weight:weight];
}

ObjCHandle<NSAttributedString*> makeAttributedString(const std::string& text, const Font& font,
                                                     NSColor* color) {
    const auto attributes = ObjCHandle<NSMutableDictionary*>::adopt([[NSMutableDictionary alloc] init]);
    [attributes.get() setObject:nativeFont(font) forKey:NSFontAttributeName];
    if (color != nil) {
        [attributes.get() setObject:color forKey:NSForegroundColorAttributeName];
    }
    return ObjCHandle<NSAttributedString*>::adopt(
        [[NSAttributedString alloc] initWithString:makeString(text).get() attributes:attributes.get()]);
}

} // namespace tarvex
