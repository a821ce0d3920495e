#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvex {

/// A file of the Desktop Entry Specification, line by line: what is not asked about stays as it is. Keys are
/// those of the group "Desktop Entry"; the last of several counts.
class DesktopEntry {
public:
    /// An empty entry.
    DesktopEntry();

    /// None when the text has no group "Desktop Entry".
    [[nodiscard]] static std::optional<DesktopEntry> parse(std::string_view text);

    /// The whole file.
    [[nodiscard]] std::string text() const;

    /// The value as it stands in the file, without the spaces around it.
    [[nodiscard]] std::optional<std::string> value(std::string_view key) const;

    /// A truth value; the fallback for a key that is missing or has another value.
    [[nodiscard]] bool flag(std::string_view key, bool fallback) const;

    /// Replaces the value, or adds the key at the end of the group.
    void set(std::string_view key, std::string_view value);
    /// Takes the key away wherever it stands in the group.
    void remove(std::string_view key);

    /// The value of the key "Exec" that starts this program without arguments.
    [[nodiscard]] static std::string execOf(const std::string& program);

    /// The program that a value of the key "Exec" starts; empty when it names none.
    [[nodiscard]] static std::string programOf(std::string_view exec);

private:
    /// The lines of the group, without its header: [begin, end).
    struct Range {
        std::size_t begin = 0;
        std::size_t end = 0;
    };

    [[nodiscard]] std::optional<Range> group() const;

    std::vector<std::string> lines_;
};

} // namespace tarvex
