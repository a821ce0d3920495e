#pragma once

#include <AppKit/AppKit.h>

/// GNUstep's windows have no layers to hand over; a test may ask for when it would be done.
@interface CATransaction : NSObject
+ (void)flush;
@end

/// A layer that remembers how it should look.
@interface CALayer : NSObject {
    CGFloat cornerRadius_;
    CGFloat borderWidth_;
    NSColor* borderColor_;
    NSColor* backgroundColor_;
    NSColor* shadowColor_;
    float shadowOpacity_;
    CGFloat shadowRadius_;
    NSSize shadowOffset_;
}
- (void)setCornerRadius:(CGFloat)radius;
- (void)setBorderWidth:(CGFloat)width;
- (void)setBorderColor:(CGColorRef)color;
- (void)setBackgroundColor:(CGColorRef)color;
- (void)setShadowColor:(CGColorRef)color;
- (void)setShadowOpacity:(float)opacity;
- (void)setShadowRadius:(CGFloat)radius;
- (void)setShadowOffset:(NSSize)offset;
- (CGFloat)cornerRadius;
- (CGFloat)borderWidth;
- (NSColor*)borderNSColor;
- (NSColor*)backgroundNSColor;
- (NSColor*)shadowNSColor;
- (float)shadowOpacity;
- (CGFloat)shadowRadius;
- (NSSize)shadowOffset;
@end
