#pragma once

namespace tarvex {

/// What start-up has to do about the stored wish to be launched at login.
struct LaunchAtLoginSyncResult {
    /// The stored wish disagrees with the system and is to be rewritten.
    bool shouldUpdatePreference = false;
    /// The value to store, always the system's.
    bool updatedValue = false;

    bool operator==(const LaunchAtLoginSyncResult&) const = default;
};

/// Reconciles the stored wish with the system's registry of login items, which the user can change elsewhere.
/// The system wins.
class LaunchAtLoginSyncHelper {
public:
    LaunchAtLoginSyncHelper() = delete;

    [[nodiscard]] static constexpr LaunchAtLoginSyncResult computeSync(bool storedValue, bool systemValue) {
        return {storedValue != systemValue, systemValue};
    }
};

} // namespace tarvex
