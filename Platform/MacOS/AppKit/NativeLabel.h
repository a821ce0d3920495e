#pragma once

#include "Platform/MacOS/AppKit/ObjCHandle.h"

#import <AppKit/AppKit.h>

/// A text that assistive technology may read in other words than it shows.
@interface TarvexLabel : NSTextField {
    const tarvex::ObjCHandle<NSString*>* words_;
}
/// @param words empty for the text itself; their owner takes them away again before it goes, and null is for
/// nobody
- (void)tarvexSetWords:(const tarvex::ObjCHandle<NSString*>*)words;
/// Nil for the text itself.
- (NSString*)tarvexWords;
@end

/// The label's cell. Of a control that has one, assistive technology finds the cell and not the view.
@interface TarvexLabelCell : NSTextFieldCell
@end
