#include "Tests/Support/X11/ChildProcess.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarvex::test {
namespace {

struct Outcome {
    ExitStatus status;
    std::string output;
    std::string error;
};

// Without a display: what ends at once must need none.
Outcome run(std::vector<std::string> arguments, const Environment& environment = {}) {
    arguments.insert(arguments.begin(), TARVEX_PROGRAM);
    ChildProcess process({std::move(arguments), environment, std::nullopt});
    const ExitStatus status = process.waitForExit().value_or(ExitStatus{});
    return {status, process.standardOutput(), process.standardError()};
}

const ExitStatus success{0, std::nullopt};

TEST(CommandLine, HelpGoesToStandardOutput) {
    const Outcome help = run({"--help"});
    EXPECT_EQ(help.status, success);
    EXPECT_TRUE(help.output.starts_with("Usage: tarvex ")) << help.output;
    for (const char* told : {"--help", "--version", "--open-editor", "--list-displays", "config.json",
                             "Tarvex.log", "Xwayland"}) {
        EXPECT_NE(help.output.find(told), std::string::npos) << told;
    }
    EXPECT_EQ(help.error, "");
    const Outcome shortHelp = run({"-h"});
    EXPECT_EQ(shortHelp.status, success);
    EXPECT_EQ(shortHelp.output, help.output);
    EXPECT_EQ(shortHelp.error, "");
}

TEST(CommandLine, VersionGoesToStandardOutput) {
    const Outcome version = run({"--version"});
    EXPECT_EQ(version.status, success);
    EXPECT_TRUE(version.output.starts_with("tarvex ")) << version.output;
    EXPECT_EQ(version.output.find_first_not_of("0123456789.", 7), version.output.size() - 1)
        << version.output;
    EXPECT_TRUE(version.output.ends_with('\n'));
    EXPECT_EQ(version.error, "");
}

TEST(CommandLine, TheFirstOptionDecides) {
    EXPECT_TRUE(run({"--version", "--help"}).output.starts_with("tarvex "));
    EXPECT_EQ(run({"--nonsense", "--help"}).status.code, 2);
}

TEST(CommandLine, ADisplayIsNamedByItsNumber) {
    for (const char* name : {"left", "1x", "", "4294967296", "0x1"}) {
        const Outcome outcome = run({"--open-editor", name});
        EXPECT_EQ(outcome.status, (ExitStatus{2, std::nullopt})) << name;
        EXPECT_NE(outcome.error.find("no display number"), std::string::npos) << outcome.error;
    }
}

TEST(CommandLine, AnUnknownOptionIsAnErrorOnStandardError) {
    for (const char* unknown : {"--nonsense", "-x", "word", "", "--Help", "--help=1"}) {
        const Outcome outcome = run({unknown});
        EXPECT_EQ(outcome.status, (ExitStatus{2, std::nullopt})) << unknown;
        EXPECT_EQ(outcome.output, "") << unknown;
        EXPECT_EQ(outcome.error,
                  "tarvex: unknown option '" + std::string(unknown) + "'\nTry 'tarvex --help'.\n");
    }
}

TEST(CommandLine, WithoutAnXServerItEndsAndSaysSo) {
    for (const Environment& environment :
         {Environment{}, Environment{{"WAYLAND_DISPLAY", "wayland-0"}, {"XDG_SESSION_TYPE", "wayland"}}}) {
        const Outcome outcome = run({}, environment);
        EXPECT_EQ(outcome.status, (ExitStatus{1, std::nullopt}));
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.error, "tarvex: cannot reach an X server; is DISPLAY set?\n");
    }
}

} // namespace
} // namespace tarvex::test
