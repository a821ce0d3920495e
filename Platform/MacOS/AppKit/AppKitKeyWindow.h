#pragma once

#include "App/Toolkit/KeyWindowPlatform.h"

namespace tarvex {

/// The application's key window.
class AppKitKeyWindow final : public KeyWindowPlatform {
public:
    [[nodiscard]] std::optional<std::string> keyWindowTitle() const override;
};

} // namespace tarvex
