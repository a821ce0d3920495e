#pragma once

#include "App/Toolkit/Window.h"
#include "Platform/MacOS/AppKit/ObjCHandle.h"

#import <AppKit/AppKit.h>

/// A window without a title that becomes key and main only as far as it was told to, and that stays where it
/// is put.
@interface TarvexWindow : NSWindow {
    BOOL canBecomeKey_;
    BOOL canBecomeMain_;
}
- (void)setCanBecomeKey:(BOOL)canBecomeKey main:(BOOL)canBecomeMain;
@end

namespace tarvex {

/// A new hidden window over the view. Whatever the attributes say, closing it does not release it: that is
/// the handle's alone to do.
[[nodiscard]] ObjCHandle<TarvexWindow*> makeNativeWindow(const WindowAttributes& attributes, NSView* content);

} // namespace tarvex
