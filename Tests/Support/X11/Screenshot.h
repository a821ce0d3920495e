#pragma once

#include "Tests/Support/X11/XClient.h"

#include <cstdint>
#include <filesystem>
#include <vector>

namespace tarvex::test {

/// What stood on the screen when it was taken, without the pointer. Pixels are 0xRRGGBB.
class Screenshot {
public:
    /// Takes the picture now. Throws std::runtime_error when the server does not give it.
    explicit Screenshot(XClient& client);

    [[nodiscard]] int width() const { return width_; }

    [[nodiscard]] int height() const { return height_; }

    /// The colour at a point, which must lie on the screen.
    [[nodiscard]] std::uint32_t pixel(PixelPoint point) const;

    /// Whether any pixel has the colour.
    [[nodiscard]] bool contains(std::uint32_t color) const;

    /// How many pixels of the rectangle, cut to the screen, differ from those of another picture.
    [[nodiscard]] int countDifferences(const Screenshot& other, const PixelRect& area) const;

    /// Writes it as a PNG file.
    void savePng(const std::filesystem::path& path) const;

    bool operator==(const Screenshot&) const = default;

private:
    int width_ = 0;
    int height_ = 0;
    std::vector<std::uint32_t> pixels_;
};

} // namespace tarvex::test
