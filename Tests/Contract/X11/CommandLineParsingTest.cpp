#include "Platform/Linux/CommandLine.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarvex {
namespace {

CommandLine parse(const std::vector<std::string>& arguments) {
    return parseCommandLine(arguments, "1.2.3");
}

TEST(CommandLineParsing, WithoutOptionsNothingIsAskedFor) {
    const CommandLine commandLine = parse({});
    EXPECT_FALSE(commandLine.exit);
    EXPECT_FALSE(commandLine.listsDisplays);
    EXPECT_FALSE(commandLine.opensEditor);
    EXPECT_FALSE(commandLine.opensPreferences);
    EXPECT_FALSE(commandLine.quits);
    EXPECT_EQ(commandLine.request(), InstanceRequest{});
}

TEST(CommandLineParsing, EachTaskIsARequestToTheInstance) {
    const std::vector<std::pair<std::vector<std::string>, InstanceRequest>> cases{
        {{"--open-editor"}, {InstanceRequestKind::openEditor, std::nullopt}},
        {{"--open-editor", "7"}, {InstanceRequestKind::openEditor, 7}},
        {{"--open-editor", "4294967295"}, {InstanceRequestKind::openEditor, 4294967295U}},
        {{"--open-preferences"}, {InstanceRequestKind::openPreferences, std::nullopt}},
        {{"--quit"}, {InstanceRequestKind::quit, std::nullopt}},
        {{"--quit", "--quit"}, {InstanceRequestKind::quit, std::nullopt}},
        {{"--list-displays"}, {}},
    };
    for (const auto& [arguments, request] : cases) {
        const CommandLine commandLine = parse(arguments);
        EXPECT_FALSE(commandLine.exit) << arguments.front();
        EXPECT_EQ(commandLine.request(), request) << arguments.front();
    }
    EXPECT_TRUE(parse({"--list-displays"}).listsDisplays);
}

TEST(CommandLineParsing, OneTaskAtATime) {
    const std::vector<std::string> tasks{"--open-editor", "--open-preferences", "--quit", "--list-displays"};
    for (const std::string& first : tasks) {
        for (const std::string& second : tasks) {
            const CommandLine commandLine = parse({first, second});
            if (first == second) {
                EXPECT_FALSE(commandLine.exit) << first;
                continue;
            }
            ASSERT_TRUE(commandLine.exit) << first << " " << second;
            EXPECT_EQ(commandLine.exit->exitCode, 2);
            EXPECT_EQ(commandLine.exit->text, "tarvex: '" + first + "' and '" + second +
                                                  "' cannot be combined\nTry 'tarvex --help'.\n");
        }
    }
}

TEST(CommandLineParsing, OnlyTheEditorTakesAValue) {
    for (const char* task : {"--open-preferences", "--quit", "--list-displays"}) {
        const CommandLine commandLine = parse({task, "1"});
        ASSERT_TRUE(commandLine.exit) << task;
        EXPECT_EQ(commandLine.exit->exitCode, 2);
        EXPECT_EQ(commandLine.exit->text, "tarvex: unknown option '1'\nTry 'tarvex --help'.\n");
    }
}

TEST(CommandLineParsing, HelpNamesEveryOption) {
    const CommandLine help = parse({"--quit", "--help"});
    ASSERT_TRUE(help.exit);
    EXPECT_EQ(help.exit->exitCode, 0);
    for (const char* option : {"--open-editor [NUMBER]", "--open-preferences", "--quit", "--list-displays",
                               "--help", "--version"}) {
        EXPECT_NE(help.exit->text.find(option), std::string::npos) << option;
    }
}

} // namespace
} // namespace tarvex
