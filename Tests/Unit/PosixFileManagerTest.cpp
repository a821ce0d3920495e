#include "Platform/Posix/FileDescriptor.h"
#include "Tests/Support/UnprivilegedUser.h"
#include "Tests/Unit/PosixFileManagerFixture.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/stat.h>

namespace tarvex {

namespace {

namespace fs = std::filesystem;

using PosixFileManagerTest = PosixFileManagerFixture;

TEST_F(PosixFileManagerTest, TheSupportDirectoryIsTheOneGiven) {
    EXPECT_EQ(files.applicationSupportDirectory(), folder.path("support"));
    EXPECT_FALSE(fs::exists(folder.path("support"))) << "asking for it creates nothing";
}

TEST_F(PosixFileManagerTest, ASystemThatNamesNoSupportDirectory) {
    const PosixFileManager nowhere("");
    EXPECT_EQ(errorOf([&] { static_cast<void>(nowhere.applicationSupportDirectory()); }),
              "The system names no folder for application data");
}

TEST_F(PosixFileManagerTest, CreatesAFolderAndItsParents) {
    files.createDirectory(folder.path("a/b/c"));
    EXPECT_TRUE(fs::is_directory(folder.path("a/b/c")));
}

TEST_F(PosixFileManagerTest, NewFoldersArePrivate) {
    files.createDirectory(folder.path("a/b"));
    EXPECT_EQ(modeOf(folder.path("a")), 0700U);
    EXPECT_EQ(modeOf(folder.path("a/b")), 0700U);
}

TEST_F(PosixFileManagerTest, AFolderThatStandsIsNoFailureAndKeepsItsMode) {
    fs::create_directory(folder.path("a"));
    fs::permissions(folder.path("a"), fs::perms::owner_all | fs::perms::group_read);
    files.createDirectory(folder.path("a"));
    files.createDirectory(folder.path("a/"));
    EXPECT_EQ(modeOf(folder.path("a")), 0740U);
    files.createDirectory("/");
    files.createDirectory(".");
}

TEST_F(PosixFileManagerTest, ALinkToAFolderIsAFolder) {
    fs::create_directory(folder.path("real"));
    fs::create_symlink("real", folder.path("link"));
    files.createDirectory(folder.path("link"));
    files.createDirectory(folder.path("link/inner"));
    EXPECT_TRUE(fs::is_directory(folder.path("real/inner")));
}

TEST_F(PosixFileManagerTest, ASlashAtTheEndChangesNothing) {
    files.createDirectory(folder.path("a/b/"));
    EXPECT_TRUE(fs::is_directory(folder.path("a/b")));
}

TEST_F(PosixFileManagerTest, APlainFileInPlaceOfTheFolderThrows) {
    writeContent(folder.path("a"), "file");
    EXPECT_EQ(createError(folder.path("a")),
              "Cannot create the folder \"" + folder.path("a") + "\": File exists");
    EXPECT_EQ(createError(folder.path("a/b")),
              "Cannot create the folder \"" + folder.path("a/b") + "\": Not a directory");
    EXPECT_EQ(contentOf(folder.path("a")), "file");
}

TEST_F(PosixFileManagerTest, ADanglingLinkInPlaceOfTheFolderThrows) {
    fs::create_symlink("nowhere", folder.path("a"));
    EXPECT_NE(createError(folder.path("a")), "");
    EXPECT_NE(createError(folder.path("a/b")), "");
    EXPECT_FALSE(fs::exists(folder.path("nowhere")));
}

TEST_F(PosixFileManagerTest, AnEmptyPathCannotBeCreated) {
    EXPECT_EQ(createError(""), "Cannot create the folder \"\": No such file or directory");
}

TEST_F(PosixFileManagerTest, AFolderThatTheUserMayNotWriteIn) {
    fs::create_directory(folder.path("locked"));
    fs::permissions(folder.path(), fs::perms::all);
    const UnprivilegedUser user(folder.path("locked"));
    fs::permissions(folder.path("locked"), fs::perms::owner_read | fs::perms::owner_exec);
    if (UnprivilegedUser::isBoundByPermissions()) {
        EXPECT_EQ(createError(folder.path("locked/a/b")),
                  "Cannot create the folder \"" + folder.path("locked/a") + "\": Permission denied");
        EXPECT_TRUE(writeError(folder.path("locked/file")).ends_with("Permission denied"));
        EXPECT_TRUE(fs::is_empty(folder.path("locked")));
    } else {
        EXPECT_EQ(createError(folder.path("locked/a/b")), "") << "nothing is locked for the superuser";
    }
    fs::permissions(folder.path("locked"), fs::perms::owner_all);
}

TEST_F(PosixFileManagerTest, WhatExists) {
    writeContent(folder.path("file"), "");
    fs::create_directory(folder.path("folder"));
    fs::create_symlink("file", folder.path("link"));
    fs::create_symlink("nowhere", folder.path("dangling"));
    fs::create_symlink("loop", folder.path("loop"));
    EXPECT_TRUE(files.fileExists(folder.path("file")));
    EXPECT_TRUE(files.fileExists(folder.path("folder")));
    EXPECT_TRUE(files.fileExists(folder.path("link")));
    EXPECT_FALSE(files.fileExists(folder.path("dangling")));
    EXPECT_FALSE(files.fileExists(folder.path("loop")));
    EXPECT_FALSE(files.fileExists(folder.path("nothing")));
    EXPECT_FALSE(files.fileExists(folder.path("file/inner")));
    EXPECT_FALSE(files.fileExists(""));
}

TEST_F(PosixFileManagerTest, ReadsTheWholeContent) {
    const std::string content = std::string("a\0b\n\xff", 5) + std::string(3'000'000, 'x') + "end";
    writeContent(folder.path("file"), content);
    fs::create_symlink("file", folder.path("link"));
    EXPECT_TRUE(files.readFile(folder.path("file")) == content);
    EXPECT_TRUE(files.readFile(folder.path("link")) == content);
}

TEST_F(PosixFileManagerTest, ReadsAnEmptyFile) {
    writeContent(folder.path("file"), "");
    EXPECT_EQ(files.readFile(folder.path("file")), "");
}

TEST_F(PosixFileManagerTest, AFileOfTheLimitIsReadAndALargerOneIsNot) {
    const std::string path = folder.path("file");
    writeContent(path, "start");
    fs::resize_file(path, PosixFileManager::maxReadBytes);
    EXPECT_EQ(files.readFile(path).size(), 64U * 1024 * 1024);
    fs::resize_file(path, PosixFileManager::maxReadBytes + 1);
    EXPECT_EQ(readError(path), "Cannot read \"" + path + "\": File too large");
    fs::resize_file(path, std::uintmax_t{1} << 40U);
    EXPECT_EQ(readError(path), "Cannot read \"" + path + "\": File too large") << "a terabyte of holes";
}

TEST_F(PosixFileManagerTest, ReadingWhatIsNotThere) {
    EXPECT_EQ(readError(folder.path("nothing")),
              "Cannot read \"" + folder.path("nothing") + "\": No such file or directory");
}

TEST_F(PosixFileManagerTest, ReadingAFolder) {
    EXPECT_EQ(readError(folder.path().string()),
              "Cannot read \"" + folder.path().string() + "\": Is a directory");
}

TEST_F(PosixFileManagerTest, ReadingAPipeThrowsAtOnce) {
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(readError(pipe), "Cannot read \"" + pipe + "\": Not a regular file");
    const FileDescriptor silentWriter(open(pipe.c_str(), O_RDWR | O_CLOEXEC));
    ASSERT_TRUE(silentWriter.isOpen());
    EXPECT_EQ(readError(pipe), "Cannot read \"" + pipe + "\": Not a regular file")
        << "a writer changes nothing";
}

TEST_F(PosixFileManagerTest, ReadingADeviceThrowsAtOnce) {
    EXPECT_EQ(readError("/dev/zero"), "Cannot read \"/dev/zero\": Not a regular file");
    EXPECT_EQ(readError("/dev/null"), "Cannot read \"/dev/null\": Not a regular file");
}

TEST_F(PosixFileManagerTest, ReadingAnUnreadableFile) {
    writeContent(folder.path("file"), "secret");
    fs::permissions(folder.path("file"), fs::perms::none);
    const UnprivilegedUser user(folder.path());
    if (UnprivilegedUser::isBoundByPermissions()) {
        EXPECT_EQ(readError(folder.path("file")),
                  "Cannot read \"" + folder.path("file") + "\": Permission denied");
    } else {
        EXPECT_EQ(files.readFile(folder.path("file")), "secret") << "nothing is unreadable for the superuser";
    }
}

TEST_F(PosixFileManagerTest, AMessageIsOneLineWhateverThePathHolds) {
    EXPECT_EQ(readError("/no\nthing\x01"), "Cannot read \"/no?thing?\": No such file or directory");
}

} // namespace

} // namespace tarvex
