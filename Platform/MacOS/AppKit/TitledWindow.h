#pragma once

#import <AppKit/AppKit.h>

namespace tarvex {

/// Hears of the closing of a TarvexTitledWindow that was open, whoever closes it. It must outlive the window
/// or be taken away from it.
class TitledWindowOwner {
public:
    TitledWindowOwner() = default;
    TitledWindowOwner(const TitledWindowOwner&) = delete;
    TitledWindowOwner& operator=(const TitledWindowOwner&) = delete;
    TitledWindowOwner(TitledWindowOwner&&) = delete;
    TitledWindowOwner& operator=(TitledWindowOwner&&) = delete;

    /// It is still to be seen, and may have the keyboard.
    virtual void titledWindowWillClose() = 0;

    /// It is hidden.
    virtual void titledWindowDidClose() = 0;

protected:
    ~TitledWindowOwner() = default;
};

} // namespace tarvex

/// A window with a title bar, which Command-W closes as it does in a program with a menu bar.
@interface TarvexTitledWindow : NSWindow {
    tarvex::TitledWindowOwner* owner_;
}
/// @param owner null for nobody
- (void)tarvexSetOwner:(tarvex::TitledWindowOwner*)owner;
@end
