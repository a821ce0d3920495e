#include "App/Logging/LogFile.h"

#include <exception>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <system_error>
#include <utility>

namespace tarvex {

namespace {

namespace fs = std::filesystem;

// Removes the file on the way out; one that was renamed is gone already.
class TemporaryPath {
public:
    explicit TemporaryPath(fs::path target) : path_(std::move(target)) {
        std::random_device device;
        path_ += "." + std::to_string(device()) + ".tmp";
    }

    TemporaryPath(const TemporaryPath&) = delete;
    TemporaryPath& operator=(const TemporaryPath&) = delete;
    TemporaryPath(TemporaryPath&&) = delete;
    TemporaryPath& operator=(TemporaryPath&&) = delete;

    ~TemporaryPath() {
        std::error_code ignored;
        fs::remove(path_, ignored);
    }

    [[nodiscard]] const fs::path& path() const { return path_; }

private:
    fs::path path_;
};

// The last bytes of a file that is at least as large; none when they cannot be read.
std::optional<std::string> readTail(const fs::path& path, std::uint64_t fileSize, std::uint64_t tailSize) {
    std::ifstream file(path, std::ios::binary);
    std::string tail(static_cast<std::size_t>(tailSize), '\0');
    file.seekg(static_cast<std::streamoff>(fileSize - tailSize));
    file.read(tail.data(), static_cast<std::streamsize>(tailSize));
    return file ? std::optional(std::move(tail)) : std::nullopt;
}

// Throws filesystem_error when the permissions cannot be read or set.
bool writeWithPermissionsOf(const fs::path& model, const fs::path& path, std::string_view content) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    if (!file) {
        return false;
    }
    fs::permissions(path, fs::status(model).permissions());
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    file.close();
    return !file.fail();
}

void replaceContent(const fs::path& path, std::string_view content) {
    const fs::path target = fs::canonical(path);
    const TemporaryPath temporary(target);
    if (writeWithPermissionsOf(target, temporary.path(), content)) {
        fs::rename(temporary.path(), target);
    }
}

} // namespace

LogFile::LogFile(std::string path) : path_(std::move(path)) {
    try {
        fs::create_directories(fs::path(path_).parent_path());
    } catch (const std::exception&) {
        return;
    }
}

void LogFile::append(std::string_view line) const {
    try {
        writeLineToEnd(line);
        truncateIfNeeded();
    } catch (const std::exception&) {
        return;
    }
}

void LogFile::writeLineToEnd(std::string_view line) const {
    // Opening a pipe would wait for its reader, and every later line with it.
    const fs::file_status status = fs::status(path_);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        return;
    }
    std::ofstream file(path_, std::ios::binary | std::ios::app);
    file.write(line.data(), static_cast<std::streamsize>(line.size()));
}

void LogFile::truncateIfNeeded() const {
    const std::uint64_t size = fs::file_size(path_);
    if (size <= maxFileSizeBytes) {
        return;
    }
    if (const std::optional<std::string> tail = readTail(path_, size, targetFileSizeBytes)) {
        replaceContent(path_, trimToLineBoundary(*tail));
    }
}

std::string_view LogFile::trimToLineBoundary(std::string_view tail) {
    const std::size_t lineFeed = tail.find('\n');
    return lineFeed == std::string_view::npos ? tail : tail.substr(lineFeed + 1);
}

} // namespace tarvex
