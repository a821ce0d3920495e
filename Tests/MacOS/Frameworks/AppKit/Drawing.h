#pragma once

// Colours, fonts, paths, text and pictures.

#include <Foundation/Foundation.h>

typedef struct CGColor* CGColorRef;

@interface NSColor : NSObject
+ (NSColor*)clearColor;
+ (NSColor*)whiteColor;
+ (NSColor*)blackColor;
+ (NSColor*)colorWithCalibratedWhite:(CGFloat)white alpha:(CGFloat)alpha;
+ (NSColor*)controlAccentColor;
+ (NSColor*)systemBlueColor;
+ (NSColor*)systemRedColor;
+ (NSColor*)labelColor;
+ (NSColor*)secondaryLabelColor;
- (NSColor*)colorWithAlphaComponent:(CGFloat)alpha;
- (CGColorRef)CGColor;
- (void)setFill;
- (void)setStroke;
@end

@interface NSAppearance : NSObject
- (void)performAsCurrentDrawingAppearance:(void (^)(void))block
    __attribute__((availability(macos, introduced = 11.0)));
@end

typedef CGFloat NSFontWeight;
extern "C" const NSFontWeight NSFontWeightLight;
extern "C" const NSFontWeight NSFontWeightRegular;
extern "C" const NSFontWeight NSFontWeightMedium;
extern "C" const NSFontWeight NSFontWeightSemibold;
extern "C" const NSFontWeight NSFontWeightBold;
extern "C" const NSFontWeight NSFontWeightHeavy;
extern "C" const NSFontWeight NSFontWeightBlack;

@interface NSFont : NSObject
+ (NSFont*)systemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight;
+ (NSFont*)monospacedDigitSystemFontOfSize:(CGFloat)size weight:(NSFontWeight)weight;
@end

enum NSTextAlignment : NSInteger {
    NSTextAlignmentLeft = 0,
#if defined(__x86_64__)
    NSTextAlignmentRight = 1,
    NSTextAlignmentCenter = 2,
#else
    NSTextAlignmentCenter = 1,
    NSTextAlignmentRight = 2,
#endif
    NSTextAlignmentNatural = 4,
};

@interface NSMutableParagraphStyle : NSObject
- (void)setAlignment:(NSTextAlignment)alignment;
@end

extern "C" NSString* const NSFontAttributeName;
extern "C" NSString* const NSParagraphStyleAttributeName;
extern "C" NSString* const NSForegroundColorAttributeName;

@interface NSAttributedString (NSStringDrawing)
- (NSSize)size;
- (void)drawAtPoint:(NSPoint)point;
@end

@interface NSBezierPath : NSObject
+ (NSBezierPath*)bezierPath;
+ (NSBezierPath*)bezierPathWithRect:(NSRect)rect;
+ (NSBezierPath*)bezierPathWithOvalInRect:(NSRect)rect;
+ (NSBezierPath*)bezierPathWithRoundedRect:(NSRect)rect xRadius:(CGFloat)xRadius yRadius:(CGFloat)yRadius;
- (void)moveToPoint:(NSPoint)point;
- (void)lineToPoint:(NSPoint)point;
- (void)setLineWidth:(CGFloat)width;
- (void)stroke;
- (void)fill;
@end

@interface NSImageSymbolConfiguration : NSObject
+ (instancetype)configurationWithPointSize:(CGFloat)pointSize weight:(NSFontWeight)weight;
@end

@interface NSImage : NSObject
+ (instancetype)imageWithSystemSymbolName:(NSString*)name accessibilityDescription:(NSString*)description;
- (NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration;
- (void)setTemplate:(BOOL)isTemplate;
@end
