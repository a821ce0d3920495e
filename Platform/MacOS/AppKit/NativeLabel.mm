#include "Platform/MacOS/AppKit/NativeLabel.h"

@implementation TarvexLabel

- (void)tarvexSetWords:(const tarvex::ObjCHandle<NSString*>*)words {
    words_ = words;
}

// What is read of a static text is its value. To set one is what assistive technology does to type into a
// field, and might change the text.
- (NSString*)accessibilityValue {
    return words_ != nullptr && *words_ ? words_->get() : [super accessibilityValue];
}

@end
