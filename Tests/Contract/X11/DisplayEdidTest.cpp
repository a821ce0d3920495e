#include "Platform/Linux/X11/Edid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace tarvex {
namespace {

constexpr std::array<std::size_t, 4> descriptorOffsets{54, 72, 90, 108};

// The base block of a monitor of maker "DEL", product 0xA0B1, serial number 0x12345678, without a name.
std::vector<std::uint8_t> makeBlock() {
    std::vector<std::uint8_t> block(128);
    const std::array<std::uint8_t, 16> start{0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00,
                                             0x10, 0xAC, 0xB1, 0xA0, 0x78, 0x56, 0x34, 0x12};
    std::copy(start.begin(), start.end(), block.begin());
    return block;
}

void putDescriptor(std::vector<std::uint8_t>& block, std::size_t place, std::uint8_t tag,
                   std::string_view text) {
    const auto at = block.begin() + static_cast<std::ptrdiff_t>(descriptorOffsets.at(place));
    *(at + 3) = tag;
    std::copy_n(text.begin(), std::min<std::size_t>(text.size(), 13), at + 5);
}

std::string nameOf(std::string_view descriptorText) {
    auto block = makeBlock();
    putDescriptor(block, 1, 0xFC, descriptorText);
    const auto edid = parseEdid(block);
    return edid ? edid->name : "no identification data";
}

TEST(DisplayEdid, NumbersAreReadInTheirOwnByteOrders) {
    EXPECT_EQ(parseEdid(makeBlock()), (Edid{0x10AC, 0xA0B1, 0x12345678, ""}));
}

TEST(DisplayEdid, LargestNumbersAreKept) {
    auto block = makeBlock();
    std::fill(block.begin() + 8, block.begin() + 16, std::uint8_t{0xFF});
    EXPECT_EQ(parseEdid(block), (Edid{0xFFFF, 0xFFFF, 0xFFFFFFFF, ""}));
}

TEST(DisplayEdid, MissingSerialNumberIsZero) {
    auto block = makeBlock();
    std::fill(block.begin() + 12, block.begin() + 16, std::uint8_t{0});
    EXPECT_EQ(parseEdid(block), (Edid{0x10AC, 0xA0B1, 0, ""}));
}

TEST(DisplayEdid, EveryTruncationIsRefused) {
    const auto block = makeBlock();
    for (std::size_t size = 0; size < block.size(); ++size) {
        EXPECT_FALSE(parseEdid({block.data(), size}).has_value()) << size;
    }
    EXPECT_TRUE(parseEdid(block).has_value());
}

TEST(DisplayEdid, ExtensionBlocksAreNotLookedAt) {
    auto block = makeBlock();
    block.resize(256, 0xFC);
    EXPECT_EQ(parseEdid(block), (Edid{0x10AC, 0xA0B1, 0x12345678, ""}));
}

TEST(DisplayEdid, EveryByteOfTheHeaderCounts) {
    for (std::size_t index = 0; index < 8; ++index) {
        auto block = makeBlock();
        block[index] ^= 0x01U;
        EXPECT_FALSE(parseEdid(block).has_value()) << index;
    }
}

TEST(DisplayEdid, WrongChecksumIsTolerated) {
    auto block = makeBlock();
    block[127] = 0x5A;
    EXPECT_TRUE(parseEdid(block).has_value());
}

TEST(DisplayEdid, NameIsFoundInEveryDescriptor) {
    for (std::size_t place = 0; place < descriptorOffsets.size(); ++place) {
        auto block = makeBlock();
        putDescriptor(block, place, 0xFC, "Studio 27\n   ");
        const auto edid = parseEdid(block);
        ASSERT_TRUE(edid.has_value());
        EXPECT_EQ(edid->name, "Studio 27") << place;
    }
}

TEST(DisplayEdid, OtherDescriptorsAreNoNames) {
    auto block = makeBlock();
    putDescriptor(block, 0, 0xFF, "SN-1234\n     ");
    putDescriptor(block, 1, 0xFE, "some text\n   ");
    // A video timing: its pixel clock is not zero, whatever stands in the tag's place.
    putDescriptor(block, 2, 0xFC, "timing\n      ");
    block[descriptorOffsets[2]] = 0x01;
    const auto edid = parseEdid(block);
    ASSERT_TRUE(edid.has_value());
    EXPECT_EQ(edid->name, "");
}

TEST(DisplayEdid, NameIsTrimmed) {
    EXPECT_EQ(nameOf("  Wide  34  \n"), "Wide  34");
    EXPECT_EQ(nameOf("             "), "");
    EXPECT_EQ(nameOf("\n            "), "");
}

TEST(DisplayEdid, NameMayFillTheDescriptor) {
    EXPECT_EQ(nameOf("Thirteen char"), "Thirteen char");
}

TEST(DisplayEdid, NameEndsAtZero) {
    EXPECT_EQ(nameOf(std::string_view("Short\0junk   ", 13)), "Short");
}

TEST(DisplayEdid, NameIsPlainAscii) {
    EXPECT_EQ(nameOf("A\xFF"
                     "B\x01"
                     "C\n"),
              "ABC");
}

} // namespace
} // namespace tarvex
