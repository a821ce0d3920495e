#include "Core/Configuration/JsonCoding.h"
#include "Tests/Support/RandomSource.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace tarvex {

namespace {

using nlohmann::json;

const double nan = std::numeric_limits<double>::quiet_NaN();
const double infinity = std::numeric_limits<double>::infinity();

GridDefinitionRef decodeGrid(const char* text) {
    return decodeGridDefinition(json::parse(text));
}

TEST(GridJsonCodingTest, GridWritesExactlyItsKeysInOrder) {
    EXPECT_EQ(encodeJson(GridDefinition("g1", "Work", {0.5}, {})).dump(),
              R"({"id":"g1","name":"Work","verticalSplits":[0.5],"horizontalSplits":[]})");
}

TEST(GridJsonCodingTest, CellWritesExactlyItsKeysInOrder) {
    EXPECT_EQ(encodeJson(GridCell(1, 2, {0.25, 0.5, 0.125, 0.75})).dump(),
              R"({"rowIndex":1,"columnIndex":2,"rect":{"x":0.25,"y":0.5,"width":0.125,"height":0.75}})");
}

TEST(GridJsonCodingTest, PointWritesExactlyItsKeysInOrder) {
    EXPECT_EQ(encodeJson(NormalizedPoint(0.25, 0.75)).dump(), R"({"x":0.25,"y":0.75})");
}

TEST(GridJsonCodingTest, OrientationIsABareString) {
    EXPECT_EQ(encodeJson(GridLineOrientation::horizontal).dump(), R"("horizontal")");
    EXPECT_EQ(encodeJson(GridLineOrientation::vertical).dump(), R"("vertical")");
    EXPECT_EQ(decodeGridLineOrientation(json("vertical")), GridLineOrientation::vertical);
    EXPECT_EQ(decodeGridLineOrientation(json("horizontal")), GridLineOrientation::horizontal);
}

TEST(GridJsonCodingTest, OrientationWithACapitalDoesNotDecode) {
    for (const json& wrong :
         {json("Horizontal"), json(""), json(nullptr), json(0), json::array({"vertical"})}) {
        EXPECT_THROW(static_cast<void>(decodeGridLineOrientation(wrong)), DecodingError) << wrong;
    }
}

TEST(GridJsonCodingTest, OutOfRangeSplitsDecodeUnchanged) {
    const GridDefinitionRef grid =
        decodeGrid(R"({"id":"g","name":"","verticalSplits":[1.5, -2, 0.5, 0.5],"horizontalSplits":[]})");
    EXPECT_EQ(grid->verticalSplits(), (std::vector{1.5, -2.0, 0.5, 0.5}));
    EXPECT_TRUE(grid->horizontalSplits().empty());
}

TEST(GridJsonCodingTest, UnknownKeysArePassedOver) {
    const GridDefinitionRef grid = decodeGrid(
        R"({"colour":{"r":1},"id":"g","name":"n","verticalSplits":[],"horizontalSplits":[0.5],"ID":7})");
    EXPECT_EQ(grid->id(), "g");
    EXPECT_EQ(grid->horizontalSplits(), std::vector{0.5});
}

TEST(GridJsonCodingTest, WholeNumbersAreSplitsToo) {
    EXPECT_EQ(
        decodeGrid(R"({"id":"g","name":"n","verticalSplits":[0,1],"horizontalSplits":[]})")->verticalSplits(),
        (std::vector{0.0, 1.0}));
}

TEST(GridJsonCodingTest, EveryKeyOfAGridIsRequired) {
    const json whole = json::parse(R"({"id":"g","name":"n","verticalSplits":[0.5],"horizontalSplits":[]})");
    for (const char* key : {"id", "name", "verticalSplits", "horizontalSplits"}) {
        json missing = whole;
        missing.erase(key);
        EXPECT_THROW(static_cast<void>(decodeGridDefinition(missing)), DecodingError) << key;
        json null = whole;
        null[key] = nullptr;
        EXPECT_THROW(static_cast<void>(decodeGridDefinition(null)), DecodingError) << key;
        json object = whole;
        object[key] = json::object();
        EXPECT_THROW(static_cast<void>(decodeGridDefinition(object)), DecodingError) << key;
        json boolean = whole;
        boolean[key] = true;
        EXPECT_THROW(static_cast<void>(decodeGridDefinition(boolean)), DecodingError) << key;
    }
}

TEST(GridJsonCodingTest, EverySplitMustBeANumber) {
    for (const char* split : {"null", "true", "\"0.5\"", "[0.5]", "{}"}) {
        const std::string text = R"({"id":"g","name":"n","verticalSplits":[0.25,)" + std::string(split) +
                                 R"(],"horizontalSplits":[]})";
        EXPECT_THROW(static_cast<void>(decodeGrid(text.c_str())), DecodingError) << split;
    }
}

TEST(GridJsonCodingTest, AGridThatIsNoObjectDoesNotDecode) {
    for (const char* text : {"null", "[]", "\"default\"", "7", "true"}) {
        EXPECT_THROW(static_cast<void>(decodeGrid(text)), DecodingError) << text;
    }
}

TEST(GridJsonCodingTest, EveryKeyOfACellAndItsRectIsRequired) {
    const json whole =
        json::parse(R"({"rowIndex":1,"columnIndex":2,"rect":{"x":0,"y":0,"width":1,"height":1}})");
    EXPECT_EQ(decodeGridCell(whole), GridCell(1, 2, {0, 0, 1, 1}));
    for (const char* key : {"rowIndex", "columnIndex", "rect"}) {
        json missing = whole;
        missing.erase(key);
        EXPECT_THROW(static_cast<void>(decodeGridCell(missing)), DecodingError) << key;
        json text = whole;
        text[key] = "1";
        EXPECT_THROW(static_cast<void>(decodeGridCell(text)), DecodingError) << key;
        json null = whole;
        null[key] = nullptr;
        EXPECT_THROW(static_cast<void>(decodeGridCell(null)), DecodingError) << key;
    }
    for (const char* key : {"x", "y", "width", "height"}) {
        json missing = whole;
        missing["rect"].erase(key);
        EXPECT_THROW(static_cast<void>(decodeGridCell(missing)), DecodingError) << key;
        json boolean = whole;
        boolean["rect"][key] = false;
        EXPECT_THROW(static_cast<void>(decodeGridCell(boolean)), DecodingError) << key;
        json null = whole;
        null["rect"][key] = nullptr;
        EXPECT_THROW(static_cast<void>(decodeGridCell(null)), DecodingError) << key;
    }
}

TEST(GridJsonCodingTest, EveryKeyOfAPointIsRequired) {
    EXPECT_EQ(decodeNormalizedPoint(json::parse(R"({"x":0.25,"y":1})")), NormalizedPoint(0.25, 1));
    for (const char* text : {R"({"x":1})", R"({"y":1})", R"({"x":1,"y":null})", R"({"x":null,"y":1})",
                             R"({"x":"1","y":1})", "null", "[1,1]"}) {
        EXPECT_THROW(static_cast<void>(decodeNormalizedPoint(json::parse(text))), DecodingError) << text;
    }
}

TEST(GridJsonCodingTest, UnknownKeysOfCellsRectsAndPointsArePassedOver) {
    EXPECT_EQ(decodeGridCell(json::parse(R"({"rowIndex":1,"z":null,"columnIndex":2,"name":"n",
                  "rect":{"x":0,"y":0.5,"width":1,"height":0.5,"depth":[1],"X":7}})")),
              GridCell(1, 2, {0, 0.5, 1, 0.5}));
    EXPECT_EQ(decodeNormalizedPoint(json::parse(R"({"z":{},"x":0.25,"Y":3,"y":1})")),
              NormalizedPoint(0.25, 1));
}

TEST(GridJsonCodingTest, ColumnsAreWholeNumbersToo) {
    const auto decodeColumn = [](const std::string& column) {
        return decodeGridCell(json::parse(R"({"rowIndex":0,"columnIndex":)" + column +
                                          R"(,"rect":{"x":0,"y":0,"width":1,"height":1}})"))
            .columnIndex();
    };
    EXPECT_EQ(decodeColumn("4.0"), 4);
    for (const char* column : {"0.5", "-1.25", "1e300", "9223372036854775808", "false", "[]"}) {
        EXPECT_THROW(static_cast<void>(decodeColumn(column)), DecodingError) << column;
    }
}

TEST(GridJsonCodingTest, CellIndicesAreWhole64BitNumbers) {
    const auto decodeRow = [](const char* row) {
        const std::string text = R"({"rowIndex":)" + std::string(row) +
                                 R"(,"columnIndex":0,"rect":{"x":0,"y":0,"width":1,"height":1}})";
        return decodeGridCell(json::parse(text)).rowIndex();
    };
    EXPECT_EQ(decodeRow("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(decodeRow("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(decodeRow("3.0"), 3);
    EXPECT_EQ(decodeRow("-1"), -1);
    for (const char* row : {"9223372036854775808", "-9223372036854777856", "9223372036854775808.0", "0.5",
                            "1e300", "true", "null"}) {
        EXPECT_THROW(static_cast<void>(decodeRow(row)), DecodingError) << row;
    }
}

TEST(GridJsonCodingTest, UndefinedAndInfiniteNumbersAreNotEncoded) {
    for (const double value : {nan, infinity, -infinity}) {
        EXPECT_THROW(static_cast<void>(encodeJson(GridDefinition("g", "n", {0.5, value}, {}))),
                     EncodingError);
        EXPECT_THROW(static_cast<void>(encodeJson(GridDefinition("g", "n", {}, {value}))), EncodingError);
        EXPECT_THROW(static_cast<void>(encodeJson(NormalizedPoint(value, 0))), EncodingError);
        EXPECT_THROW(static_cast<void>(encodeJson(NormalizedPoint(0, value))), EncodingError);
        EXPECT_THROW(static_cast<void>(encodeJson(NormalizedRect(value, 0, 1, 1))), EncodingError);
        EXPECT_THROW(static_cast<void>(encodeJson(NormalizedRect(0, value, 1, 1))), EncodingError);
        EXPECT_THROW(static_cast<void>(encodeJson(NormalizedRect(0, 0, value, 1))), EncodingError);
        EXPECT_THROW(static_cast<void>(encodeJson(NormalizedRect(0, 0, 1, value))), EncodingError);
        EXPECT_THROW(static_cast<void>(encodeJson(GridCell(0, 0, {0, 0, value, 1}))), EncodingError);
    }
}

TEST(GridJsonCodingTest, ErrorsNameTheKey) {
    try {
        static_cast<void>(decodeGrid(R"({"id":"g","name":"n","verticalSplits":[]})"));
        FAIL() << "a grid without horizontalSplits decoded";
    } catch (const DecodingError& error) {
        EXPECT_STREQ(error.what(), "\"horizontalSplits\" of a grid is missing");
    }
    try {
        static_cast<void>(encodeJson(GridDefinition("g", "n", {nan}, {})));
        FAIL() << "an undefined number was encoded";
    } catch (const EncodingError& error) {
        EXPECT_STREQ(error.what(), "\"verticalSplits\" is not a finite number");
    }
}

// Through text, as a file takes it.
template <typename Value>
json throughText(const Value& value) {
    return json::parse(encodeJson(value).dump());
}

TEST(GridJsonCodingTest, RandomValuesComeBackExactly) {
    for (std::uint32_t seed = 1; seed <= 1000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSource random(seed);
        const GridDefinition grid(random.text(), random.text(), random.splits(20), random.splits(20));
        const GridDefinitionRef decodedGrid = decodeGridDefinition(throughText(grid));
        ASSERT_EQ(decodedGrid->id(), grid.id());
        ASSERT_EQ(decodedGrid->name(), grid.name());
        ASSERT_EQ(decodedGrid->verticalSplits(), grid.verticalSplits());
        ASSERT_EQ(decodedGrid->horizontalSplits(), grid.horizontalSplits());

        const NormalizedRect rect(random.between(-1, 2), random.between(-1e300, 1e300),
                                  random.between(0, 1e-300), random.unit());
        ASSERT_EQ(decodeNormalizedRect(throughText(rect)), rect);
        const GridCell cell(random.integer(std::numeric_limits<std::int64_t>::min(),
                                           std::numeric_limits<std::int64_t>::max()),
                            random.integer(std::int64_t{0}, std::int64_t{100}), rect);
        ASSERT_EQ(decodeGridCell(throughText(cell)), cell);
        const NormalizedPoint point(random.unit(), random.unit());
        ASSERT_EQ(decodeNormalizedPoint(throughText(point)), point);
    }
}

} // namespace

} // namespace tarvex
