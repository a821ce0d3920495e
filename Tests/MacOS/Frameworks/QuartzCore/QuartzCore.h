#pragma once

// What the adapters use of Core Animation, as Apple documents it.

#include <Foundation/Foundation.h>

typedef struct CGColor* CGColorRef;

@interface CATransaction : NSObject
+ (void)flush;
@end

@interface CALayer : NSObject
- (void)setCornerRadius:(CGFloat)radius;
- (void)setBorderWidth:(CGFloat)width;
- (void)setBorderColor:(CGColorRef)color;
- (void)setBackgroundColor:(CGColorRef)color;
- (void)setShadowColor:(CGColorRef)color;
- (void)setShadowOpacity:(float)opacity;
- (void)setShadowRadius:(CGFloat)radius;
- (void)setShadowOffset:(CGSize)offset;
@end
