#include "Platform/MacOS/AppKit/ActivationLoan.h"

#include <utility>

namespace tarvex {

namespace {

// The toolkit keeps windows of its own as well, such as that of the status item; they have no title.
bool hasTitledWindow(NSWindow* closing) {
    for (NSWindow* window in [NSApp windows]) {
        const bool hasTitle = ([window styleMask] & NSWindowStyleMaskTitled) != 0;
        if (window != closing && hasTitle && [window isVisible]) {
            return true;
        }
    }
    return false;
}

} // namespace

void ActivationLoan::borrow() {
    if (![NSApp isActive]) {
        lender_ =
            ObjCHandle<NSRunningApplication*>::share([[NSWorkspace sharedWorkspace] frontmostApplication]);
    }
}

void ActivationLoan::giveBack(NSWindow* closing) {
    const auto lender = std::exchange(lender_, {});
    if (!lender || ![NSApp isActive] || hasTitledWindow(closing)) {
        return;
    }
    // Where activation is cooperative, the active program has to let the other one have it.
    if (@available(macOS 14.0, *)) {
        [NSApp yieldActivationToApplication:lender.get()];
        [lender.get() activateFromApplication:[NSRunningApplication currentApplication] options:0];
    } else {
        [lender.get() activateWithOptions:0];
    }
}

} // namespace tarvex
