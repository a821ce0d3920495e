#pragma once

#include "App/Shell/ApplicationController.h"

#include <memory>
#include <utility>

namespace tarvex {

/// What the platform tells of the program's life.
class AppDelegate {
public:
    explicit AppDelegate(std::shared_ptr<ApplicationController> applicationController)
        : applicationController_(std::move(applicationController)) {}

    void applicationDidFinishLaunching() { applicationController_->start(); }

    /// A program without windows goes on.
    [[nodiscard]] static bool applicationShouldTerminateAfterLastWindowClosed() { return false; }

private:
    std::shared_ptr<ApplicationController> applicationController_;
};

} // namespace tarvex
