#pragma once

#include <string>

namespace tarvex {

/// The user's folders as the system names them. Each is asked for afresh.
class UserDirectories {
public:
    /// Where programs keep their data, ~/Library/Application Support as a rule; it is made if need be. Empty
    /// when the system names none.
    [[nodiscard]] static std::string applicationSupport();

    /// ~/Library as a rule; below the user's home when the system names none.
    [[nodiscard]] static std::string library();
};

} // namespace tarvex
