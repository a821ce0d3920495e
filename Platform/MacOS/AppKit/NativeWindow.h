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
- (void)tarvexSetCanBecomeKey:(BOOL)canBecomeKey main:(BOOL)canBecomeMain;
@end

namespace tarvex {

/// A new hidden window over the view, which has the keyboard first. Whatever the attributes say, closing it
/// does not release it: that is the handle's alone to do. It stays when the program is hidden, as "Hide
/// Others" elsewhere does, and one that ignores the mouse is none for assistive technology either.
[[nodiscard]] ObjCHandle<TarvexWindow*> makeNativeWindow(const WindowAttributes& attributes, NSView* content);

/// Has the window's views drawn and their layers handed to the window server at once. Layers are handed over
/// when the main loop is back otherwise, and a window that was ordered front before would show itself with
/// the picture that it had when it was hidden.
void handOverPicture(NSWindow* window);

} // namespace tarvex
