#include "Tests/Support/X11/Screenshot.h"

#include "Tests/Support/X11/ChildProcess.h"
#include "Tests/Support/X11/ScratchDirectory.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>

namespace tarvex::test {

Screenshot::Screenshot(XClient& client)
    : width_{client.screen().width_in_pixels}, height_{client.screen().height_in_pixels} {
    const Owned<xcb_get_image_reply_t> image(xcb_get_image_reply(
        client.connection(),
        xcb_get_image(client.connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, client.root(), 0, 0,
                      client.screen().width_in_pixels, client.screen().height_in_pixels, ~0U),
        nullptr));
    const auto count = static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
    if (!image || static_cast<std::size_t>(xcb_get_image_data_length(image.get())) != count * 4) {
        throw std::runtime_error("the X server gave no picture of its screen");
    }
    pixels_.resize(count);
    std::memcpy(pixels_.data(), xcb_get_image_data(image.get()), count * 4);
    for (std::uint32_t& pixel : pixels_) {
        pixel &= 0xFFFFFFU;
    }
}

std::uint32_t Screenshot::pixel(PixelPoint point) const {
    if (point.x < 0 || point.y < 0 || point.x >= width_ || point.y >= height_) {
        throw std::out_of_range("a point off the screen has no colour");
    }
    return pixels_[static_cast<std::size_t>(point.y) * static_cast<std::size_t>(width_) +
                   static_cast<std::size_t>(point.x)];
}

bool Screenshot::contains(std::uint32_t color) const {
    return std::ranges::find(pixels_, color) != pixels_.end();
}

int Screenshot::countDifferences(const Screenshot& other, const PixelRect& area) const {
    int count = 0;
    for (int y = std::max(area.y, 0); y < std::min(area.y + area.height, height_); ++y) {
        for (int x = std::max(area.x, 0); x < std::min(area.x + area.width, width_); ++x) {
            count += pixel({x, y}) != other.pixel({x, y}) ? 1 : 0;
        }
    }
    return count;
}

void Screenshot::savePng(const std::filesystem::path& path) const {
    std::string text = "P6\n" + std::to_string(width_) + " " + std::to_string(height_) + "\n255\n";
    for (const std::uint32_t pixel : pixels_) {
        text += static_cast<char>(pixel >> 16U);
        text += static_cast<char>((pixel >> 8U) & 0xFFU);
        text += static_cast<char>(pixel & 0xFFU);
    }
    const ScratchDirectory scratch;
    Command command;
    command.arguments = {"convert", scratch.write("screen.ppm", text).string(),
                         std::filesystem::absolute(path).string()};
    ChildProcess convert(command);
    if (convert.waitForExit() != ExitStatus{0, std::nullopt}) {
        throw std::runtime_error("cannot write " + path.string() + ": " + convert.standardError());
    }
}

} // namespace tarvex::test
