#pragma once

#include "App/Toolkit/Form.h"
#include "App/Toolkit/Scene.h"

#import <AppKit/AppKit.h>

namespace tarvex {

/// The colour, as the system has it now; valid in the current autorelease pool.
[[nodiscard]] NSColor* nativeColor(const Color& color);

[[nodiscard]] NSColor* nativeColor(TextColor color);

} // namespace tarvex
