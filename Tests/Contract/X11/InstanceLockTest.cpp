#include "Platform/Linux/InstanceLock.h"

#include "Platform/Linux/Qt/InstanceService.h"
#include "Tests/Support/X11/ScratchDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarvex::contract {

namespace {

TEST(InstanceNameTest, SessionIsOneElementOfTheName) {
    const auto name = InstanceService::nameIn;
    EXPECT_EQ(name(""), "org.tarvex.Tarvex");
    EXPECT_EQ(name(":0"), "org.tarvex.Tarvex.Display_3a0");
    EXPECT_EQ(name("host.example:10"), "org.tarvex.Tarvex.Displayhost_2eexample_3a10");
    // What one character is escaped to, another text may be.
    EXPECT_EQ(name("_3a0"), "org.tarvex.Tarvex.Display_5f3a0");
    EXPECT_EQ(name("\xC3\xA4"), "org.tarvex.Tarvex.Display_c3_a4");
    const std::string longest = name(std::string(300, '/') + ":7");
    EXPECT_LE(longest.size(), 255U);
    EXPECT_TRUE(longest.ends_with("_3a7"));
}

/// Runs the call in a process of its own and gives its exit code.
int inOtherProcess(const std::function<int()>& call) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(call());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(InstanceLockTest, HoldsAcrossProcessesUntilItsOwnerEnds) {
    const test::ScratchDirectory scratch;
    const InstanceLock::Folder folder{scratch.path().string(), false};
    const auto takeOnce = [&] { return static_cast<int>(InstanceLock().take(folder)); };
    EXPECT_EQ(inOtherProcess(takeOnce), static_cast<int>(InstanceLock::Result::taken));
    {
        InstanceLock mine;
        EXPECT_EQ(mine.take(folder), InstanceLock::Result::taken);
        EXPECT_EQ(inOtherProcess(takeOnce), static_cast<int>(InstanceLock::Result::held));
    }
    EXPECT_EQ(inOtherProcess(takeOnce), static_cast<int>(InstanceLock::Result::taken));
}

TEST(InstanceLockTest, FolderIsMadeForTheUserAlone) {
    const test::ScratchDirectory scratch;
    const std::filesystem::path path = scratch.path() / "own";
    InstanceLock lock;
    EXPECT_EQ(lock.take({path.string(), true}), InstanceLock::Result::taken);
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms::owner_all);
    EXPECT_EQ(std::filesystem::status(path / "tarvex.lock").permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    EXPECT_EQ(InstanceLock().take({path.string(), true}), InstanceLock::Result::held);
}

TEST(InstanceLockTest, NothingOfSomebodyElsesMakingIsUsed) {
    const test::ScratchDirectory scratch;
    const auto path = [&](const char* name) { return scratch.path() / name; };
    // A folder that others may write to, a link to a folder, a file.
    std::filesystem::permissions(scratch.folder("open"), std::filesystem::perms::all);
    std::filesystem::create_directory_symlink(scratch.folder("real"), path("link"));
    std::ofstream(path("file")) << "x";
    for (const char* name : {"open", "link", "file"}) {
        EXPECT_EQ(InstanceLock().take({path(name).string(), true}), InstanceLock::Result::failed) << name;
    }
    EXPECT_EQ(InstanceLock().take({path("missing").string(), false}), InstanceLock::Result::failed);
    // In place of the lock: a link, a pipe, a folder.
    const std::filesystem::path victim = scratch.write("victim", "precious");
    std::filesystem::create_symlink(victim, scratch.folder("a") / "tarvex.lock");
    ASSERT_EQ(mkfifo((scratch.folder("b") / "tarvex.lock").c_str(), 0600), 0);
    std::filesystem::create_directory(scratch.folder("c") / "tarvex.lock");
    for (const char* name : {"a", "b", "c"}) {
        EXPECT_EQ(InstanceLock().take({path(name).string(), false}), InstanceLock::Result::failed) << name;
    }
    if (geteuid() == 0) {
        ASSERT_EQ(chown(scratch.folder("theirs").c_str(), 65534, 65534), 0);
        EXPECT_EQ(InstanceLock().take({path("theirs").string(), true}), InstanceLock::Result::failed);
    }
}

} // namespace

} // namespace tarvex::contract
