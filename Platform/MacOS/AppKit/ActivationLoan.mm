#include "Platform/MacOS/AppKit/ActivationLoan.h"

#include <algorithm>

namespace tarvex {

namespace {

// The locked screen and the panels that ask for a password come to the front as programs do, but run on when
// they have gone from the screen: the front would be given to nobody.
bool mayLend(NSRunningApplication* application) {
    NSString* const identifier = [application bundleIdentifier];
    return application != nil && ![application isEqual:[NSRunningApplication currentApplication]] &&
           ![identifier isEqualToString:@"com.apple.loginwindow"] &&
           ![identifier isEqualToString:@"com.apple.SecurityAgent"];
}

/// False when the system refuses, or the program has gone.
bool makeActive(NSRunningApplication* application) {
    // Where activation is cooperative, the active program has to let the other one have it.
    if (@available(macOS 14.0, *)) {
        [NSApp yieldActivationToApplication:application];
        return [application activateFromApplication:[NSRunningApplication currentApplication] options:0];
    }
    return [application activateWithOptions:0];
}

} // namespace

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
        // The user may turn to this program, by its status item say, before it opens a window.
        noteFront([[NSWorkspace sharedWorkspace] frontmostApplication]);
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
    if (!mayLend(application)) {
        return;
    }
    const auto lender = ObjCHandle<NSRunningApplication*>::share(application);
    std::erase_if(lenders_, [&](const ObjCHandle<NSRunningApplication*>& other) {
        return [other.get() isEqual:application] || [other.get() isTerminated];
    });
    lenders_.push_back(lender);
    if (lenders_.size() > maximumLenders) {
        lenders_.erase(lenders_.begin());
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
    if (isNeeded || ![NSApp isActive]) {
        return;
    }
    @autoreleasepool {
        // A copy, since a program that comes to the front changes the order.
        const auto lenders = lenders_;
        for (auto lender = lenders.rbegin(); lender != lenders.rend(); ++lender) {
            if (![lender->get() isTerminated] && makeActive(lender->get())) {
                return;
            }
        }
    }
}

} // namespace tarvex
