#include "App/Shell/PreferencesWindowController.h"

#include <utility>

namespace tarvex {

namespace {

FormWindowAttributes makeAttributes() {
    FormWindowAttributes attributes;
    attributes.title = "Preferences";
    attributes.styleMask = 3;
    attributes.contentSize = {640, 500};
    return attributes;
}

} // namespace

PreferencesWindowController::PreferencesWindowController(
    std::shared_ptr<PreferencesViewController> viewController, FormWindowPlatform& windows)
    : viewController_(std::move(viewController)) {
    viewController_->viewDidLoad();
    window_ = windows.makeFormWindow(makeAttributes(), *viewController_);
    viewController_->setWindowActions([this] { window_->close(); }, [this] { window_->setNeedsLayout(); });
}

} // namespace tarvex
