#pragma once

#include "Platform/Posix/PosixFileManager.h"
#include "Tests/Support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <sys/stat.h>

namespace tarvex {

/// A file manager, a folder to use it in, and the messages of its failures.
class PosixFileManagerFixture : public testing::Test {
protected:
    // The message of the FileError; empty when nothing is thrown.
    [[nodiscard]] static std::string errorOf(const std::function<void()>& action) {
        try {
            action();
        } catch (const FileError& error) {
            return error.what();
        }
        return "";
    }

    [[nodiscard]] std::string readError(const std::string& path) {
        return errorOf([&] { static_cast<void>(files.readFile(path)); });
    }

    [[nodiscard]] std::string writeError(const std::string& path) {
        return errorOf([&] { files.writeFileAtomically(path, "new"); });
    }

    [[nodiscard]] std::string createError(const std::string& path) {
        return errorOf([&] { files.createDirectory(path); });
    }

    TemporaryDirectory folder;
    PosixFileManager files{folder.path("support")};
};

/// The permission bits of what stands at the path, links followed.
inline mode_t modeOf(const std::filesystem::path& path) {
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

} // namespace tarvex
