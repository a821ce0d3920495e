#include "Platform/Linux/X11/Edid.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tarvex {

namespace {

constexpr std::array<std::uint8_t, 8> header{0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00};
constexpr std::size_t vendorOffset = 8;
constexpr std::size_t productOffset = 10;
constexpr std::size_t serialOffset = 12;

constexpr std::size_t firstDescriptorOffset = 54;
constexpr std::size_t descriptorSize = 18;
constexpr std::size_t descriptorCount = 4;
constexpr std::size_t descriptorTextOffset = 5;
constexpr std::uint8_t nameTag = 0xFC;

// A descriptor that is no video timing begins with a pixel clock of zero; its fourth byte says what it is.
bool isNameDescriptor(std::span<const std::uint8_t> descriptor) {
    return descriptor[0] == 0 && descriptor[1] == 0 && descriptor[2] == 0 && descriptor[3] == nameTag;
}

std::string textOf(std::span<const std::uint8_t> descriptor) {
    std::string text;
    for (const std::uint8_t byte : descriptor.subspan(descriptorTextOffset)) {
        if (byte == '\n' || byte == 0) {
            break;
        }
        // The text is ASCII; anything else would not be valid UTF-8 on its way to the screen.
        if (byte >= ' ' && byte <= '~') {
            text += static_cast<char>(byte);
        }
    }
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? std::string{}
                                      : text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

std::string nameIn(std::span<const std::uint8_t> data) {
    for (std::size_t index = 0; index < descriptorCount; ++index) {
        const auto descriptor = data.subspan(firstDescriptorOffset + index * descriptorSize, descriptorSize);
        if (isNameDescriptor(descriptor)) {
            return textOf(descriptor);
        }
    }
    return {};
}

std::uint32_t littleEndian(std::span<const std::uint8_t> bytes) {
    std::uint32_t value = 0;
    for (std::size_t index = bytes.size(); index > 0; --index) {
        value = value << 8U | bytes[index - 1];
    }
    return value;
}

} // namespace

std::optional<Edid> parseEdid(std::span<const std::uint8_t> data) {
    if (data.size() < edidBlockSize || !std::equal(header.begin(), header.end(), data.begin())) {
        return std::nullopt;
    }
    Edid edid;
    edid.vendor = static_cast<std::uint32_t>(data[vendorOffset]) << 8U | data[vendorOffset + 1];
    edid.product = littleEndian(data.subspan(productOffset, 2));
    edid.serial = littleEndian(data.subspan(serialOffset, 4));
    edid.name = nameIn(data);
    return edid;
}

} // namespace tarvex
