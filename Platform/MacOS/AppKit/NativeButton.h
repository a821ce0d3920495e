#pragma once

#import <AppKit/AppKit.h>
#include <functional>

/// A button that may take the click that brings its program to the front, and tells when the system's colours
/// change around it.
@interface TarvexButton : NSButton {
    BOOL takesFirstClick_;
    const std::function<void()>* appearanceChanged_;
}
- (void)tarvexSetTakesFirstClick:(BOOL)takesFirstClick;
/// @param changed its owner takes it away again before it goes; null for nobody
- (void)tarvexSetAppearanceChanged:(const std::function<void()>*)changed;
@end
