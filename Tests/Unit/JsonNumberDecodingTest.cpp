#include "Tests/Unit/JsonDecodingSamples.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tarvex {

namespace {

TEST(JsonNumberDecodingTest, ZeroAndOneAreNoBooleans) {
    for (const char* key : {"launchAtLogin", "hideMenuBarIcon", "restoreWindowSizeOnUnsnap"}) {
        EXPECT_NE(failure(documentWith(key, "0")), "") << key;
        EXPECT_NE(failure(documentWith(key, "1")), "") << key;
        EXPECT_EQ(failure(documentWith(key, "false")), "") << key;
    }
}

TEST(JsonNumberDecodingTest, ABooleanIsNoNumber) {
    for (const char* boolean : {"true", "false"}) {
        const std::string text(boolean);
        EXPECT_NE(failure(documentWith("cellMarginPoints", text)), "");
        EXPECT_NE(failure(documentWith("singleSnapModifiers", "{\"modifiers\":" + text + "}")), "");
        EXPECT_NE(failure(documentWith("openEditorHotkey", "{\"keyCode\":" + text + ",\"modifiers\":0}")),
                  "");
    }
}

TEST(JsonNumberDecodingTest, Unsigned32BitFieldsTakeWholeNumbersInEitherSpelling) {
    for (const auto& [text, value] :
         std::vector<std::pair<std::string, std::uint32_t>>{{"256", 256},
                                                            {"256.0", 256},
                                                            {"2.56e2", 256},
                                                            {"0", 0},
                                                            {"-0.0", 0},
                                                            {"4294967295", 4294967295},
                                                            {"4294967295.0", 4294967295}}) {
        const TarvexConfigRef config =
            decodeTarvexConfig(documentWith("singleSnapModifiers", "{\"modifiers\":" + text + "}"));
        EXPECT_EQ(config->singleSnapModifiers(), ModifierDefinition{value}) << text;
    }
}

TEST(JsonNumberDecodingTest, Unsigned32BitFieldsRefuseEverythingElse) {
    for (const char* text :
         {"256.5", "-1", "-1.0", "4294967296", "4294967296.0", "1e300", "-1e300", "1e-300",
          "18446744073709551615", "18446744073709551616", "-9223372036854775808", "\"256\""}) {
        const std::string value(text);
        EXPECT_NE(failure(documentWith("singleSnapModifiers", "{\"modifiers\":" + value + "}")), "") << text;
        EXPECT_NE(failure(documentWith("multiSnapModifiers", "{\"modifiers\":" + value + "}")), "") << text;
        EXPECT_NE(failure(documentWith("openEditorHotkey", "{\"keyCode\":" + value + ",\"modifiers\":0}")),
                  "")
            << text;
        EXPECT_NE(failure(documentWith("openEditorHotkey", "{\"modifiers\":" + value + ",\"keyCode\":0}")),
                  "")
            << text;
    }
}

TEST(JsonNumberDecodingTest, NumbersThatAreNotFiniteDoNotDecode) {
    for (const char* number : {"NaN", "nan", "Infinity", "-Infinity", "inf", "1e999", "-1e999", "\"NaN\"",
                               "\"Infinity\"", "0x10", "+1", ".5", "01", "1."}) {
        EXPECT_NE(failure(documentWith("cellMarginPoints", number)), "") << number;
        EXPECT_NE(failure(documentWith("grids",
                                       R"([{"id":"g","name":"n","horizontalSplits":[],"verticalSplits":[)" +
                                           std::string(number) + "]}]")),
                  "")
            << number;
    }
}

TEST(JsonNumberDecodingTest, MarginsAreTakenAsTheyStand) {
    for (const auto& [text, value] : std::vector<std::pair<std::string, double>>{
             {"8", 8}, {"8.0", 8}, {"-3.5", -3.5}, {"1e308", 1e308}, {"0", 0}}) {
        EXPECT_EQ(decodeTarvexConfig(documentWith("cellMarginPoints", text))->cellMarginPoints(), value)
            << text;
    }
}

} // namespace

} // namespace tarvex
