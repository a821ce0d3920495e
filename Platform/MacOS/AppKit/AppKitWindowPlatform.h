#pragma once

#include "App/Toolkit/MainLoop.h"
#include "App/Toolkit/Window.h"

namespace tarvex {

/// Borderless windows of AppKit. One point is one point of the screen, whatever its scale.
class AppKitWindowPlatform final : public WindowPlatform {
public:
    /// The main loop must outlive the platform and its windows.
    explicit AppKitWindowPlatform(MainLoop& mainLoop) : mainLoop_(&mainLoop) {}

    [[nodiscard]] std::unique_ptr<Window> makeWindow(const WindowAttributes& attributes) override;

private:
    MainLoop* mainLoop_;
};

} // namespace tarvex
