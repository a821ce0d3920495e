#pragma once

// Controls, menus and the status bar.

#include <AppKit/Drawing.h>
#include <AppKit/Windows.h>

enum NSLineBreakMode : NSUInteger {
    NSLineBreakByWordWrapping = 0,
    NSLineBreakByClipping = 2,
};

typedef NSInteger NSControlStateValue;
inline constexpr NSControlStateValue NSControlStateValueOff = 0;
inline constexpr NSControlStateValue NSControlStateValueOn = 1;

enum NSCellImagePosition : NSUInteger {
    NSNoImage = 0,
    NSImageOnly = 1,
};

@interface NSCell : NSObject
- (void)setWraps:(BOOL)wraps;
- (void)setLineBreakMode:(NSLineBreakMode)mode;
- (NSView*)controlView;
- (void)setControlView:(NSView*)view;
- (id)accessibilityValue;
- (void)setAccessibilityLabel:(NSString*)label;
@end

@interface NSActionCell : NSCell
@end

@interface NSTextFieldCell : NSActionCell
@end

@interface NSControl : NSView
+ (Class)cellClass;
- (void)setTarget:(id)target;
- (void)setAction:(SEL)action;
- (void)setEnabled:(BOOL)enabled;
- (void)setFont:(NSFont*)font;
- (void)setAlignment:(NSTextAlignment)alignment;
- (void)setContinuous:(BOOL)continuous;
- (double)doubleValue;
- (void)setDoubleValue:(double)value;
- (void)setStringValue:(NSString*)value;
- (__kindof NSCell*)cell;
@end

@interface NSTextField : NSControl
- (void)setEditable:(BOOL)editable;
- (void)setSelectable:(BOOL)selectable;
- (void)setBordered:(BOOL)bordered;
- (void)setBezeled:(BOOL)bezeled;
- (void)setDrawsBackground:(BOOL)draws;
- (void)setTextColor:(NSColor*)color;
- (NSString*)accessibilityValue;
@end

@interface NSSlider : NSControl
- (void)setMinValue:(double)value;
- (void)setMaxValue:(double)value;
- (void)setNumberOfTickMarks:(NSInteger)count;
- (void)setAllowsTickMarkValuesOnly:(BOOL)only;
@end

enum NSButtonType : NSUInteger {
    NSButtonTypeSwitch = 3,
    NSButtonTypeMomentaryPushIn = 7,
};

enum NSBezelStyle : NSUInteger {
    NSBezelStyleRounded = 1,
};

@interface NSButton : NSControl
- (void)setButtonType:(NSButtonType)type;
- (void)setBezelStyle:(NSBezelStyle)style;
- (void)setBezelColor:(NSColor*)color;
- (void)setContentTintColor:(NSColor*)color;
- (void)setTitle:(NSString*)title;
- (void)setAttributedTitle:(NSAttributedString*)title;
- (void)setImage:(NSImage*)image;
- (void)setImagePosition:(NSCellImagePosition)position;
- (NSControlStateValue)state;
- (void)setState:(NSControlStateValue)state;
@end

@class NSMenu;

@interface NSMenuItem : NSObject
+ (NSMenuItem*)separatorItem;
- (instancetype)initWithTitle:(NSString*)title action:(SEL)action keyEquivalent:(NSString*)keyEquivalent;
- (void)setTarget:(id)target;
- (void)setEnabled:(BOOL)enabled;
- (void)setRepresentedObject:(id)object;
- (void)setSubmenu:(NSMenu*)submenu;
- (NSMenu*)menu;
@end

@protocol NSMenuDelegate <NSObject>
@optional
- (void)menuNeedsUpdate:(NSMenu*)menu;
@end

@interface NSMenu : NSObject
- (instancetype)initWithTitle:(NSString*)title;
- (void)setAutoenablesItems:(BOOL)autoenables;
- (void)setDelegate:(id<NSMenuDelegate>)delegate;
- (void)addItem:(NSMenuItem*)item;
- (void)removeAllItems;
@end

inline constexpr CGFloat NSVariableStatusItemLength = -1;

@interface NSStatusBarButton : NSButton
@end

@interface NSStatusItem : NSObject
- (NSStatusBarButton*)button;
- (void)setMenu:(NSMenu*)menu;
@end

@interface NSStatusBar : NSObject
+ (NSStatusBar*)systemStatusBar;
- (NSStatusItem*)statusItemWithLength:(CGFloat)length;
- (void)removeStatusItem:(NSStatusItem*)item;
@end
