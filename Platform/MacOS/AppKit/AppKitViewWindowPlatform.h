#pragma once

#include "App/Toolkit/MainLoop.h"
#include "App/Toolkit/View.h"

namespace tarvex {

class ActivationLoan;

/// Borderless windows of AppKit that take input.
class AppKitViewWindowPlatform final : public ViewWindowPlatform {
public:
    /// The main loop and the loan, which all windows of the program share, must outlive the platform and its
    /// windows.
    AppKitViewWindowPlatform(MainLoop& mainLoop, ActivationLoan& activation)
        : mainLoop_(&mainLoop), activation_(&activation) {}

    [[nodiscard]] std::unique_ptr<ViewWindow> makeViewWindow(const WindowAttributes& attributes,
                                                             View& view) override;

    void activateIgnoringOtherApps() override;

private:
    MainLoop* mainLoop_;
    ActivationLoan* activation_;
};

} // namespace tarvex
