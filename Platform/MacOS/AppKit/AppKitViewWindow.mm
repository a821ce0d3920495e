#include "Platform/MacOS/AppKit/AppKitViewWindow.h"

#include "Platform/MacOS/AppKit/AppKitApplication.h"
#include "Platform/MacOS/AppKit/AppKitScreenPlatform.h"
#include "Platform/MacOS/AppKit/AppKitViewWindowPlatform.h"
#include "Platform/MacOS/AppKit/NativeGeometry.h"
#include "Platform/MacOS/AppKit/SceneRenderer.h"

#include <utility>

namespace tarvex {

namespace {

bool overlap(const Rect& one, const Rect& other) {
    return one.minX() < other.maxX() && other.minX() < one.maxX() && one.minY() < other.maxY() &&
           other.minY() < one.maxY();
}

std::vector<Screen> groundsOf(const Rect& frame) {
    std::vector<Screen> grounds = AppKitScreenPlatform().screens();
    std::erase_if(grounds, [&](const Screen& screen) { return !overlap(screen.frame, frame); });
    for (Screen& screen : grounds) {
        screen.localizedName.clear();
    }
    return grounds;
}

} // namespace

AppKitViewWindow::AppKitViewWindow(MainLoop& mainLoop, ActivationLoan& activation,
                                   const WindowAttributes& attributes, View& view)
    : mainLoop_(&mainLoop),
      activation_(&activation),
      view_(&view),
      grounds_(groundsOf(attributes.contentRect)),
      screensChanged_([this](id /*notification*/) { noteScreens(); }) {
    @autoreleasepool {
        const NSRect bounds = NSMakeRect(0, 0, attributes.contentRect.width, attributes.contentRect.height);
        canvas_ = ObjCHandle<TarvexCanvasView*>::adopt(
            [[TarvexCanvasView alloc] initTarvexWithFrame:bounds owner:this input:CanvasInput::all]);
        window_ = makeNativeWindow(attributes, canvas_.get());
        controls_ = std::make_unique<FormRealizer>(
            canvas_.get(), FirstClick::counts,
            [this](const std::string& controlId, double /*value*/) { view_->controlActivated(controlId); });
        [window_.get() setAccessibilityTitle:@"Zone Editor"];
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
        [canvas_.get() tarvexForgetOwner];
        activation_->noteClosing(window_.get());
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
        activation_->noteOpening(window_.get());
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

// The notice comes as well when a screen only becomes brighter (Apple, NSScreen,
// maximumExtendedDynamicRangeColorComponentValue).
void AppKitViewWindow::noteScreens() {
    const std::vector<Screen> grounds = groundsOf(frame());
    if (std::exchange(grounds_, grounds) != grounds) {
        view_->screensChanged();
    }
}

std::unique_ptr<ViewWindow> AppKitViewWindowPlatform::makeViewWindow(const WindowAttributes& attributes,
                                                                     View& view) {
    return std::make_unique<AppKitViewWindow>(*mainLoop_, *activation_, attributes, view);
}

void AppKitViewWindowPlatform::activateIgnoringOtherApps() {
    activateApplication();
}

} // namespace tarvex
