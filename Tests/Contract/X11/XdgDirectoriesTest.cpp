#include "Platform/Linux/XdgDirectories.h"

#include "App/Logging/FileLogger.h"
#include "Tests/Contract/X11/ScopedVariable.h"
#include "Tests/Support/X11/ScratchDirectory.h"

#include <gtest/gtest.h>

#include <optional>
#include <pwd.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace tarvex {
namespace {

class XdgDirectoriesTest : public ::testing::Test {
protected:
    ScopedVariable home_{"HOME", "/home/somebody"};
    ScopedVariable config_{"XDG_CONFIG_HOME", std::nullopt};
    ScopedVariable state_{"XDG_STATE_HOME", std::nullopt};
};

TEST_F(XdgDirectoriesTest, UsualFoldersAreBelowHome) {
    EXPECT_EQ(XdgDirectories::configHome(), "/home/somebody/.config");
    EXPECT_EQ(XdgDirectories::stateHome(), "/home/somebody/.local/state");
    EXPECT_EQ(logFilePath(), "/home/somebody/.local/state/Tarvex/Logs/Tarvex.log");
}

TEST_F(XdgDirectoriesTest, EnvironmentMayChooseOthers) {
    const ScopedVariable config("XDG_CONFIG_HOME", "/elsewhere/settings");
    const ScopedVariable state("XDG_STATE_HOME", "/elsewhere/records");
    EXPECT_EQ(XdgDirectories::configHome(), "/elsewhere/settings");
    EXPECT_EQ(XdgDirectories::stateHome(), "/elsewhere/records");
    EXPECT_EQ(logFilePath(), "/elsewhere/records/Tarvex/Logs/Tarvex.log");
}

TEST_F(XdgDirectoriesTest, RelativeChoicesAreIgnored) {
    for (const char* choice : {"", "settings", "./settings", "~/settings"}) {
        const ScopedVariable config("XDG_CONFIG_HOME", choice);
        const ScopedVariable state("XDG_STATE_HOME", choice);
        EXPECT_EQ(XdgDirectories::configHome(), "/home/somebody/.config") << choice;
        EXPECT_EQ(XdgDirectories::stateHome(), "/home/somebody/.local/state") << choice;
    }
}

TEST_F(XdgDirectoriesTest, WithoutHomeTheAccountsOneServes) {
    const passwd* account = getpwuid(getuid());
    ASSERT_NE(account, nullptr);
    const std::string expected = std::string(account->pw_dir) + "/.config";
    for (const std::optional<std::string>& home :
         {std::optional<std::string>(), std::optional<std::string>("")}) {
        const ScopedVariable without("HOME", home);
        EXPECT_EQ(XdgDirectories::configHome(), expected);
    }
}

TEST_F(XdgDirectoriesTest, RuntimeFolderMustBeAFolderOfTheUsers) {
    const test::ScratchDirectory scratch;
    const std::string own = scratch.folder("own").string();
    const ScopedVariable runtime("XDG_RUNTIME_DIR", own);
    EXPECT_EQ(XdgDirectories::runtimeDirectory(), own);
    const std::string file = scratch.write("file", "").string();
    for (const std::optional<std::string>& other :
         {std::optional<std::string>(), std::optional<std::string>("relative"), std::optional(file),
          std::optional(own + "/missing")}) {
        const ScopedVariable wrong("XDG_RUNTIME_DIR", other);
        EXPECT_EQ(XdgDirectories::runtimeDirectory(), "") << other.value_or("unset");
    }
}

TEST_F(XdgDirectoriesTest, AutostartFoldersAreBelowTheSettings) {
    EXPECT_EQ(XdgDirectories::autostart(), "/home/somebody/.config/autostart");
    const ScopedVariable none("XDG_CONFIG_DIRS", std::nullopt);
    EXPECT_EQ(XdgDirectories::systemAutostart(), std::vector<std::string>{"/etc/xdg/autostart"});
    const ScopedVariable some("XDG_CONFIG_DIRS", "/one:relative::/two");
    EXPECT_EQ(XdgDirectories::systemAutostart(),
              (std::vector<std::string>{"/one/autostart", "/two/autostart"}));
}

} // namespace
} // namespace tarvex
