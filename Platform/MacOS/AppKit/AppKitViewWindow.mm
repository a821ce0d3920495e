#include "Platform/MacOS/AppKit/AppKitViewWindow.h"

#include "Platform/MacOS/AppKit/AppKitApplication.h"
#include "Platform/MacOS/AppKit/AppKitViewWindowPlatform.h"
#include "Platform/MacOS/AppKit/NativeGeometry.h"
#include "Platform/MacOS/AppKit/SceneRenderer.h"

#include <utility>

namespace tarvex {

AppKitViewWindow::AppKitViewWindow(MainLoop& mainLoop, const WindowAttributes& attributes, View& view)
    : mainLoop_(&mainLoop),
      view_(&view),
      screensChanged_([this](id /*notification*/) { view_->screensChanged(); }) {
    @autoreleasepool {
        const NSRect bounds = NSMakeRect(0, 0, attributes.contentRect.width, attributes.contentRect.height);
        canvas_ =
            ObjCHandle<TarvexCanvasView*>::adopt([[TarvexCanvasView alloc] initWithFrame:bounds
                                                                                   owner:this
                                                                                   input:CanvasInput::all]);
        window_ = makeNativeWindow(attributes, canvas_.get());
        controls_ = std::make_unique<FormRealizer>(
            canvas_.get(),
            [this](const std::string& controlId, double /*value*/) { view_->controlActivated(controlId); });
        [window_.get() makeFirstResponder:canvas_.get()];
        [[NSNotificationCenter defaultCenter] addObserver:screensChanged_.object()
                                                 selector:ActionTarget::selector()
                                                     name:NSApplicationDidChangeScreenParametersNotification
                                                   object:nil];
    }
}

AppKitViewWindow::~AppKitViewWindow() {
    @autoreleasepool {
        [[NSNotificationCenter defaultCenter] removeObserver:screensChanged_.object()];
        [canvas_.get() forgetOwner];
        if ([window_.get() isKeyWindow]) {
            activation_.giveBack(window_.get());
        }
        [window_.get() close];
        keepForThisTurn(window_.get());
    }
}

Rect AppKitViewWindow::frame() const {
    return rectOf([window_.get() frame]);
}

void AppKitViewWindow::setNeedsDisplay() {
    @autoreleasepool {
        [canvas_.get() setNeedsDisplay:YES];
    }
    if (!std::exchange(isFormDue_, true)) {
        mainLoop_->post([this, life = std::weak_ptr<const bool>(life_)] {
            if (!life.expired() && isFormDue_) {
                realizeForm();
            }
        });
    }
}

void AppKitViewWindow::makeKeyAndOrderFront() {
    @autoreleasepool {
        activation_.borrow();
        realizeForm();
        [window_.get() makeFirstResponder:canvas_.get()];
        handOverPicture(window_.get());
        [window_.get() makeKeyAndOrderFront:nil];
    }
}

void AppKitViewWindow::draw() {
    drawScene(view_->draw());
}

void AppKitViewWindow::realizeForm() {
    isFormDue_ = false;
    controls_->realize(view_->form());
}

std::unique_ptr<ViewWindow> AppKitViewWindowPlatform::makeViewWindow(const WindowAttributes& attributes,
                                                                     View& view) {
    return std::make_unique<AppKitViewWindow>(*mainLoop_, attributes, view);
}

void AppKitViewWindowPlatform::activateIgnoringOtherApps() {
    activateApplication();
}

} // namespace tarvex
