#pragma once

#include "App/Toolkit/MainLoop.h"
#include "Platform/MacOS/AppKit/ActionTarget.h"
#include "Platform/MacOS/AppKit/ObjCHandle.h"

#import <AppKit/AppKit.h>
#include <cstddef>
#include <memory>
#include <vector>

namespace tarvex {

/// Remembers which programs were in front before this one, and makes the last of them active again when the
/// last window has closed for which this one came to the front: a program without a window of its own left
/// would otherwise stay active, and the keyboard reach nobody. One that has quit, or may not become active,
/// is passed over for the one before it. There is one loan for all windows of the program.
class ActivationLoan {
public:
    /// How many programs are remembered at most.
    static constexpr std::size_t maximumLenders = 16;

    /// The main loop must outlive the loan.
    explicit ActivationLoan(MainLoop& mainLoop);
    ActivationLoan(const ActivationLoan&) = delete;
    ActivationLoan& operator=(const ActivationLoan&) = delete;
    ActivationLoan(ActivationLoan&&) = delete;
    ActivationLoan& operator=(ActivationLoan&&) = delete;
    ~ActivationLoan();

    /// To be called before the window shows itself, and before this program becomes active for it; again
    /// whenever it is brought to the front anew.
    void noteOpening(NSWindow* window);

    /// To be called before the window closes or is hidden. A window that did not open, or has closed already,
    /// changes nothing. Another program becomes active no sooner than the main loop is back, so that a window
    /// may take the place of another.
    void noteClosing(NSWindow* window);

private:
    struct Borrower {
        ObjCHandle<NSWindow*> window;
        /// Whether the program is in front for it. One that was left open behind other programs does not
        /// count.
        bool isInUse = true;
    };

    [[nodiscard]] std::vector<Borrower>::iterator find(NSWindow* window);
    void noteFront(NSRunningApplication* application);
    void noteKeyWindow();
    void giveBack();

    MainLoop* mainLoop_;
    /// The programs that were in front, other than this one; the last one is at the end.
    std::vector<ObjCHandle<NSRunningApplication*>> lenders_;
    std::vector<Borrower> borrowers_;
    ActionTarget applicationActivated_;
    /// Ends with the loan, which tells a posted call that nobody wants it any more.
    std::shared_ptr<const bool> life_ = std::make_shared<const bool>(true);
};

} // namespace tarvex
