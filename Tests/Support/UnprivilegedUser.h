#pragma once

#include <cstdlib>
#include <filesystem>
#include <unistd.h>

namespace tarvex {

/// While it lives, the process acts as a user whom file permissions bind, also when the superuser runs the
/// test; the given folder is handed to that user. Where the superuser may not change, nothing changes, and
/// isBoundByPermissions() tells which of the two holds.
class UnprivilegedUser {
public:
    explicit UnprivilegedUser(const std::filesystem::path& folder) {
        constexpr uid_t nobody = 65534;
        if (geteuid() == 0 && chown(folder.c_str(), nobody, static_cast<gid_t>(-1)) == 0) {
            isChanged_ = seteuid(nobody) == 0;
        }
    }

    UnprivilegedUser(const UnprivilegedUser&) = delete;
    UnprivilegedUser& operator=(const UnprivilegedUser&) = delete;
    UnprivilegedUser(UnprivilegedUser&&) = delete;
    UnprivilegedUser& operator=(UnprivilegedUser&&) = delete;

    ~UnprivilegedUser() {
        if (isChanged_ && seteuid(0) != 0) {
            std::abort();
        }
    }

    /// False for a superuser who may not change, whom permissions do not bind.
    [[nodiscard]] static bool isBoundByPermissions() { return geteuid() != 0; }

private:
    bool isChanged_ = false;
};

} // namespace tarvex
