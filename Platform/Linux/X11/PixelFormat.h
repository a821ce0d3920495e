#pragma once

#include "Platform/Linux/X11/XConnection.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tarvex {

/// How the server wants the pixels of an image of a certain depth, in Z format. Pixels of the program are
/// 0xAARRGGBB, premultiplied.
class PixelFormat {
public:
    /// None when the server's pixels are not of 16 or 32 bits in this machine's byte order.
    [[nodiscard]] static std::optional<PixelFormat> find(const XConnection& connection, std::uint8_t depth,
                                                         xcb_visualid_t visual);

    [[nodiscard]] std::uint8_t depth() const { return depth_; }

    /// From the start of a row of an image to that of the next.
    [[nodiscard]] std::size_t bytesPerRow(int width) const;

    /// Appends a row of pixels as the server wants them.
    void appendRow(std::span<const std::uint32_t> pixels, std::vector<std::uint8_t>& bytes) const;

    /// Reads a row of an image of the server's; the pixels become opaque.
    void readRow(const std::uint8_t* bytes, std::span<std::uint32_t> pixels) const;

private:
    struct Channel {
        int shift = 0;
        std::uint32_t highest = 0;
    };

    [[nodiscard]] static Channel channelOf(std::uint32_t mask);

    std::uint8_t depth_ = 0;
    std::size_t bytesPerPixel_ = 0;
    std::size_t rowAlignment_ = 1;
    /// The server's pixels are the program's.
    bool isPlain_ = false;
    Channel red_;
    Channel green_;
    Channel blue_;
};

} // namespace tarvex
