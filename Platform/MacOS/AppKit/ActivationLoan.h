#pragma once

#include "Platform/MacOS/AppKit/ObjCHandle.h"

#import <AppKit/AppKit.h>

namespace tarvex {

/// Remembers which program was active before this one took the keyboard, and makes it active again: a program
/// without a window of its own left would otherwise stay active, and the keyboard reach nobody.
class ActivationLoan {
public:
    /// To be called before this program becomes active. Nothing changes while it is.
    void borrow();

    /// Makes the other program active, unless this one has a titled window to go on with.
    /// @param closing the window that goes
    void giveBack(NSWindow* closing);

private:
    ObjCHandle<NSRunningApplication*> lender_;
};

} // namespace tarvex
