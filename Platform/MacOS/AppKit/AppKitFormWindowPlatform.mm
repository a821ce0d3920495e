#include "Platform/MacOS/AppKit/AppKitFormWindowPlatform.h"

#include "Platform/MacOS/AppKit/AppKitApplication.h"
#include "Platform/MacOS/AppKit/FormRealizer.h"
#include "Platform/MacOS/AppKit/Guarded.h"
#include "Platform/MacOS/AppKit/NativeGeometry.h"
#include "Platform/MacOS/AppKit/NativeText.h"
#include "Platform/MacOS/AppKit/NativeWindow.h"

#import <AppKit/AppKit.h>
#include <functional>
#include <utility>

/// A window that tells when it was closed: the toolkit's notice comes while it is still to be seen.
@interface TarvexTitledWindow : NSWindow {
    const std::function<void()>* closed_;
}
/// @param closed its owner takes it away again before it goes; null for nobody
- (void)setClosed:(const std::function<void()>*)closed;
@end

@implementation TarvexTitledWindow

- (void)setClosed:(const std::function<void()>*)closed {
    closed_ = closed;
}

// The title bar and the keyboard close it through this, too.
- (void)close {
    const bool wasOpen = [self isVisible] == YES;
    [super close];
    if (wasOpen && closed_ != nullptr) {
        tarvex::callGuarded(*closed_);
    }
}

@end

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
    return window;
}

class AppKitFormWindow final : public FormWindow {
public:
    AppKitFormWindow(MainLoop& mainLoop, const FormWindowAttributes& attributes, FormOwner& owner)
        : mainLoop_(&mainLoop), owner_(&owner), contentSize_(attributes.contentSize) {
        @autoreleasepool {
            window_ = makeTitledWindow(attributes);
            controls_ = std::make_unique<FormRealizer>(
                [window_.get() contentView],
                [this](const std::string& controlId, double value) { handleUse(controlId, value); });
            layOut();
            [window_.get() setClosed:&closed_];
        }
    }

    AppKitFormWindow(const AppKitFormWindow&) = delete;
    AppKitFormWindow& operator=(const AppKitFormWindow&) = delete;
    AppKitFormWindow(AppKitFormWindow&&) = delete;
    AppKitFormWindow& operator=(AppKitFormWindow&&) = delete;

    ~AppKitFormWindow() override {
        @autoreleasepool {
            [window_.get() setClosed:nullptr];
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
    void layOut() {
        isLayoutDue_ = false;
        controls_->realize(owner_->form(contentSize_));
    }

    void handleUse(const std::string& controlId, double value) {
        owner_->controlChanged(controlId, value);
        layOut();
    }

    MainLoop* mainLoop_;
    FormOwner* owner_;
    Size contentSize_;
    std::function<void()> closed_ = [this] { owner_->windowDidClose(); };
    ObjCHandle<TarvexTitledWindow*> window_;
    std::unique_ptr<FormRealizer> controls_;
    bool isLayoutDue_ = false;
    /// Ends with the window, which tells a posted call that nobody wants it any more.
    std::shared_ptr<const bool> life_ = std::make_shared<const bool>(true);
};

} // namespace

std::unique_ptr<FormWindow> AppKitFormWindowPlatform::makeFormWindow(const FormWindowAttributes& attributes,
                                                                     FormOwner& owner) {
    return std::make_unique<AppKitFormWindow>(*mainLoop_, attributes, owner);
}

void AppKitFormWindowPlatform::activateIgnoringOtherApps() {
    activateApplication();
}

} // namespace tarvex
