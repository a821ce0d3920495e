#include "Core/Displays/DisplayIdentifier.h"

#include "Core/Configuration/JsonCoding.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <limits>

namespace tarvex {

namespace {

TEST(DisplayIdentifierTest, StableIdNamesVendorProductAndSerial) {
    EXPECT_EQ(DisplayIdentifier(1234, 5678, 90123).stableId(), "v1234-p5678-s90123");
}

TEST(DisplayIdentifierTest, StableIdWithoutASerialNumber) {
    EXPECT_EQ(DisplayIdentifier(1234, 5678, std::nullopt).stableId(), "v1234-p5678-sno-serial");
}

TEST(DisplayIdentifierTest, StableIdIsPlainDecimal) {
    EXPECT_EQ(DisplayIdentifier(0, 7, 0).stableId(), "v0-p7-s0");
    EXPECT_EQ(DisplayIdentifier(4294967295, 4294967295, 4294967295).stableId(),
              "v4294967295-p4294967295-s4294967295");
    EXPECT_EQ(DisplayIdentifier(-1, -2, -3).stableId(), "v-1-p-2-s-3");
}

TEST(DisplayIdentifierTest, EqualityLooksAtAllThreeNumbers) {
    const DisplayIdentifier identifier(1, 2, 3);
    EXPECT_EQ(identifier, DisplayIdentifier(1, 2, 3));
    EXPECT_NE(identifier, DisplayIdentifier(9, 2, 3));
    EXPECT_NE(identifier, DisplayIdentifier(1, 9, 3));
    EXPECT_NE(identifier, DisplayIdentifier(1, 2, 9));
}

TEST(DisplayIdentifierTest, AnAbsentSerialNumberEqualsOnlyAnAbsentOne) {
    EXPECT_EQ(DisplayIdentifier(1, 2, std::nullopt), DisplayIdentifier(1, 2, std::nullopt));
    EXPECT_NE(DisplayIdentifier(1, 2, std::nullopt), DisplayIdentifier(1, 2, 0));
}

TEST(DisplayIdentifierTest, EncodesItsNumbersAndLeavesOutAnAbsentSerial) {
    EXPECT_EQ(encodeJson(DisplayIdentifier(1, 2, 3)).dump(),
              R"({"vendorId":1,"productId":2,"serialNumber":3})");
    EXPECT_EQ(encodeJson(DisplayIdentifier(1, 2, std::nullopt)).dump(), R"({"vendorId":1,"productId":2})");
}

TEST(DisplayIdentifierTest, DecodesWhatItEncodes) {
    for (const DisplayIdentifier& identifier :
         {DisplayIdentifier(1, 2, 3), DisplayIdentifier(1, 2, std::nullopt),
          DisplayIdentifier(std::numeric_limits<std::int64_t>::min(), 0,
                            std::numeric_limits<std::int64_t>::max())}) {
        EXPECT_EQ(decodeDisplayIdentifier(encodeJson(identifier)), identifier);
    }
}

TEST(DisplayIdentifierTest, VendorAndProductAreRequired) {
    using nlohmann::json;
    EXPECT_EQ(decodeDisplayIdentifier(json::parse(R"({"vendorId":1,"productId":2,"serialNumber":null})")),
              DisplayIdentifier(1, 2, std::nullopt));
    EXPECT_THROW(static_cast<void>(decodeDisplayIdentifier(json::parse(R"({"productId":2})"))),
                 DecodingError);
    EXPECT_THROW(static_cast<void>(decodeDisplayIdentifier(json::parse(R"({"vendorId":1})"))), DecodingError);
    EXPECT_THROW(static_cast<void>(decodeDisplayIdentifier(
                     json::parse(R"({"vendorId":1,"productId":2,"serialNumber":"3"})"))),
                 DecodingError);
}

} // namespace

} // namespace tarvex
