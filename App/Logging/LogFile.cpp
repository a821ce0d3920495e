#include "App/Logging/LogFile.h"

#include <exception>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <system_error>
#include <utility>
#include <vector>

namespace tarvex {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view temporarySuffix = ".tmp";

// The folder and its parents. Those that are new are open to their owner alone, as the XDG base directory
// rules ask.
void createPrivateFolders(const fs::path& folder) {
    if (folder.empty() || fs::exists(folder)) {
        return;
    }
    createPrivateFolders(folder.parent_path());
    if (fs::create_directory(folder)) {
        fs::permissions(folder, fs::perms::owner_all);
    }
}

// Removes the file on the way out; one that was renamed is gone already.
class TemporaryPath {
public:
    explicit TemporaryPath(fs::path target) : path_(std::move(target)) {
        std::random_device device;
        path_ += "." + std::to_string(device());
        path_ += temporarySuffix;
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

// Whether the name is one that a TemporaryPath gives to a file beside the target.
bool isTemporaryName(std::string_view name, std::string_view target) {
    if (name.size() <= target.size() + 1 + temporarySuffix.size() || !name.starts_with(target) ||
        !name.ends_with(temporarySuffix)) {
        return false;
    }
    name.remove_prefix(target.size());
    name.remove_suffix(temporarySuffix.size());
    return name.front() == '.' && name.find_first_not_of("0123456789", 1) == std::string_view::npos;
}

// Removes what a process left behind that ended in the middle of a cut. One that is cutting at this moment
// loses its cut.
void removeAbandonedFiles(const fs::path& target) {
    const std::string name = target.filename().string();
    std::vector<fs::path> abandoned;
    for (const fs::directory_entry& entry : fs::directory_iterator(target.parent_path())) {
        if (isTemporaryName(entry.path().filename().string(), name) &&
            fs::is_regular_file(entry.symlink_status())) {
            abandoned.push_back(entry.path());
        }
    }
    for (const fs::path& path : abandoned) {
        std::error_code ignored;
        fs::remove(path, ignored);
    }
}

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
    removeAbandonedFiles(target);
    const TemporaryPath temporary(target);
    if (writeWithPermissionsOf(target, temporary.path(), content)) {
        fs::rename(temporary.path(), target);
    }
}

} // namespace

LogFile::LogFile(std::string path) : path_(std::move(path)) {
    try {
        createPrivateFolders(fs::path(path_).parent_path());
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
