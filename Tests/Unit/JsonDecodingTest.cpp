#include "Tests/Support/ConfigProperties.h"
#include "Tests/Unit/JsonDecodingSamples.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <map>
#include <string>

namespace tarvex {

namespace {

using nlohmann::json;

TarvexConfigRef decode(const json& document) {
    return decodeTarvexConfig(document.dump());
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

TEST(JsonDecodingTest, UnknownKeysArePassedOver) {
    json document = minimalDocument();
    document["theme"] = {{"dark", true}};
    document[""] = nullptr;
    EXPECT_TRUE(haveSameFields(*decode(document), *decode(minimalDocument())));
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
