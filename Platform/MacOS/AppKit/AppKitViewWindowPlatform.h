#pragma once

#include "App/Toolkit/MainLoop.h"
#include "App/Toolkit/View.h"

namespace tarvex {

/// Borderless windows of AppKit that take input.
class AppKitViewWindowPlatform final : public ViewWindowPlatform {
public:
    /// The main loop must outlive the platform and its windows.
    explicit AppKitViewWindowPlatform(MainLoop& mainLoop) : mainLoop_(&mainLoop) {}

    [[nodiscard]] std::unique_ptr<ViewWindow> makeViewWindow(const WindowAttributes& attributes,
                                                             View& view) override;

    void activateIgnoringOtherApps() override;

private:
    MainLoop* mainLoop_;
};

} // namespace tarvex
