#include "Platform/Linux/DesktopEntry.h"

#include <utility>

namespace tarvex {

namespace {

constexpr std::string_view groupHeader = "[Desktop Entry]";
constexpr std::string_view blanks = " \t\r";

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// The key and the value of a line; both empty for a comment, a header or nonsense.
std::pair<std::string_view, std::string_view> keyAndValue(std::string_view line) {
    const std::size_t sign = line.find('=');
    if (sign == std::string_view::npos || trimmed(line).starts_with('#')) {
        return {};
    }
    return {trimmed(line.substr(0, sign)), trimmed(line.substr(sign + 1))};
}

// The escapes of values of type string: \s, \n, \t, \r and \\.
std::string unescaped(std::string_view value) {
    std::string result;
    for (std::size_t index = 0; index < value.size(); ++index) {
        if (value[index] != '\\' || index + 1 == value.size()) {
            result += value[index];
            continue;
        }
        switch (const char code = value[++index]) {
        case 's':
            result += ' ';
            break;
        case 'n':
            result += '\n';
            break;
        case 't':
            result += '\t';
            break;
        case 'r':
            result += '\r';
            break;
        default:
            result += code;
        }
    }
    return result;
}

std::string escaped(std::string_view value) {
    std::string result;
    for (const char character : value) {
        switch (character) {
        case '\\':
            result += "\\\\";
            break;
        case '\n':
            result += "\\n";
            break;
        case '\t':
            result += "\\t";
            break;
        case '\r':
            result += "\\r";
            break;
        default:
            result += character;
        }
    }
    return result;
}

} // namespace

DesktopEntry::DesktopEntry() : lines_{std::string(groupHeader)} {}

std::optional<DesktopEntry> DesktopEntry::parse(std::string_view text) {
    DesktopEntry entry;
    entry.lines_.clear();
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        entry.lines_.emplace_back(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    }
    return entry.group() ? std::optional(std::move(entry)) : std::nullopt;
}

std::string DesktopEntry::text() const {
    std::string result;
    for (const std::string& line : lines_) {
        result += line + '\n';
    }
    return result;
}

std::optional<DesktopEntry::Range> DesktopEntry::group() const {
    std::size_t index = 0;
    while (index < lines_.size() && trimmed(lines_[index]) != groupHeader) {
        ++index;
    }
    if (index == lines_.size()) {
        return std::nullopt;
    }
    const std::size_t begin = ++index;
    while (index < lines_.size() && !trimmed(lines_[index]).starts_with('[')) {
        ++index;
    }
    return Range{begin, index};
}

std::optional<std::string> DesktopEntry::value(std::string_view key) const {
    const Range range = group().value_or(Range{});
    for (std::size_t index = range.end; index > range.begin; --index) {
        const auto [name, value] = keyAndValue(lines_[index - 1]);
        if (name == key) {
            return std::string(value);
        }
    }
    return std::nullopt;
}

bool DesktopEntry::flag(std::string_view key, bool fallback) const {
    const std::optional<std::string> text = value(key);
    // Numbers are how old files have it.
    if (text == "true" || text == "1") {
        return true;
    }
    return text == "false" || text == "0" ? false : fallback;
}

void DesktopEntry::set(std::string_view key, std::string_view value) {
    remove(key);
    std::size_t place = group().value_or(Range{}).end;
    // Above the empty lines that part the group from the next.
    while (place > 0 && trimmed(lines_[place - 1]).empty()) {
        --place;
    }
    const auto position = lines_.begin() + static_cast<std::ptrdiff_t>(place);
    lines_.insert(position, std::string(key).append("=").append(value));
}

void DesktopEntry::remove(std::string_view key) {
    const Range range = group().value_or(Range{});
    for (std::size_t index = range.end; index > range.begin; --index) {
        if (keyAndValue(lines_[index - 1]).first == key) {
            lines_.erase(lines_.begin() + static_cast<std::ptrdiff_t>(index - 1));
        }
    }
}

std::string DesktopEntry::execOf(const std::string& program) {
    // Desktop Entry Specification, "The Exec key": the argument is quoted first, then escaped as any string.
    // A percent sign would start a field code.
    std::string quoted = "\"";
    for (const char character : program) {
        if (std::string_view("\"`$\\").find(character) != std::string_view::npos) {
            quoted += '\\';
        }
        quoted += character;
        if (character == '%') {
            quoted += '%';
        }
    }
    return escaped(quoted + '"');
}

std::string DesktopEntry::programOf(std::string_view exec) {
    const std::string line = unescaped(exec);
    const bool isQuoted = line.starts_with('"');
    std::string program;
    for (std::size_t index = isQuoted ? 1 : 0; index < line.size(); ++index) {
        const bool hasNext = index + 1 < line.size();
        if (isQuoted && line[index] == '\\' && hasNext) {
            program += line[++index];
        } else if (line[index] == '%' && hasNext && line[index + 1] == '%') {
            program += line[index++];
        } else if (isQuoted ? line[index] == '"' : blanks.find(line[index]) != std::string_view::npos) {
            break;
        } else {
            program += line[index];
        }
    }
    return program;
}

} // namespace tarvex
