#pragma once

#include "App/Shell/AboutViewController.h"

#include <memory>

namespace tarvex {

/// Owns the about window, which is made once, hidden, and shown again and again.
class AboutWindowController {
public:
    /// The platform must outlive the controller.
    AboutWindowController(std::unique_ptr<AboutViewController> aboutViewController,
                          FormWindowPlatform& windows);

    [[nodiscard]] FormWindow& window() { return *window_; }

private:
    std::unique_ptr<AboutViewController> aboutViewController_;
    std::unique_ptr<FormWindow> window_;
};

} // namespace tarvex
