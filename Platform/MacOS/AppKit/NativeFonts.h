#pragma once

#include "App/Toolkit/Scene.h"
#include "Platform/MacOS/AppKit/ObjCHandle.h"

#import <AppKit/AppKit.h>
#include <string>

namespace tarvex {

/// The toolkit's number for a weight as CSS has it.
[[nodiscard]] CGFloat nativeFontWeight(int cssWeight);

/// The face; valid in the current autorelease pool.
[[nodiscard]] NSFont* nativeFont(const Font& font);

/// The text in that face, in the given colour or, for nil, that of the context.
[[nodiscard]] ObjCHandle<NSAttributedString*> makeAttributedString(const std::string& text, const Font& font,
                                                                   NSColor* color);

} // namespace tarvex
