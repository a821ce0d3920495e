#pragma once

#include "App/Shell/LoginItemPlatform.h"

namespace tarvex {

/// The application's own entry among the login items of the Service Management framework.
class ServiceLoginItem final : public LoginItemPlatform {
public:
    [[nodiscard]] bool isBundle() override;
    [[nodiscard]] LoginItemStatus status() override;
    /// Registering what is registered, and unregistering what is not, changes nothing.
    void registerMainApplication() override;
    void unregisterMainApplication() override;
};

} // namespace tarvex
