#pragma once

#include <cstdint>

namespace tarvex {

/// What the system knows of the program as a login item (Apple, SMAppService.Status).
enum class LoginItemStatus : std::uint8_t {
    notRegistered = 0,
    enabled = 1,
    requiresApproval = 2,
    notFound = 3
};

/// Whether the program counts as a login item; one that still waits for approval does.
[[nodiscard]] constexpr bool isRegistered(LoginItemStatus status) {
    return status == LoginItemStatus::enabled || status == LoginItemStatus::requiresApproval;
}

/// Port: the system's registry of what is started at login.
class LoginItemPlatform {
public:
    LoginItemPlatform() = default;
    LoginItemPlatform(const LoginItemPlatform&) = delete;
    LoginItemPlatform& operator=(const LoginItemPlatform&) = delete;
    LoginItemPlatform(LoginItemPlatform&&) = delete;
    LoginItemPlatform& operator=(LoginItemPlatform&&) = delete;
    virtual ~LoginItemPlatform() = default;

    /// Whether the program runs as an installed application; only then may it be a login item.
    [[nodiscard]] virtual bool isBundle() = 0;

    [[nodiscard]] virtual LoginItemStatus status() = 0;

    /// Both throw a std::exception when the system refuses.
    virtual void registerMainApplication() = 0;
    virtual void unregisterMainApplication() = 0;
};

} // namespace tarvex
