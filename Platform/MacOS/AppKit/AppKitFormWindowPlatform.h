#pragma once

#include "App/Toolkit/FormWindow.h"
#include "App/Toolkit/MainLoop.h"

namespace tarvex {

class ActivationLoan;

/// Titled windows with AppKit's own controls.
class AppKitFormWindowPlatform final : public FormWindowPlatform {
public:
    /// The main loop and the loan, which all windows of the program share, must outlive the platform and its
    /// windows.
    AppKitFormWindowPlatform(MainLoop& mainLoop, ActivationLoan& activation)
        : mainLoop_(&mainLoop), activation_(&activation) {}

    [[nodiscard]] std::unique_ptr<FormWindow> makeFormWindow(const FormWindowAttributes& attributes,
                                                             FormOwner& owner) override;

    void activateIgnoringOtherApps() override;

private:
    MainLoop* mainLoop_;
    ActivationLoan* activation_;
};

} // namespace tarvex
