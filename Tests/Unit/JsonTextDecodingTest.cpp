#include "Tests/Unit/JsonDecodingSamples.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace tarvex {

namespace {

TEST(JsonTextDecodingTest, TextThatIsNoJsonFails) {
    for (const std::string& text :
         {std::string(), std::string(" \n\t"), std::string("hello"), std::string("{"), std::string("}"),
          std::string("{}{}"), minimalDocument().dump() + "x", std::string("{'grids':[]}"),
          std::string("\0", 1), minimalDocument().dump() + std::string(1, '\0'),
          std::string("// comment\n{}"), std::string("<plist/>")}) {
        EXPECT_NE(failure(text), "") << text;
    }
}

TEST(JsonTextDecodingTest, AFileWhoseEndWasFilledWithZerosFails) {
    const std::string whole = minimalDocument().dump();
    for (const std::size_t count : {1U, 4096U}) {
        EXPECT_EQ(failure(whole + std::string(count, '\0')), "the text holds a zero byte");
    }
    EXPECT_EQ(failure(whole + std::string(1, '\0') + "anything"), "the text holds a zero byte");
    EXPECT_EQ(failure(documentWith("name", "\"\\u0000\"")), "")
        << "an escaped one is a character like any other";
}

TEST(JsonTextDecodingTest, ADocumentThatIsNoObjectFails) {
    for (const char* text : {"null", "[]", "7", "\"text\"", "true", "[{}]"}) {
        EXPECT_EQ(failure(text), "the configuration is not an object") << text;
    }
    EXPECT_EQ(failure("{}"), "\"grids\" of the configuration is missing");
}

TEST(JsonTextDecodingTest, InvalidUtf8Fails) {
    for (const char* bytes : {"\xff", "\xc3", "\xc0\x80", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\x80"}) {
        EXPECT_NE(failure(documentWith("name", "\"" + std::string(bytes) + "\"")), "");
        EXPECT_NE(failure(std::string(bytes)), "");
    }
}

TEST(JsonTextDecodingTest, TruncatedAtEveryByte) {
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

TEST(JsonTextDecodingTest, FiveHundredAndTwelveLevelsDecodeAndOneMoreDoesNot) {
    // The document itself is the first level.
    for (const auto& [opening, closing] :
         std::vector<std::pair<std::string, std::string>>{{"[", "]"}, {"{\"a\":", "}"}}) {
        EXPECT_EQ(failure(documentWith("extra", nested(511, opening, closing))), "") << opening;
        EXPECT_EQ(failure(documentWith("extra", nested(512, opening, closing))), tooDeep) << opening;
    }
    EXPECT_EQ(failure(nested(512, "[", "]")), "the configuration is not an object");
    EXPECT_EQ(failure(nested(513, "[", "]")), tooDeep);
}

TEST(JsonTextDecodingTest, DeeplyNestedTextIsRefusedWithoutBeingParsed) {
    constexpr std::size_t tenMillion = 10'000'000;
    EXPECT_EQ(failure(std::string(tenMillion, '[')), tooDeep);
    EXPECT_EQ(failure(documentWith("grids", nested(tenMillion, "[", "]"))), tooDeep);
    EXPECT_EQ(failure(documentWith("extra", nested(1'000'000, "{\"a\":", "}"))), tooDeep);
}

TEST(JsonTextDecodingTest, BracketsThatOpenNoLevelDoNotCount) {
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

TEST(JsonTextDecodingTest, AByteOrderMarkAtTheStartIsPassedOver) {
    const std::string text = minimalDocument().dump();
    EXPECT_EQ(failure("\xEF\xBB\xBF" + text), "");
    EXPECT_NE(failure("\xEF\xBB" + text), "");
    EXPECT_NE(failure(text + "\xEF\xBB\xBF"), "");
    EXPECT_NE(failure("\xFF\xFE" + text), "");
}

TEST(JsonTextDecodingTest, OfAKeyGivenTwiceTheLastValueCounts) {
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

TEST(JsonTextDecodingTest, MessagesAreOneShortLineWhateverTheTextHolds) {
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

} // namespace

} // namespace tarvex
