#include "Platform/MacOS/AppKit/NativeButton.h"

#include "Platform/MacOS/AppKit/Guarded.h"

@implementation TarvexButton

- (void)tarvexSetTakesFirstClick:(BOOL)takesFirstClick {
    takesFirstClick_ = takesFirstClick;
}

- (void)tarvexSetAppearanceChanged:(const std::function<void()>*)changed {
    appearanceChanged_ = changed;
}

- (BOOL)acceptsFirstMouse:(NSEvent*)event {
    static_cast<void>(event);
    return takesFirstClick_;
}

- (void)viewDidChangeEffectiveAppearance {
    [super viewDidChangeEffectiveAppearance];
    if (appearanceChanged_ != nullptr) {
        tarvex::callGuarded(*appearanceChanged_);
    }
}

@end
