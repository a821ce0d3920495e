#include "Platform/MacOS/AppKit/AppKitFormWindowPlatform.h"

#include "Platform/MacOS/AppKit/ActivationLoan.h"
#include "Platform/MacOS/AppKit/AppKitApplication.h"
#include "Platform/MacOS/AppKit/FormRealizer.h"
#include "Platform/MacOS/AppKit/NativeGeometry.h"
#include "Platform/MacOS/AppKit/NativeText.h"
#include "Platform/MacOS/AppKit/NativeWindow.h"
#include "Platform/MacOS/AppKit/TitledWindow.h"

#import <AppKit/AppKit.h>
#include <utility>

namespace tarvex {

namespace {

/// Closing hides the window and keeps it; only its handle releases it.
ObjCHandle<TarvexTitledWindow*> makeTitledWindow(const FormWindowAttributes& attributes) {
    const NSRect content = NSMakeRect(0, 0, attributes.contentSize.width, attributes.contentSize.height);
    auto window = ObjCHandle<TarvexTitledWindow*>::adopt([[TarvexTitledWindow alloc]
        initWithContentRect:content
                  styleMask:static_cast<NSWindowStyleMask>(attributes.styleMask)
                    backing:NSBackingStoreBuffered
                      defer:NO]);
    [window.get() setReleasedWhenClosed:NO];
    [window.get() setTitle:makeString(attributes.title).get()];
    [window.get() setLevel:attributes.level];
    [window.get() setAutorecalculatesKeyViewLoop:NO];
    return window;
}

class AppKitFormWindow final : public FormWindow, private TitledWindowOwner {
public:
    AppKitFormWindow(MainLoop& mainLoop, ActivationLoan& activation, const FormWindowAttributes& attributes,
                     FormOwner& owner)
        : mainLoop_(&mainLoop),
          activation_(&activation),
          owner_(&owner),
          contentSize_(attributes.contentSize) {
        @autoreleasepool {
            window_ = makeTitledWindow(attributes);
            controls_ = std::make_unique<FormRealizer>(
                [window_.get() contentView], FirstClick::activates,
                [this](const std::string& controlId, double value) { handleUse(controlId, value); });
            layOut();
            [window_.get() tarvexSetOwner:this];
        }
    }

    AppKitFormWindow(const AppKitFormWindow&) = delete;
    AppKitFormWindow& operator=(const AppKitFormWindow&) = delete;
    AppKitFormWindow(AppKitFormWindow&&) = delete;
    AppKitFormWindow& operator=(AppKitFormWindow&&) = delete;

    ~AppKitFormWindow() override {
        @autoreleasepool {
            [window_.get() tarvexSetOwner:nullptr];
            activation_->noteClosing(window_.get());
            [window_.get() close];
            keepForThisTurn(window_.get());
        }
    }

    [[nodiscard]] bool isVisible() const override { return [window_.get() isVisible] == YES; }

    void setNeedsLayout() override {
        if (!std::exchange(isLayoutDue_, true)) {
            mainLoop_->post([this, life = std::weak_ptr<const bool>(life_)] {
                if (!life.expired() && isLayoutDue_) {
                    layOut();
                }
            });
        }
    }

    void center() override {
        @autoreleasepool {
            [window_.get() center];
        }
    }

    void makeKeyAndOrderFront() override {
        @autoreleasepool {
            if (isLayoutDue_) {
                layOut();
            }
            handOverPicture(window_.get());
            activation_->noteOpening(window_.get());
            [window_.get() makeKeyAndOrderFront:nil];
            if ([window_.get() firstResponder] == window_.get()) {
                [window_.get() selectKeyViewFollowingView:[window_.get() contentView]];
            }
        }
    }

    void close() override {
        @autoreleasepool {
            [window_.get() close];
        }
    }

private:
    void titledWindowWillClose() override { activation_->noteClosing(window_.get()); }

    void titledWindowDidClose() override { owner_->windowDidClose(); }

    void layOut() {
        isLayoutDue_ = false;
        controls_->realize(owner_->form(contentSize_));
        // A window without one arranges its views for the tabulator itself when it first shows.
        [window_.get() setInitialFirstResponder:controls_->firstUsable()];
    }

    void handleUse(const std::string& controlId, double value) {
        owner_->controlChanged(controlId, value);
        layOut();
    }

    MainLoop* mainLoop_;
    ActivationLoan* activation_;
    FormOwner* owner_;
    Size contentSize_;
    ObjCHandle<TarvexTitledWindow*> window_;
    std::unique_ptr<FormRealizer> controls_;
    bool isLayoutDue_ = false;
    /// Ends with the window, which tells a posted call that nobody wants it any more.
    std::shared_ptr<const bool> life_ = std::make_shared<const bool>(true);
};

} // namespace

std::unique_ptr<FormWindow> AppKitFormWindowPlatform::makeFormWindow(const FormWindowAttributes& attributes,
                                                                     FormOwner& owner) {
    return std::make_unique<AppKitFormWindow>(*mainLoop_, *activation_, attributes, owner);
}

void AppKitFormWindowPlatform::activateIgnoringOtherApps() {
    activateApplication();
}

} // namespace tarvex
