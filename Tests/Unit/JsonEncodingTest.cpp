#include "Core/Configuration/JsonCoding.h"
#include "Tests/Support/ConfigProperties.h"
#include "Tests/Support/RandomSource.h"
#include "Tests/Unit/ConfigSamples.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace tarvex {

namespace {

using nlohmann::json;

TEST(JsonEncodingTest, TheDefaultDocument) {
    EXPECT_EQ(json::parse(encodeTarvexConfig(*TarvexConfig::makeDefault())), json::parse(R"({
        "grids": [{"id": "default", "name": "Default", "verticalSplits": [0.5], "horizontalSplits": []}],
        "defaultGridByDisplayId": {},
        "cellMarginPoints": 8,
        "singleSnapModifiers": {"modifiers": 256},
        "multiSnapModifiers": {"modifiers": 768},
        "launchAtLogin": false,
        "hideMenuBarIcon": false,
        "restoreWindowSizeOnUnsnap": true})"));
}

TEST(JsonEncodingTest, TheDocumentIsCompact) {
    const std::string text = encodeTarvexConfig(TarvexConfig(everyField()));
    EXPECT_EQ(text.find_first_of(" \n\t\r"), std::string::npos) << text;
}

TEST(JsonEncodingTest, AnAbsentOptionalLeavesItsKeyOut) {
    const json document = json::parse(encodeTarvexConfig(*decodeTarvexConfig(minimalDocument().dump())));
    EXPECT_EQ(document.size(), 3U);
    for (const std::string& key : optionalKeys) {
        EXPECT_FALSE(document.contains(key)) << key;
    }
}

TEST(JsonEncodingTest, EveryPresentOptionalIsWritten) {
    const json document = json::parse(encodeTarvexConfig(TarvexConfig(everyField())));
    EXPECT_EQ(document.size(), 10U);
    EXPECT_EQ(document["openPreferencesHotkey"], json::parse(R"({"keyCode":43,"modifiers":4294967295})"));
    EXPECT_EQ(document["multiSnapModifiers"], json::parse(R"({"modifiers":0})"));
    EXPECT_EQ(document["launchAtLogin"], json(true));
}

TEST(JsonEncodingTest, TheKeysAreWrittenInTheOrderOfTheRecord) {
    const auto document = nlohmann::ordered_json::parse(encodeTarvexConfig(TarvexConfig(everyField())));
    std::vector<std::string> keys;
    for (const auto& [key, value] : document.items()) {
        keys.push_back(key);
    }
    EXPECT_EQ(keys, (std::vector<std::string>{"grids", "defaultGridByDisplayId", "cellMarginPoints",
                                              "openEditorHotkey", "openPreferencesHotkey",
                                              "singleSnapModifiers", "multiSnapModifiers", "launchAtLogin",
                                              "hideMenuBarIcon", "restoreWindowSizeOnUnsnap"}));
}

TEST(JsonEncodingTest, EncodingRefusesNumbersThatAreNotFinite) {
    for (const double value :
         {std::nan(""), std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()}) {
        TarvexConfigFields margin = everyField();
        margin.cellMarginPoints = value;
        EXPECT_THROW(static_cast<void>(encodeTarvexConfig(TarvexConfig(margin))), EncodingError);
        TarvexConfigFields split = everyField();
        split.grids.push_back(
            std::make_shared<const GridDefinition>("c", "C", std::vector<double>{}, std::vector{0.5, value}));
        EXPECT_THROW(static_cast<void>(encodeTarvexConfig(TarvexConfig(split))), EncodingError);
    }
}

TEST(JsonEncodingTest, EncodingRefusesTextThatIsNotUtf8) {
    TarvexConfigFields fields = everyField();
    fields.defaultGridByDisplayId["v1-p1-s1"] = "\xff";
    EXPECT_THROW(static_cast<void>(encodeTarvexConfig(TarvexConfig(fields))), EncodingError);
}

TEST(JsonEncodingTest, TheDefaultsComeBackInEveryField) {
    const TarvexConfigRef config = TarvexConfig::makeDefault();
    EXPECT_TRUE(haveSameFields(*decodeTarvexConfig(encodeTarvexConfig(*config)), *config));
}

TarvexConfigFields randomFields(RandomSource& random) {
    TarvexConfigFields fields;
    for (int count = random.integer(0, 4); count > 0; --count) {
        fields.grids.push_back(std::make_shared<const GridDefinition>(random.text(), random.text(),
                                                                      random.splits(12), random.splits(12)));
    }
    for (int count = random.integer(0, 4); count > 0; --count) {
        fields.defaultGridByDisplayId[random.text()] = random.text();
    }
    fields.cellMarginPoints = random.coin() ? random.integer(0, 40) : random.between(-1e6, 1e6);
    const auto number = [&] { return random.integer(0U, std::numeric_limits<std::uint32_t>::max()); };
    const auto hotkey = [&] {
        return random.coin() ? std::optional(HotkeyDefinition{number(), number()}) : std::nullopt;
    };
    const auto modifiers = [&] {
        return random.coin() ? std::optional(ModifierDefinition{number()}) : std::nullopt;
    };
    const auto boolean = [&] { return random.coin() ? std::optional(random.coin()) : std::nullopt; };
    fields.openEditorHotkey = hotkey();
    fields.openPreferencesHotkey = hotkey();
    fields.singleSnapModifiers = modifiers();
    fields.multiSnapModifiers = modifiers();
    fields.launchAtLogin = boolean();
    fields.hideMenuBarIcon = boolean();
    fields.restoreWindowSizeOnUnsnap = boolean();
    return fields;
}

TEST(JsonEncodingTest, RandomRecordsComeBackInEveryField) {
    for (std::uint32_t seed = 1; seed <= 500; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSource random(seed);
        const TarvexConfig config(randomFields(random));
        ASSERT_TRUE(haveSameFields(*decodeTarvexConfig(encodeTarvexConfig(config)), config));
    }
}

TEST(JsonEncodingTest, RandomDamageNeverBreaksARule) {
    const std::string whole = encodeTarvexConfig(TarvexConfig(everyField()));
    for (std::uint32_t seed = 1; seed <= 3000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSource random(seed);
        std::string damaged = whole;
        for (int count = random.integer(1, 4); count > 0; --count) {
            damaged[random.integer(std::size_t{0}, damaged.size() - 1)] =
                static_cast<char>(random.integer(-128, 127));
        }
        ASSERT_EQ(findBrokenConfigRule(damaged), std::nullopt) << damaged;
    }
}

} // namespace

} // namespace tarvex
