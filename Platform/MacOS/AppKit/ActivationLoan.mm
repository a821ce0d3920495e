#include "Platform/MacOS/AppKit/ActivationLoan.h"

#include <algorithm>

namespace tarvex {

ActivationLoan::ActivationLoan(MainLoop& mainLoop)
    : mainLoop_(&mainLoop), applicationActivated_([this](id notification) {
          noteFront([[notification userInfo] objectForKey:NSWorkspaceApplicationKey]);
      }) {
    @autoreleasepool {
        // The workspace has a centre of its own (Apple, NSWorkspace).
        [[[NSWorkspace sharedWorkspace] notificationCenter]
            addObserver:applicationActivated_.object()
               selector:ActionTarget::selector()
                   name:NSWorkspaceDidActivateApplicationNotification
                 object:nil];
    }
}

ActivationLoan::~ActivationLoan() {
    @autoreleasepool {
        [[[NSWorkspace sharedWorkspace] notificationCenter] removeObserver:applicationActivated_.object()];
    }
}

void ActivationLoan::noteOpening(NSWindow* window) {
    @autoreleasepool {
        if ([NSApp isActive]) {
            noteKeyWindow();
        } else {
            noteFront([[NSWorkspace sharedWorkspace] frontmostApplication]);
            for (Borrower& borrower : borrowers_) {
                borrower.isInUse = false;
            }
        }
        if (const auto found = find(window); found != borrowers_.end()) {
            found->isInUse = true;
        } else {
            borrowers_.push_back({ObjCHandle<NSWindow*>::share(window)});
        }
    }
}

void ActivationLoan::noteClosing(NSWindow* window) {
    const auto found = find(window);
    if (found == borrowers_.end()) {
        return;
    }
    @autoreleasepool {
        borrowers_.erase(found);
        noteKeyWindow();
    }
    mainLoop_->post([this, life = std::weak_ptr<const bool>(life_)] {
        if (!life.expired()) {
            giveBack();
        }
    });
}

std::vector<ActivationLoan::Borrower>::iterator ActivationLoan::find(NSWindow* window) {
    return std::find_if(borrowers_.begin(), borrowers_.end(),
                        [&](const Borrower& borrower) { return borrower.window.get() == window; });
}

void ActivationLoan::noteFront(NSRunningApplication* application) {
    if (application != nil && ![application isEqual:[NSRunningApplication currentApplication]]) {
        lender_ = ObjCHandle<NSRunningApplication*>::share(application);
    }
}

// Whoever clicks on a window that was left open wants to go on with it.
void ActivationLoan::noteKeyWindow() {
    if (const auto found = find([NSApp keyWindow]); found != borrowers_.end()) {
        found->isInUse = true;
    }
}

void ActivationLoan::giveBack() {
    const bool isNeeded = std::any_of(borrowers_.begin(), borrowers_.end(),
                                      [](const Borrower& borrower) { return borrower.isInUse; });
    // A program that the user has turned to meanwhile keeps the front.
    if (isNeeded || !lender_ || ![NSApp isActive]) {
        return;
    }
    @autoreleasepool {
        // Where activation is cooperative, the active program has to let the other one have it.
        if (@available(macOS 14.0, *)) {
            [NSApp yieldActivationToApplication:lender_.get()];
            [lender_.get() activateFromApplication:[NSRunningApplication currentApplication] options:0];
        } else {
            [lender_.get() activateWithOptions:0];
        }
    }
}

} // namespace tarvex
