#include "Core/Configuration/JsonCoding.h"
#include "Tests/Support/ConfigProperties.h"
#include "Tests/Unit/ConfigSamples.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <map>
#include <string>
#include <vector>

namespace tarvex {

namespace {

using nlohmann::json;

TarvexConfigRef decode(const json& document) {
    return decodeTarvexConfig(document.dump());
}

// The message of the failure; empty when the text decodes.
std::string failure(const std::string& text) {
    try {
        static_cast<void>(decodeTarvexConfig(text));
    } catch (const DecodingError& error) {
        return error.what();
    }
    return "";
}

// The minimal document with one key replaced by JSON text that the library itself could not hold.
std::string documentWith(const std::string& key, const std::string& value) {
    json document = minimalDocument();
    document[key] = "@";
    std::string text = document.dump();
    return text.replace(text.find("\"@\""), 3, value);
}

TEST(JsonDecodingTest, RequiredKeysAloneDecodeAndEveryOptionalIsAbsent) {
    const TarvexConfigRef config = decode(minimalDocument());
    EXPECT_EQ(config->cellMarginPoints(), 8);
    EXPECT_EQ(config->openEditorHotkey(), std::nullopt);
    EXPECT_EQ(config->openPreferencesHotkey(), std::nullopt);
    EXPECT_EQ(config->singleSnapModifiers(), std::nullopt);
    EXPECT_EQ(config->multiSnapModifiers(), std::nullopt);
    EXPECT_EQ(config->launchAtLogin(), std::nullopt);
    EXPECT_EQ(config->hideMenuBarIcon(), std::nullopt);
    EXPECT_EQ(config->restoreWindowSizeOnUnsnap(), std::nullopt);
}

TEST(JsonDecodingTest, EachRequiredKeyIsRequired) {
    for (const char* key : {"grids", "defaultGridByDisplayId", "cellMarginPoints"}) {
        json document = minimalDocument();
        document.erase(key);
        EXPECT_EQ(failure(document.dump()), "\"" + std::string(key) + "\" of the configuration is missing");
        document[key] = nullptr;
        EXPECT_EQ(failure(document.dump()), "\"" + std::string(key) + "\" of the configuration is missing");
    }
}

TEST(JsonDecodingTest, ARequiredKeyOfTheWrongTypeFails) {
    for (const char* wrong : {"true", "\"text\"", "7", "[]", "{}"}) {
        const bool isNumber = std::string(wrong) == "7";
        EXPECT_EQ(failure(documentWith("grids", wrong)).empty(), std::string(wrong) == "[]") << wrong;
        EXPECT_EQ(failure(documentWith("defaultGridByDisplayId", wrong)).empty(), std::string(wrong) == "{}")
            << wrong;
        EXPECT_EQ(failure(documentWith("cellMarginPoints", wrong)).empty(), isNumber) << wrong;
    }
}

TEST(JsonDecodingTest, KeysAreCaseSensitive) {
    json document = minimalDocument();
    document.erase("grids");
    document["Grids"] = json::array();
    EXPECT_NE(failure(document.dump()), "");
}

TEST(JsonDecodingTest, AnEmptyGridListDecodes) {
    EXPECT_TRUE(decode(minimalDocument())->grids().empty());
}

TEST(JsonDecodingTest, AGridThatDoesNotDecodeFailsTheDocument) {
    EXPECT_NE(failure(documentWith("grids", R"([{"id":"g","name":"n","verticalSplits":[]}])")), "");
    EXPECT_NE(failure(documentWith("grids", "[null]")), "");
    EXPECT_EQ(
        failure(documentWith("grids", R"([{"id":"","name":"","verticalSplits":[],"horizontalSplits":[]}])")),
        "");
}

TEST(JsonDecodingTest, GridAssignmentsAreTexts) {
    EXPECT_EQ(decodeTarvexConfig(documentWith("defaultGridByDisplayId", R"({"":"x","v1-p1-s1":""})"))
                  ->defaultGridByDisplayId(),
              (std::map<std::string, std::string>{{"", "x"}, {"v1-p1-s1", ""}}));
    for (const char* wrong : {R"({"v":1})", R"({"v":null})", R"({"v":["g"]})", R"({"v":true})"}) {
        EXPECT_NE(failure(documentWith("defaultGridByDisplayId", wrong)), "") << wrong;
    }
}

TEST(JsonDecodingTest, AnOptionalKeyWithNullIsAbsent) {
    json document = minimalDocument();
    for (const std::string& key : optionalKeys) {
        document[key] = nullptr;
    }
    EXPECT_TRUE(haveSameFields(*decode(document), *decode(minimalDocument())));
}

TEST(JsonDecodingTest, AMalformedOptionalFailsTheDocument) {
    for (const std::string& key : optionalKeys) {
        for (const char* wrong : {"\"text\"", "7", "[]"}) {
            EXPECT_NE(failure(documentWith(key, wrong)), "") << key << " " << wrong;
        }
        const bool isSwitch =
            key == "launchAtLogin" || key == "hideMenuBarIcon" || key == "restoreWindowSizeOnUnsnap";
        EXPECT_EQ(failure(documentWith(key, "true")).empty(), isSwitch) << key;
        EXPECT_NE(failure(documentWith(key, "{}")), "") << key;
    }
}

TEST(JsonDecodingTest, ZeroAndOneAreNoBooleans) {
    for (const char* key : {"launchAtLogin", "hideMenuBarIcon", "restoreWindowSizeOnUnsnap"}) {
        EXPECT_NE(failure(documentWith(key, "0")), "") << key;
        EXPECT_NE(failure(documentWith(key, "1")), "") << key;
        EXPECT_EQ(failure(documentWith(key, "false")), "") << key;
    }
}

TEST(JsonDecodingTest, ABooleanIsNoNumber) {
    for (const char* boolean : {"true", "false"}) {
        const std::string text(boolean);
        EXPECT_NE(failure(documentWith("cellMarginPoints", text)), "");
        EXPECT_NE(failure(documentWith("singleSnapModifiers", "{\"modifiers\":" + text + "}")), "");
        EXPECT_NE(failure(documentWith("openEditorHotkey", "{\"keyCode\":" + text + ",\"modifiers\":0}")),
                  "");
    }
}

TEST(JsonDecodingTest, AHotkeyNeedsBothNumbers) {
    for (const char* wrong : {R"({"keyCode":0})", R"({"modifiers":0})", R"({"keyCode":0,"modifiers":null})",
                              R"({"keyCode":"0","modifiers":0})"}) {
        EXPECT_NE(failure(documentWith("openEditorHotkey", wrong)), "") << wrong;
        EXPECT_NE(failure(documentWith("openPreferencesHotkey", wrong)), "") << wrong;
    }
}

TEST(JsonDecodingTest, KeyZeroWithoutModifiersIsAHotkey) {
    const TarvexConfigRef config =
        decodeTarvexConfig(documentWith("openEditorHotkey", R"({"keyCode":0,"modifiers":0})"));
    EXPECT_EQ(config->openEditorHotkey(), (HotkeyDefinition{0, 0}));
    EXPECT_EQ(json::parse(encodeTarvexConfig(*config))["openEditorHotkey"],
              json::parse(R"({"keyCode":0,"modifiers":0})"));
}

TEST(JsonDecodingTest, Unsigned32BitFieldsTakeWholeNumbersInEitherSpelling) {
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

TEST(JsonDecodingTest, Unsigned32BitFieldsRefuseEverythingElse) {
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

TEST(JsonDecodingTest, NumbersThatAreNotFiniteDoNotDecode) {
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

TEST(JsonDecodingTest, MarginsAreTakenAsTheyStand) {
    for (const auto& [text, value] : std::vector<std::pair<std::string, double>>{
             {"8", 8}, {"8.0", 8}, {"-3.5", -3.5}, {"1e308", 1e308}, {"0", 0}}) {
        EXPECT_EQ(decodeTarvexConfig(documentWith("cellMarginPoints", text))->cellMarginPoints(), value)
            << text;
    }
}

TEST(JsonDecodingTest, UnknownKeysArePassedOver) {
    json document = minimalDocument();
    document["theme"] = {{"dark", true}};
    document[""] = nullptr;
    EXPECT_TRUE(haveSameFields(*decode(document), *decode(minimalDocument())));
}

TEST(JsonDecodingTest, TextThatIsNoJsonFails) {
    for (const std::string& text :
         {std::string(), std::string(" \n\t"), std::string("hello"), std::string("{"), std::string("}"),
          std::string("{}{}"), minimalDocument().dump() + "x", std::string("{'grids':[]}"),
          std::string("\0", 1), minimalDocument().dump() + std::string(1, '\0'),
          std::string("// comment\n{}"), std::string("<plist/>")}) {
        EXPECT_NE(failure(text), "") << text;
    }
}

TEST(JsonDecodingTest, AFileWhoseEndWasFilledWithZerosFails) {
    const std::string whole = minimalDocument().dump();
    for (const std::size_t count : {1U, 4096U}) {
        EXPECT_EQ(failure(whole + std::string(count, '\0')), "the text holds a zero byte");
    }
    EXPECT_EQ(failure(whole + std::string(1, '\0') + "anything"), "the text holds a zero byte");
    EXPECT_EQ(failure(documentWith("name", "\"\\u0000\"")), "")
        << "an escaped one is a character like any other";
}

TEST(JsonDecodingTest, ADocumentThatIsNoObjectFails) {
    for (const char* text : {"null", "[]", "7", "\"text\"", "true", "[{}]"}) {
        EXPECT_EQ(failure(text), "the configuration is not an object") << text;
    }
    EXPECT_EQ(failure("{}"), "\"grids\" of the configuration is missing");
}

TEST(JsonDecodingTest, InvalidUtf8Fails) {
    for (const char* bytes : {"\xff", "\xc3", "\xc0\x80", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\x80"}) {
        EXPECT_NE(failure(documentWith("name", "\"" + std::string(bytes) + "\"")), "");
        EXPECT_NE(failure(std::string(bytes)), "");
    }
}

TEST(JsonDecodingTest, TruncatedAtEveryByte) {
    const std::string whole = encodeTarvexConfig(TarvexConfig(everyField()));
    ASSERT_EQ(failure(whole), "");
    for (std::size_t length = 0; length < whole.size(); ++length) {
        ASSERT_NE(failure(whole.substr(0, length)), "") << "the first " << length << " bytes decoded";
    }
}

// A value that opens so many levels and closes them again.
std::string nested(std::size_t depth, const std::string& opening, const std::string& closing) {
    std::string text;
    for (std::size_t level = 0; level < depth; ++level) {
        text += opening;
    }
    text += "0";
    for (std::size_t level = 0; level < depth; ++level) {
        text += closing;
    }
    return text;
}

const std::string tooDeep = "the text is nested more than 512 levels deep";

TEST(JsonDecodingTest, FiveHundredAndTwelveLevelsDecodeAndOneMoreDoesNot) {
    // The document itself is the first level.
    for (const auto& [opening, closing] :
         std::vector<std::pair<std::string, std::string>>{{"[", "]"}, {"{\"a\":", "}"}}) {
        EXPECT_EQ(failure(documentWith("extra", nested(511, opening, closing))), "") << opening;
        EXPECT_EQ(failure(documentWith("extra", nested(512, opening, closing))), tooDeep) << opening;
    }
    EXPECT_EQ(failure(nested(512, "[", "]")), "the configuration is not an object");
    EXPECT_EQ(failure(nested(513, "[", "]")), tooDeep);
}

TEST(JsonDecodingTest, DeeplyNestedTextIsRefusedWithoutBeingParsed) {
    constexpr std::size_t tenMillion = 10'000'000;
    EXPECT_EQ(failure(std::string(tenMillion, '[')), tooDeep);
    EXPECT_EQ(failure(documentWith("grids", nested(tenMillion, "[", "]"))), tooDeep);
    EXPECT_EQ(failure(documentWith("extra", nested(1'000'000, "{\"a\":", "}"))), tooDeep);
}

TEST(JsonDecodingTest, BracketsThatOpenNoLevelDoNotCount) {
    const std::string many(1000, '[');
    EXPECT_EQ(failure(documentWith("extra", "\"" + many + "\"")), "");
    EXPECT_EQ(failure(documentWith("extra", R"("\")" + many + R"(\\")")), "");
    EXPECT_EQ(failure(documentWith("extra", R"(["\\",)" + nested(511, "[", "]") + "]")), tooDeep)
        << "the string ends before the brackets";
    EXPECT_EQ(failure(documentWith(many, "0")), "");
    std::string siblings = "[[]";
    for (int count = 0; count < 1000; ++count) {
        siblings += ",{},[[]]";
    }
    EXPECT_EQ(failure(documentWith("extra", siblings + "]")), "");
    EXPECT_NE(failure(std::string(1000, ']')), "");
    EXPECT_EQ(failure(std::string(1000, '}') + nested(513, "[", "]")), tooDeep)
        << "what closes nothing pays for nothing";
}

TEST(JsonDecodingTest, AByteOrderMarkAtTheStartIsPassedOver) {
    const std::string text = minimalDocument().dump();
    EXPECT_EQ(failure("\xEF\xBB\xBF" + text), "");
    EXPECT_NE(failure("\xEF\xBB" + text), "");
    EXPECT_NE(failure(text + "\xEF\xBB\xBF"), "");
    EXPECT_NE(failure("\xFF\xFE" + text), "");
}

TEST(JsonDecodingTest, OfAKeyGivenTwiceTheLastValueCounts) {
    const auto margin = [](const std::string& values) {
        return decodeTarvexConfig(R"({"grids":[],"defaultGridByDisplayId":{},)" + values + "}")
            ->cellMarginPoints();
    };
    EXPECT_EQ(margin(R"("cellMarginPoints":1,"cellMarginPoints":2)"), 2);
    EXPECT_EQ(margin(R"("cellMarginPoints":"wrong","cellMarginPoints":3)"), 3);
    EXPECT_NE(
        failure(R"({"grids":[],"defaultGridByDisplayId":{},"cellMarginPoints":1,"cellMarginPoints":null})"),
        "");
    EXPECT_EQ(decodeTarvexConfig(documentWith("defaultGridByDisplayId", R"({"v":"a","v":"b"})"))
                  ->defaultGridByDisplayId(),
              (std::map<std::string, std::string>{{"v", "b"}}));
}

TEST(JsonDecodingTest, MessagesAreOneShortLineWhateverTheTextHolds) {
    constexpr std::size_t tenMegabytes = 10'000'000;
    for (const std::string& text :
         {std::string(tenMegabytes, 'x'), "\"" + std::string(tenMegabytes, 'x'),
          "1" + std::string(tenMegabytes, '0') + "e", std::string(tenMegabytes, '\xff'),
          "\"" + std::string(200, '\n'), std::string("{\"\xc3\xa4\xff")}) {
        const std::string message = failure(text);
        EXPECT_NE(message, "");
        EXPECT_LE(message.size(), 300U);
        for (const char character : message) {
            ASSERT_TRUE(character >= ' ' && character <= '~') << message;
        }
    }
}

TEST(JsonDecodingTest, TenThousandSplitsDecode) {
    std::string splits;
    for (int index = 1; index <= 10'000; ++index) {
        splits += (index == 1 ? "" : ",") + std::to_string(index / 10'001.0);
    }
    const TarvexConfigRef config = decodeTarvexConfig(documentWith(
        "grids", R"([{"id":"g","name":"n","horizontalSplits":[],"verticalSplits":[)" + splits + "]}]"));
    EXPECT_EQ(config->grids()[0]->verticalSplits().size(), 10'000U);
}

} // namespace

} // namespace tarvex
