#pragma once

#include "App/Shell/PreferencesViewController.h"

#include <memory>

namespace tarvex {

/// Owns the preferences window, which is made once, hidden, and shown again and again.
class PreferencesWindowController {
public:
    /// The platform must outlive the controller.
    PreferencesWindowController(std::shared_ptr<PreferencesViewController> viewController,
                                FormWindowPlatform& windows);

    [[nodiscard]] FormWindow& window() { return *window_; }

    [[nodiscard]] PreferencesViewController& viewController() { return *viewController_; }

private:
    std::shared_ptr<PreferencesViewController> viewController_;
    std::unique_ptr<FormWindow> window_;
};

} // namespace tarvex
