#pragma once

#include "App/Toolkit/FormWindow.h"
#include "App/Toolkit/MainLoop.h"

namespace tarvex {

/// Titled windows with AppKit's own controls.
class AppKitFormWindowPlatform final : public FormWindowPlatform {
public:
    /// The main loop must outlive the platform and its windows.
    explicit AppKitFormWindowPlatform(MainLoop& mainLoop) : mainLoop_(&mainLoop) {}

    [[nodiscard]] std::unique_ptr<FormWindow> makeFormWindow(const FormWindowAttributes& attributes,
                                                             FormOwner& owner) override;

    void activateIgnoringOtherApps() override;

private:
    MainLoop* mainLoop_;
};

} // namespace tarvex
