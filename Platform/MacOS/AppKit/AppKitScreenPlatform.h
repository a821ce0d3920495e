#pragma once

#include "Core/Displays/ScreenPlatform.h"

namespace tarvex {

/// The screens of AppKit, whose coordinates are those of screen space. Main thread only.
class AppKitScreenPlatform final : public ScreenPlatform {
public:
    [[nodiscard]] std::vector<Screen> screens() override;

    /// The screen of the window that has the keyboard, in whatever program.
    [[nodiscard]] std::optional<Screen> mainScreen() override;
};

} // namespace tarvex
