#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarvex {

/// A text file that only grows at its end and is cut at its start when it becomes too large. The file is
/// opened and closed for every line, so that it may be moved or deleted at any time. A symbolic link stays a
/// link. Failures are silent and cost at most the line or the cut at hand; anything but a regular file is a
/// failure. Nothing throws.
class LogFile {
public:
    /// A file larger than this is cut after a write.
    static constexpr std::uint64_t maxFileSizeBytes = 1'000'000;
    /// How much of the end a cut keeps, before it moves on to the start of a line.
    static constexpr std::uint64_t targetFileSizeBytes = 900'000;

    /// Creates the folder of the file, parents included, open to their owner alone; that it fails is no
    /// failure yet.
    explicit LogFile(std::string path);

    /// Appends the line, which brings its own line break, to the file, which is created when it is missing;
    /// then cuts it if it has grown too large.
    void append(std::string_view line) const;

    [[nodiscard]] const std::string& path() const { return path_; }

private:
    void writeLineToEnd(std::string_view line) const;
    void truncateIfNeeded() const;
    [[nodiscard]] static std::string_view trimToLineBoundary(std::string_view tail);

    std::string path_;
};

} // namespace tarvex
