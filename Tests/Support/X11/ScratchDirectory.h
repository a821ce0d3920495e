#pragma once

#include <filesystem>
#include <string>

namespace tarvex::test {

/// A new empty directory, private to the user, that is removed with everything in it.
class ScratchDirectory {
public:
    ScratchDirectory();
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;
    ScratchDirectory(ScratchDirectory&&) = delete;
    ScratchDirectory& operator=(ScratchDirectory&&) = delete;
    ~ScratchDirectory();

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

    /// A folder in it, made when it does not exist yet.
    [[nodiscard]] std::filesystem::path folder(const std::string& name) const;

    /// Writes a file in it, with the folders above it, and returns its path.
    std::filesystem::path write(const std::filesystem::path& relativePath, const std::string& text) const;

private:
    std::filesystem::path path_;
};

} // namespace tarvex::test
