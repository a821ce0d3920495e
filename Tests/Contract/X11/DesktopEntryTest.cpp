#include "Platform/Linux/DesktopEntry.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tarvex {
namespace {

TEST(DesktopEntryTest, ReadsTheKeysOfItsGroupAlone) {
    const std::optional<DesktopEntry> entry = DesktopEntry::parse("# a comment\n"
                                                                  "\n"
                                                                  "[Desktop Entry]\n"
                                                                  "Exec = one --two \r\n"
                                                                  "#Hidden=true\n"
                                                                  "Name[de]=Anders\n"
                                                                  "Name=First\n"
                                                                  "Name=Second=more\n"
                                                                  "Empty=\n"
                                                                  "nonsense\n"
                                                                  "[Desktop Action x]\n"
                                                                  "Exec=three\n"
                                                                  "Hidden=true\n");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->value("Exec"), "one --two");
    EXPECT_EQ(entry->value("Name"), "Second=more");
    EXPECT_EQ(entry->value("Empty"), "");
    EXPECT_EQ(entry->value("Hidden"), std::nullopt);
    EXPECT_EQ(entry->value("nonsense"), std::nullopt);
}

TEST(DesktopEntryTest, TextWithoutTheGroupIsNone) {
    for (const char* text : {"", "Exec=one\n", "[Desktop Action x]\nExec=one\n", "[desktop entry]\n",
                             "\x7f"
                             "ELF\x01\x02",
                             "{}"}) {
        EXPECT_FALSE(DesktopEntry::parse(text)) << text;
    }
    EXPECT_TRUE(DesktopEntry::parse("[Desktop Entry]"));
}

TEST(DesktopEntryTest, TruthValues) {
    const auto flag = [](const std::string& value) {
        return std::pair(DesktopEntry::parse("[Desktop Entry]\nFlag=" + value)->flag("Flag", false),
                         DesktopEntry::parse("[Desktop Entry]\nFlag=" + value)->flag("Flag", true));
    };
    for (const char* text : {"true", "1", " true "}) {
        EXPECT_EQ(flag(text), std::pair(true, true)) << text;
    }
    for (const char* text : {"false", "0"}) {
        EXPECT_EQ(flag(text), std::pair(false, false)) << text;
    }
    for (const char* text : {"", "yes", "True"}) {
        EXPECT_EQ(flag(text), std::pair(false, true)) << text;
    }
}

TEST(DesktopEntryTest, ChangesLeaveTheRestAsItIs) {
    std::optional<DesktopEntry> entry = DesktopEntry::parse("# mine\n[Desktop Entry]\nHidden=true\nX-Mine=a\n"
                                                            "Hidden = true\n\n[Other]\nHidden=true\n");
    ASSERT_TRUE(entry);
    entry->remove("Hidden");
    entry->remove("Missing");
    entry->set("Exec", "one");
    entry->set("X-Mine", "b");
    EXPECT_EQ(entry->text(), "# mine\n[Desktop Entry]\nExec=one\nX-Mine=b\n\n[Other]\nHidden=true\n");
}

TEST(DesktopEntryTest, ProgramIsQuotedAsTheExecKeyWantsIt) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"/usr/bin/tarvex", R"("/usr/bin/tarvex")"},
        {"/opt/my apps/tarvex", R"("/opt/my apps/tarvex")"},
        {"/opt/50%/tarvex", R"("/opt/50%%/tarvex")"},
        {R"(/opt/a"b/tarvex)", R"("/opt/a\\"b/tarvex")"},
        {R"(/opt/a$b`c/tarvex)", R"("/opt/a\\$b\\`c/tarvex")"},
        {R"(/opt/a\b/tarvex)", R"("/opt/a\\\\b/tarvex")"},
        {"/opt/a\nb\tc/tarvex", R"("/opt/a\nb\tc/tarvex")"},
        {"/opt/\u00FC;'&/tarvex", "\"/opt/\u00FC;'&/tarvex\""},
    };
    for (const auto& [program, exec] : cases) {
        EXPECT_EQ(DesktopEntry::execOf(program), exec);
        EXPECT_EQ(DesktopEntry::programOf(exec), program);
    }
}

TEST(DesktopEntryTest, ProgramIsTheFirstArgument) {
    const std::vector<std::pair<std::string, std::string>> cases{
        {"tarvex", "tarvex"},
        {"tarvex --open-editor %U", "tarvex"},
        {R"("/opt/my apps/tarvex" --quit)", "/opt/my apps/tarvex"},
        {R"(/opt/my\sapps)", "/opt/my"},
        {R"(tarvex\t--quit)", "tarvex"},
        {R"("open)", "open"},
        {"\\", "\\"},
        {"100%", "100%"},
        {"", ""},
        {R"("")", ""},
    };
    for (const auto& [exec, program] : cases) {
        EXPECT_EQ(DesktopEntry::programOf(exec), program) << exec;
    }
}

} // namespace
} // namespace tarvex
