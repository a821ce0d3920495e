#include "Tests/MacOS/Fakes/Unicode.h"

#include <array>
#include <cstddef>

namespace tarvex::fake {

namespace {

bool isBetween(char32_t value, char32_t first, char32_t last) {
    return value >= first && value <= last;
}

void appendUtf16(std::u16string& text, char32_t character) {
    if (character < 0x10000) {
        text += static_cast<char16_t>(character);
        return;
    }
    text += static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10U));
    text += static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FFU));
}

void appendUtf8(std::string& bytes, char32_t character) {
    const auto tail = [&](unsigned shift) {
        bytes += static_cast<char>(0x80U | ((character >> shift) & 0x3FU));
    };
    if (character < 0x80) {
        bytes += static_cast<char>(character);
    } else if (character < 0x800) {
        bytes += static_cast<char>(0xC0U | (character >> 6U));
        tail(0);
    } else if (character < 0x10000) {
        bytes += static_cast<char>(0xE0U | (character >> 12U));
        tail(6);
        tail(0);
    } else {
        bytes += static_cast<char>(0xF0U | (character >> 18U));
        tail(12);
        tail(6);
        tail(0);
    }
}

/// How many bytes a character that starts with this one has; 0 when none does.
std::size_t lengthOf(unsigned char first) {
    if (first < 0x80) {
        return 1;
    }
    if (isBetween(first, 0xC2, 0xDF)) {
        return 2;
    }
    if (isBetween(first, 0xE0, 0xEF)) {
        return 3;
    }
    return isBetween(first, 0xF0, 0xF4) ? 4 : 0;
}

bool isCharacter(char32_t value, std::size_t length) {
    constexpr std::array<char32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
    return value >= smallest.at(length) && value <= 0x10FFFF && !isBetween(value, 0xD800, 0xDFFF);
}

} // namespace

std::optional<std::u16string> decodeUtf8(std::string_view bytes) {
    std::u16string text;
    for (std::size_t index = 0; index < bytes.size();) {
        const auto first = static_cast<unsigned char>(bytes[index]);
        const std::size_t length = lengthOf(first);
        if (length == 0 || index + length > bytes.size()) {
            return std::nullopt;
        }
        char32_t value = length == 1 ? first : first & (0x7FU >> length);
        for (std::size_t next = 1; next < length; ++next) {
            const auto byte = static_cast<unsigned char>(bytes[index + next]);
            if ((byte & 0xC0U) != 0x80U) {
                return std::nullopt;
            }
            value = (value << 6U) | (byte & 0x3FU);
        }
        if (!isCharacter(value, length)) {
            return std::nullopt;
        }
        appendUtf16(text, value);
        index += length;
    }
    return text;
}

std::string encodeUtf8(std::u16string_view text, char replacement) {
    std::string bytes;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const char16_t unit = text[index];
        const bool isPair = isBetween(unit, 0xD800, 0xDBFF) && index + 1 < text.size() &&
                            isBetween(text[index + 1], 0xDC00, 0xDFFF);
        if (isPair) {
            const char32_t high = unit - 0xD800U;
            const char32_t low = text[++index] - 0xDC00U;
            appendUtf8(bytes, 0x10000 + (high << 10U) + low);
        } else if (isBetween(unit, 0xD800, 0xDFFF)) {
            bytes += replacement;
        } else {
            appendUtf8(bytes, unit);
        }
    }
    return bytes;
}

std::u16string upperCased(std::u16string_view text) {
    std::u16string capitals;
    for (const char16_t unit : text) {
        if (unit == 0xDF) {
            capitals += u"SS";
        } else if (isBetween(unit, 'a', 'z') || (isBetween(unit, 0xE0, 0xFE) && unit != 0xF7) ||
                   isBetween(unit, 0x3B1, 0x3C9) || isBetween(unit, 0x430, 0x44F)) {
            capitals += static_cast<char16_t>(unit - 0x20);
        } else {
            capitals += unit;
        }
    }
    return capitals;
}

} // namespace tarvex::fake
