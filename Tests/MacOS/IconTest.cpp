#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tarvex {
namespace {

std::uint32_t numberAt(std::string_view bytes, std::size_t offset) {
    if (bytes.size() < 4 || offset > bytes.size() - 4) {
        throw std::runtime_error("the file ends too early");
    }
    std::uint32_t number = 0;
    for (std::size_t index = 0; index < 4; ++index) {
        number = number << 8U | static_cast<std::uint8_t>(bytes[offset + index]);
    }
    return number;
}

/// The check sum of a chunk (PNG specification, annex D).
std::uint32_t checkSum(std::string_view bytes) {
    constexpr std::uint32_t polynomial = 0xEDB88320;
    std::uint32_t sum = 0xFFFFFFFF;
    for (const char byte : bytes) {
        sum ^= static_cast<std::uint8_t>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum & 1U) != 0 ? sum >> 1U ^ polynomial : sum >> 1U;
        }
    }
    return ~sum;
}

/// A picture as the header of a PNG file tells of it.
struct Picture {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    bool hasAlpha = false;
    /// All chunks are whole, and the last one is the one that ends a picture.
    bool isWhole = false;
    std::size_t dataSize = 0;
};

Picture readPicture(std::string_view bytes) {
    Picture picture;
    constexpr std::string_view signature("\x89PNG\r\n\x1A\n", 8);
    if (!bytes.starts_with(signature)) {
        return picture;
    }
    std::string_view type;
    std::size_t offset = signature.size();
    while (offset < bytes.size()) {
        const std::size_t length = numberAt(bytes, offset);
        const std::string_view chunk = bytes.substr(offset + 4, length + 4);
        type = chunk.substr(0, 4);
        if (numberAt(bytes, offset + 8 + length) != checkSum(chunk)) {
            return picture;
        }
        if (type == "IHDR") {
            picture.width = numberAt(chunk, 4);
            picture.height = numberAt(chunk, 8);
            constexpr char trueColorWithAlpha = 6;
            picture.hasAlpha = chunk.at(12) == 8 && chunk.at(13) == trueColorWithAlpha;
        }
        picture.dataSize += type == "IDAT" ? length : 0;
        offset += 12 + length;
    }
    picture.isWhole = type == "IEND" && offset == bytes.size();
    return picture;
}

/// The file whose parts are a type, their length with this header, and what they hold.
class IconTest : public testing::Test {
protected:
    IconTest() {
        std::ifstream stream(TARVEX_MAC_ICON, std::ios::binary);
        file_.assign(std::istreambuf_iterator<char>(stream), {});
    }

    [[nodiscard]] std::map<std::string, Picture> pictures() const {
        std::map<std::string, Picture> pictures;
        std::size_t offset = 8;
        while (offset < file_.size()) {
            const std::size_t length = numberAt(file_, offset + 4);
            if (length < 8 || length > file_.size() - offset) {
                throw std::runtime_error("an entry is longer than the file");
            }
            pictures[file_.substr(offset, 4)] =
                readPicture(std::string_view(file_).substr(offset + 8, length - 8));
            offset += length;
        }
        return pictures;
    }

    std::string file_;
};

TEST_F(IconTest, FileSaysWhatItIsAndHowLong) {
    ASSERT_GT(file_.size(), 8U);
    EXPECT_EQ(file_.substr(0, 4), "icns");
    EXPECT_EQ(numberAt(file_, 4), file_.size());
}

TEST_F(IconTest, HasAWholePictureOfEverySize) {
    const std::map<std::string, std::uint32_t> sizes{{"ic07", 128},  {"ic08", 256}, {"ic09", 512},
                                                     {"ic10", 1024}, {"ic11", 32},  {"ic12", 64},
                                                     {"ic13", 256},  {"ic14", 512}};
    const std::map<std::string, Picture> present = pictures();
    EXPECT_EQ(present.size(), sizes.size());
    for (const auto& [type, size] : sizes) {
        ASSERT_TRUE(present.contains(type)) << type;
        const Picture& picture = present.at(type);
        EXPECT_EQ(picture.width, size) << type;
        EXPECT_EQ(picture.height, size) << type;
        EXPECT_TRUE(picture.hasAlpha) << type;
        EXPECT_TRUE(picture.isWhole) << type;
        EXPECT_GT(picture.dataSize, size) << type << " is one plain colour";
    }
}

} // namespace
} // namespace tarvex
