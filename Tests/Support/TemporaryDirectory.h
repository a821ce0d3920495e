#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace tarvex {

/// A new empty folder, removed with everything in it at the end.
class TemporaryDirectory {
public:
    /// @param base where to make it
    explicit TemporaryDirectory(const std::filesystem::path& base = std::filesystem::temp_directory_path()) {
        std::string name = (base / "tarvex-test-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("cannot make a temporary folder");
        }
        path_ = name;
    }

    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    TemporaryDirectory(TemporaryDirectory&&) = delete;
    TemporaryDirectory& operator=(TemporaryDirectory&&) = delete;

    ~TemporaryDirectory() {
        // Another thread of the process may still put a file there while the folder is emptied.
        std::error_code error;
        for (int attempt = 0; attempt < 3; ++attempt) {
            std::filesystem::remove_all(path_, error);
            if (!error) {
                return;
            }
        }
    }

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

    /// The path of something in the folder.
    [[nodiscard]] std::string path(std::string_view name) const { return (path_ / name).string(); }

    /// The names of what stands directly in the folder.
    [[nodiscard]] std::vector<std::string> entries() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path_)) {
            names.push_back(entry.path().filename().string());
        }
        return names;
    }

private:
    std::filesystem::path path_;
};

/// The whole content of a file; empty when it cannot be read.
inline std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// Writes the content over the file, which is created when it is missing.
inline void writeContent(const std::filesystem::path& path, std::string_view content) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    file.close();
    if (file.fail()) {
        throw std::runtime_error("cannot write " + path.string());
    }
}

} // namespace tarvex
