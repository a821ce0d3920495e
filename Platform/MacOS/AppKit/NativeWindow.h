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

/// Has the window's views drawn and their layers handed to the window server at once. Layers are handed over
/// when the main loop is back otherwise, and a window that was ordered front before would show itself with
/// the picture that it had when it was hidden.
void handOverPicture(NSWindow* window);

} // namespace tarvex
