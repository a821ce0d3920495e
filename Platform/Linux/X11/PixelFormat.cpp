#include "Platform/Linux/X11/PixelFormat.h"

#include <bit>
#include <cstring>

namespace tarvex {

namespace {

constexpr std::uint32_t opaque = 0xFF000000;

const xcb_visualtype_t* findVisual(const xcb_screen_t& screen, xcb_visualid_t wanted) {
    for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem > 0; xcb_depth_next(&depths)) {
        for (auto types = xcb_depth_visuals_iterator(depths.data); types.rem > 0;
             xcb_visualtype_next(&types)) {
            if (types.data->visual_id == wanted) {
                return types.data;
            }
        }
    }
    return nullptr;
}

const xcb_format_t* findFormat(const xcb_setup_t& setup, std::uint8_t depth) {
    const int count = xcb_setup_pixmap_formats_length(&setup);
    const xcb_format_t* formats = xcb_setup_pixmap_formats(&setup);
    for (int index = 0; index < count; ++index) {
        if (formats[index].depth == depth) {
            return &formats[index];
        }
    }
    return nullptr;
}

} // namespace

std::optional<PixelFormat> PixelFormat::find(const XConnection& connection, std::uint8_t depth,
                                             xcb_visualid_t visual) {
    const xcb_setup_t& setup = *xcb_get_setup(connection.get());
    const xcb_format_t* format = findFormat(setup, depth);
    const xcb_visualtype_t* type = findVisual(connection.screen(), visual);
    const std::uint8_t ownOrder =
        std::endian::native == std::endian::little ? XCB_IMAGE_ORDER_LSB_FIRST : XCB_IMAGE_ORDER_MSB_FIRST;
    if (format == nullptr || type == nullptr || setup.image_byte_order != ownOrder ||
        (format->bits_per_pixel != 32 && format->bits_per_pixel != 16)) {
        return std::nullopt;
    }
    PixelFormat result;
    result.depth_ = depth;
    result.bytesPerPixel_ = format->bits_per_pixel / 8U;
    result.rowAlignment_ = format->scanline_pad / 8U;
    result.isPlain_ = format->bits_per_pixel == 32 && type->red_mask == 0xFF0000 &&
                      type->green_mask == 0xFF00 && type->blue_mask == 0xFF;
    result.red_ = channelOf(type->red_mask);
    result.green_ = channelOf(type->green_mask);
    result.blue_ = channelOf(type->blue_mask);
    return result;
}

PixelFormat::Channel PixelFormat::channelOf(std::uint32_t mask) {
    if (mask == 0) {
        return {};
    }
    const int shift = std::countr_zero(mask);
    return {shift, mask >> shift};
}

std::size_t PixelFormat::bytesPerRow(int width) const {
    const std::size_t bytes = static_cast<std::size_t>(width) * bytesPerPixel_;
    return (bytes + rowAlignment_ - 1) / rowAlignment_ * rowAlignment_;
}

void PixelFormat::appendRow(std::span<const std::uint32_t> pixels, std::vector<std::uint8_t>& bytes) const {
    const std::size_t start = bytes.size();
    bytes.resize(start + bytesPerRow(static_cast<int>(pixels.size())));
    if (isPlain_) {
        std::memcpy(&bytes[start], pixels.data(), pixels.size_bytes());
        return;
    }
    const auto placed = [](std::uint32_t channel, const Channel& place) {
        return (channel * place.highest + 127) / 255 << place.shift;
    };
    for (std::size_t index = 0; index < pixels.size(); ++index) {
        const std::uint32_t pixel = pixels[index];
        const std::uint32_t word = placed(pixel >> 16U & 0xFFU, red_) | placed(pixel >> 8U & 0xFFU, green_) |
                                   placed(pixel & 0xFFU, blue_);
        const auto half = static_cast<std::uint16_t>(word);
        const void* source = bytesPerPixel_ == sizeof half ? static_cast<const void*>(&half) : &word;
        std::memcpy(&bytes[start + index * bytesPerPixel_], source, bytesPerPixel_);
    }
}

void PixelFormat::readRow(const std::uint8_t* bytes, std::span<std::uint32_t> pixels) const {
    const auto channel = [](std::uint32_t word, const Channel& place) {
        return place.highest == 0 ? 0 : (word >> place.shift & place.highest) * 255 / place.highest;
    };
    for (std::size_t index = 0; index < pixels.size(); ++index) {
        std::uint32_t word = 0;
        if (bytesPerPixel_ == sizeof word) {
            std::memcpy(&word, bytes + index * sizeof word, sizeof word);
        } else {
            std::uint16_t half = 0;
            std::memcpy(&half, bytes + index * sizeof half, sizeof half);
            word = half;
        }
        pixels[index] = isPlain_ ? word | opaque
                                 : opaque | channel(word, red_) << 16U | channel(word, green_) << 8U |
                                       channel(word, blue_);
    }
}

} // namespace tarvex
