#include "Platform/MacOS/AppKit/NativeLabel.h"

@implementation TarvexLabel

+ (Class)cellClass {
    return [TarvexLabelCell class];
}

- (void)tarvexSetWords:(const tarvex::ObjCHandle<NSString*>*)words {
    words_ = words;
    // Or it may be unknown until the cell has drawn.
    [[self cell] setControlView:self];
}

- (NSString*)tarvexWords {
    return words_ != nullptr ? words_->get() : nil;
}

// Whoever asks the view hears what the cell says.
- (NSString*)accessibilityValue {
    NSString* const words = [self tarvexWords];
    return words != nil ? words : [super accessibilityValue];
}

@end

@implementation TarvexLabelCell

// What is read of a static text is its value. To set one is what assistive technology does to type into a
// field, and might change the text.
- (id)accessibilityValue {
    NSView* const view = [self controlView];
    NSString* const words =
        [view isKindOfClass:[TarvexLabel class]] ? [static_cast<TarvexLabel*>(view) tarvexWords] : nil;
    return words != nil ? words : [super accessibilityValue];
}

@end
