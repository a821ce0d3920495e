#include "Platform/Linux/XdgLoginItem.h"

#include "Platform/Linux/Installation.h"
#include "Platform/Linux/InstalledBundle.h"
#include "Platform/Posix/PosixFileManager.h"
#include "Tests/Support/TemporaryDirectory.h"
#include "Tests/Support/UnprivilegedUser.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace tarvex {
namespace {

class XdgLoginItemTest : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char* folder : {"usr/bin", "usr/share/applications", "usr/share/tarvex", "etc1/autostart",
                                   "etc2/autostart", "config/autostart"}) {
            std::filesystem::create_directories(scratch_.path() / folder);
        }
        writeContent(places_.executable, "");
    }

    std::string entry() { return contentOf(userEntry_); }

    LoginItemStatus statusOf(const std::string& text) {
        writeContent(userEntry_, text);
        return loginItem_.status();
    }

    TemporaryDirectory scratch_;
    std::string userEntry_ = scratch_.path("config/autostart/tarvex.desktop");
    std::string firstSystemEntry_ = scratch_.path("etc1/autostart/tarvex.desktop");
    std::string secondSystemEntry_ = scratch_.path("etc2/autostart/tarvex.desktop");
    XdgLoginItem::Places places_{
        .executable = scratch_.path("usr/bin/tarvex"),
        .userFolder = scratch_.path("config/autostart"),
        .systemFolders = {scratch_.path("etc1/autostart"), scratch_.path("etc2/autostart")}};
    PosixFileManager files_{scratch_.path("config")};
    XdgLoginItem loginItem_{files_, places_};
};

TEST_F(XdgLoginItemTest, EntryStartsTheRunningExecutable) {
    std::filesystem::remove_all(places_.userFolder);
    loginItem_.registerMainApplication();
    EXPECT_EQ(entry(),
              "[Desktop Entry]\nName=Tarvex\nIcon=tarvex\nTerminal=false\nType=Application\nExec=\"" +
                  places_.executable + "\"\n");
    loginItem_.unregisterMainApplication();
    EXPECT_FALSE(std::filesystem::exists(userEntry_));
}

TEST_F(XdgLoginItemTest, StatusIsReadFromTheFile) {
    const std::string runs = "[Desktop Entry]\nType=Application\nExec=tarvex\n";
    EXPECT_EQ(statusOf(runs), LoginItemStatus::enabled);
    EXPECT_EQ(statusOf(runs + "Hidden=false\nX-GNOME-Autostart-enabled=true\n"), LoginItemStatus::enabled);
    EXPECT_EQ(statusOf(runs + "Hidden=true\n"), LoginItemStatus::notRegistered);
    EXPECT_EQ(statusOf(runs + "X-GNOME-Autostart-enabled=false\n"), LoginItemStatus::notRegistered);
    EXPECT_EQ(statusOf(runs + "Hidden=true\nX-GNOME-Autostart-enabled=true\n"),
              LoginItemStatus::notRegistered);
    EXPECT_EQ(statusOf(runs + "[Other]\nHidden=true\n"), LoginItemStatus::enabled);
}

TEST_F(XdgLoginItemTest, EntryThatStartsNothingIsNone) {
    for (const char* text : {"", "garbage", "[Desktop Entry]\nType=Application\n", "[Desktop Entry]\nExec=\n",
                             "[Desktop Entry]\nExec=/nonexistent/tarvex\n", "Exec=tarvex\n"}) {
        EXPECT_EQ(statusOf(text), LoginItemStatus::notRegistered) << text;
    }
    std::filesystem::remove(userEntry_);
    std::filesystem::create_directory(userEntry_);
    EXPECT_EQ(loginItem_.status(), LoginItemStatus::notRegistered);
}

TEST_F(XdgLoginItemTest, WrapperOfTheUsersCounts) {
    EXPECT_EQ(statusOf("[Desktop Entry]\nExec=sh -c \"sleep 5; tarvex\"\n"), LoginItemStatus::enabled);
    EXPECT_EQ(statusOf("[Desktop Entry]\nExec=/bin/sh\n"), LoginItemStatus::enabled);
}

TEST_F(XdgLoginItemTest, RegisteringKeepsWhatTheUserAdded) {
    writeContent(userEntry_, "# mine\n[Desktop Entry]\nName=My Tarvex\nX-Delay=5\nHidden=true\n"
                             "X-GNOME-Autostart-enabled=false\nTryExec=/nonexistent\nExec=/old/tarvex\n");
    loginItem_.registerMainApplication();
    EXPECT_EQ(entry(), "# mine\n[Desktop Entry]\nName=My Tarvex\nX-Delay=5\nType=Application\nExec=\"" +
                           places_.executable + "\"\n");
    EXPECT_EQ(loginItem_.status(), LoginItemStatus::enabled);
}

TEST_F(XdgLoginItemTest, RegisteringReplacesWhatIsBroken) {
    writeContent(userEntry_, "garbage\n");
    loginItem_.registerMainApplication();
    EXPECT_TRUE(entry().starts_with("[Desktop Entry]\nName=Tarvex\n")) << entry();
    EXPECT_EQ(loginItem_.status(), LoginItemStatus::enabled);
}

TEST_F(XdgLoginItemTest, LinkedEntryStaysALink) {
    const std::string target = scratch_.path("dotfile");
    writeContent(target, "[Desktop Entry]\nExec=/old/tarvex\n");
    std::filesystem::create_symlink(target, userEntry_);
    loginItem_.registerMainApplication();
    EXPECT_TRUE(std::filesystem::is_symlink(userEntry_));
    EXPECT_NE(contentOf(target).find(places_.executable), std::string::npos);
    loginItem_.unregisterMainApplication();
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::symlink_status(userEntry_)));
    EXPECT_TRUE(std::filesystem::exists(target));
}

TEST_F(XdgLoginItemTest, UsersEntryStandsForTheSystems) {
    writeContent(secondSystemEntry_, "[Desktop Entry]\nExec=tarvex\n");
    EXPECT_EQ(loginItem_.status(), LoginItemStatus::enabled);
    writeContent(firstSystemEntry_, "[Desktop Entry]\nExec=tarvex\nHidden=true\n");
    EXPECT_EQ(loginItem_.status(), LoginItemStatus::notRegistered);
    writeContent(userEntry_, "[Desktop Entry]\nExec=tarvex\n");
    EXPECT_EQ(loginItem_.status(), LoginItemStatus::enabled);
}

TEST_F(XdgLoginItemTest, SystemsEntryIsHiddenBehindTheUsers) {
    writeContent(firstSystemEntry_, "[Desktop Entry]\nExec=tarvex\n");
    loginItem_.unregisterMainApplication();
    EXPECT_EQ(loginItem_.status(), LoginItemStatus::notRegistered);
    EXPECT_NE(entry().find("\nHidden=true\n"), std::string::npos) << entry();
    loginItem_.registerMainApplication();
    EXPECT_EQ(loginItem_.status(), LoginItemStatus::enabled);
    EXPECT_EQ(entry().find("Hidden"), std::string::npos) << entry();
}

TEST_F(XdgLoginItemTest, RefusalOfTheSystemIsAnExceptionAndChangesNothing) {
    loginItem_.registerMainApplication();
    const std::string before = entry();
    const UnprivilegedUser user(scratch_.path());
    if (UnprivilegedUser::isBoundByPermissions()) {
        EXPECT_THROW(loginItem_.registerMainApplication(), FileError);
        EXPECT_THROW(loginItem_.unregisterMainApplication(), FileError);
    }
    EXPECT_EQ(entry(), before);
}

TEST_F(XdgLoginItemTest, WithoutAFolderNothingCanBeRegistered) {
    places_.userFolder.clear();
    XdgLoginItem homeless(files_, places_);
    EXPECT_EQ(homeless.status(), LoginItemStatus::notRegistered);
    EXPECT_THROW(homeless.registerMainApplication(), FileError);
}

TEST_F(XdgLoginItemTest, InstalledProgramHasItsDesktopFileBesideIt) {
    EXPECT_FALSE(loginItem_.isBundle());
    writeContent(scratch_.path("usr/share/applications/tarvex.desktop"), "");
    EXPECT_TRUE(loginItem_.isBundle());
    EXPECT_EQ(Installation::prefixOf(places_.executable, files_), scratch_.path("usr"));
    for (const char* other : {"usr/bin/tarvex2", "usr/tarvex", "bin/tarvex", "usr/sbin/tarvex"}) {
        EXPECT_EQ(Installation::prefixOf(scratch_.path(other), files_), std::nullopt) << other;
    }
}

TEST_F(XdgLoginItemTest, RunningExecutableIsKnownByItsRealPath) {
    EXPECT_EQ(Installation::executablePath(), std::filesystem::read_symlink("/proc/self/exe").string());
    EXPECT_EQ(XdgLoginItem::Places::standard().executable, Installation::executablePath());
    EXPECT_EQ(Installation::prefixOf(Installation::executablePath(), files_), std::nullopt);
}

TEST_F(XdgLoginItemTest, BundleStatesTheVersionsItHas) {
    InstalledBundle bundle("1.4.2", scratch_.path("usr"), files_);
    EXPECT_EQ(bundle.shortVersionString(), "1.4.2");
    EXPECT_EQ(bundle.versionFileText(), std::nullopt);
    writeContent(scratch_.path("usr/share/tarvex/VERSION"), "1.4.3\n");
    EXPECT_EQ(bundle.versionFileText(), "1.4.3\n");
    InstalledBundle bare("", std::nullopt, files_);
    EXPECT_EQ(bare.shortVersionString(), std::nullopt);
    EXPECT_EQ(bare.versionFileText(), std::nullopt);
}

} // namespace
} // namespace tarvex
