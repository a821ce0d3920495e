#include "Platform/MacOS/AppKit/AppKitTextMeasurer.h"

#include "Platform/MacOS/AppKit/NativeFonts.h"
#include "Platform/MacOS/AppKit/NativeGeometry.h"

namespace tarvex {

Size AppKitTextMeasurer::sizeOfText(const std::string& text, const Font& font) {
    Size size;
    @autoreleasepool {
        size = sizeOf([makeAttributedString(text, font, nil).get() size]);
    }
    return size;
}

} // namespace tarvex
