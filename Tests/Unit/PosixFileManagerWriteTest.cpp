#include "Platform/Posix/FileDescriptor.h"
#include "Tests/Support/UnprivilegedUser.h"
#include "Tests/Unit/FileSizeLimit.h"
#include "Tests/Unit/PosixFileManagerFixture.h"

#include <gtest/gtest.h>

#include <atomic>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace tarvex {

namespace {

namespace fs = std::filesystem;

using PosixFileManagerWriteTest = PosixFileManagerFixture;

using Names = std::vector<std::string>;

TEST_F(PosixFileManagerWriteTest, WritesANewFileAndNothingElse) {
    files.writeFileAtomically(folder.path("file"), "content");
    EXPECT_EQ(contentOf(folder.path("file")), "content");
    EXPECT_EQ(folder.entries(), Names{"file"});
}

TEST_F(PosixFileManagerWriteTest, ANewFileHasThePermissionsOfTheUmask) {
    const mode_t old = umask(027);
    files.writeFileAtomically(folder.path("file"), "content");
    EXPECT_EQ(umask(old), 027U) << "the umask of the process stays";
    EXPECT_EQ(modeOf(folder.path("file")), 0640U);
}

TEST_F(PosixFileManagerWriteTest, ReplacesAFile) {
    writeContent(folder.path("file"), std::string(100'000, 'o'));
    files.writeFileAtomically(folder.path("file"), "new");
    EXPECT_EQ(contentOf(folder.path("file")), "new");
    files.writeFileAtomically(folder.path("file"), "");
    EXPECT_EQ(contentOf(folder.path("file")), "");
    EXPECT_EQ(folder.entries(), Names{"file"});
}

TEST_F(PosixFileManagerWriteTest, WritesEveryByteOfALargeContent) {
    std::string content(10'000'000, '\0');
    for (std::size_t index = 0; index < content.size(); ++index) {
        content[index] = static_cast<char>(index * 31 + index / 4096);
    }
    files.writeFileAtomically(folder.path("file"), content);
    EXPECT_TRUE(files.readFile(folder.path("file")) == content);
}

TEST_F(PosixFileManagerWriteTest, KeepsThePermissionsOfTheFile) {
    writeContent(folder.path("file"), "old");
    for (const mode_t mode : {0600U, 0644U, 0666U, 0755U, 0400U, 04755U}) {
        ASSERT_EQ(chmod(folder.path("file").c_str(), mode), 0);
        files.writeFileAtomically(folder.path("file"), "new");
        EXPECT_EQ(modeOf(folder.path("file")), mode);
    }
}

TEST_F(PosixFileManagerWriteTest, WhatTheUserHasWrittenIsHisToRead) {
    const UnprivilegedUser user(folder.path());
    writeContent(folder.path("file"), "old");
    for (const mode_t mode : {0000U, 0200U, 0044U}) {
        ASSERT_EQ(chmod(folder.path("file").c_str(), mode), 0);
        files.writeFileAtomically(folder.path("file"), "new");
        EXPECT_EQ(modeOf(folder.path("file")), mode | 0400U);
        EXPECT_EQ(files.readFile(folder.path("file")), "new");
    }
}

TEST_F(PosixFileManagerWriteTest, KeepsTheOwnerAsFarAsTheUserMay) {
    writeContent(folder.path("file"), "old");
    const bool isGivenAway = chown(folder.path("file").c_str(), 12345, 23456) == 0;

    struct stat before = {};
    ASSERT_EQ(stat(folder.path("file").c_str(), &before), 0);
    files.writeFileAtomically(folder.path("file"), "new");

    struct stat after = {};
    ASSERT_EQ(stat(folder.path("file").c_str(), &after), 0);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_gid, before.st_gid);
    EXPECT_EQ(after.st_uid, isGivenAway ? 12345 : geteuid());
}

TEST_F(PosixFileManagerWriteTest, AGroupThatCannotBeKeptLeavesTheNewOneWithoutAccess) {
    const std::string path = folder.path("file");
    writeContent(path, "old");
    const bool isGivenAway = chown(path.c_str(), 12345, 23456) == 0;
    ASSERT_EQ(chmod(path.c_str(), 06775), 0);
    {
        const UnprivilegedUser user(folder.path());
        files.writeFileAtomically(path, "new");
    }
    EXPECT_EQ(contentOf(path), "new");
    EXPECT_EQ(modeOf(path), isGivenAway ? 0705U : 06775U) << "the owner is another one too, if any is";
}

TEST_F(PosixFileManagerWriteTest, AFileOfAnotherOwnerInTheUsersFolderIsReplaced) {
    writeContent(folder.path("file"), "old");
    const UnprivilegedUser user(folder.path());
    files.writeFileAtomically(folder.path("file"), "new");
    EXPECT_EQ(contentOf(folder.path("file")), "new");

    struct stat status = {};
    ASSERT_EQ(stat(folder.path("file").c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, geteuid());
}

TEST_F(PosixFileManagerWriteTest, ALinkStaysALinkAndItsTargetIsReplaced) {
    fs::create_directory(folder.path("elsewhere"));
    writeContent(folder.path("elsewhere/real"), "old");
    ASSERT_EQ(chmod(folder.path("elsewhere/real").c_str(), 0640), 0);
    fs::create_symlink("elsewhere/real", folder.path("link"));
    files.writeFileAtomically(folder.path("link"), "new");
    EXPECT_EQ(fs::read_symlink(folder.path("link")), "elsewhere/real");
    EXPECT_EQ(contentOf(folder.path("elsewhere/real")), "new");
    EXPECT_EQ(modeOf(folder.path("elsewhere/real")), 0640U);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path("elsewhere")), fs::directory_iterator()), 1);
}

TEST_F(PosixFileManagerWriteTest, AChainOfRelativeAndAbsoluteLinksIsFollowedFromEachLinksOwnFolder) {
    fs::create_directories(folder.path("one/two"));
    writeContent(folder.path("real"), "old");
    fs::create_symlink("one/first", folder.path("link"));
    fs::create_symlink("two/second", folder.path("one/first"));
    fs::create_symlink(folder.path("one/two/third"), folder.path("one/two/second"));
    fs::create_symlink("../../real", folder.path("one/two/third"));
    files.writeFileAtomically(folder.path("link"), "new");
    EXPECT_EQ(contentOf(folder.path("real")), "new");
    EXPECT_TRUE(fs::is_symlink(folder.path("link")));
    EXPECT_TRUE(fs::is_symlink(folder.path("one/two/third")));
}

TEST_F(PosixFileManagerWriteTest, ALinkWithAVeryLongTarget) {
    std::string target;
    for (int level = 0; level < 300; ++level) {
        target += "./";
    }
    target += "real";
    fs::create_symlink(target, folder.path("link"));
    files.writeFileAtomically(folder.path("link"), "new");
    EXPECT_EQ(contentOf(folder.path("real")), "new");
}

TEST_F(PosixFileManagerWriteTest, FortyLinksAreFollowedAndOneMoreIsNot) {
    writeContent(folder.path("0"), "old");
    for (int link = 1; link <= 41; ++link) {
        fs::create_symlink(std::to_string(link - 1), folder.path(std::to_string(link)));
    }
    files.writeFileAtomically(folder.path("40"), "new");
    EXPECT_EQ(contentOf(folder.path("0")), "new");
    EXPECT_EQ(writeError(folder.path("41")),
              "Cannot follow \"" + folder.path("41") + "\": Too many levels of symbolic links");
    EXPECT_EQ(contentOf(folder.path("0")), "new");
    EXPECT_EQ(folder.entries().size(), 42U) << "and no temporary file stays";
}

TEST_F(PosixFileManagerWriteTest, TheTargetOfADanglingLinkIsCreated) {
    fs::create_symlink("real", folder.path("link"));
    files.writeFileAtomically(folder.path("link"), "new");
    EXPECT_TRUE(fs::is_symlink(folder.path("link")));
    EXPECT_EQ(contentOf(folder.path("real")), "new");
}

TEST_F(PosixFileManagerWriteTest, ADanglingLinkIntoAMissingFolderThrows) {
    fs::create_symlink("missing/real", folder.path("link"));
    EXPECT_TRUE(writeError(folder.path("link")).ends_with("No such file or directory"));
    EXPECT_EQ(folder.entries(), Names{"link"});
}

TEST_F(PosixFileManagerWriteTest, ALoopOfLinksThrows) {
    fs::create_symlink("b", folder.path("a"));
    fs::create_symlink("a", folder.path("b"));
    EXPECT_EQ(writeError(folder.path("a")),
              "Cannot follow \"" + folder.path("a") + "\": Too many levels of symbolic links");
}

TEST_F(PosixFileManagerWriteTest, OnlyARegularFileIsReplaced) {
    fs::create_directory(folder.path("folder"));
    ASSERT_EQ(mkfifo(folder.path("pipe").c_str(), 0600), 0);
    fs::create_symlink("/dev/null", folder.path("device"));
    EXPECT_EQ(writeError(folder.path("folder")),
              "Cannot write \"" + folder.path("folder") + "\": Is a directory");
    EXPECT_EQ(writeError(folder.path("pipe")),
              "Cannot write \"" + folder.path("pipe") + "\": Not a regular file");
    EXPECT_EQ(writeError(folder.path("device")), "Cannot write \"/dev/null\": Not a regular file");
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_TRUE(fs::is_fifo(folder.path("pipe")));
    EXPECT_EQ(folder.entries().size(), 3U);
}

TEST_F(PosixFileManagerWriteTest, WritingIntoAMissingFolderThrows) {
    EXPECT_TRUE(writeError(folder.path("missing/file")).ends_with("No such file or directory"));
    EXPECT_TRUE(folder.entries().empty());
}

TEST_F(PosixFileManagerWriteTest, AFailedWriteLeavesTheOldFileWholeAndNoTemporaryFile) {
    writeContent(folder.path("file"), "the old content");
    ASSERT_EQ(chmod(folder.path("file").c_str(), 0640), 0);
    const std::string content(100'000, 'n');
    std::string error;
    {
        const FileSizeLimit limit(4096);
        error = errorOf([&] { files.writeFileAtomically(folder.path("file"), content); });
    }
    EXPECT_TRUE(error.starts_with("Cannot write \"" + folder.path(".tarvex-"))) << error;
    EXPECT_TRUE(error.ends_with(": File too large")) << error;
    EXPECT_EQ(contentOf(folder.path("file")), "the old content");
    EXPECT_EQ(modeOf(folder.path("file")), 0640U);
    EXPECT_EQ(folder.entries(), Names{"file"});
}

TEST_F(PosixFileManagerWriteTest, AFailedFirstWriteLeavesNothing) {
    {
        const FileSizeLimit limit(0);
        EXPECT_NE(writeError(folder.path("file")), "");
    }
    EXPECT_TRUE(folder.entries().empty());
}

TEST_F(PosixFileManagerWriteTest, AnOpenReaderKeepsTheOldContent) {
    writeContent(folder.path("file"), "old");
    std::ifstream reader(folder.path("file"));
    files.writeFileAtomically(folder.path("file"), "new");
    std::string text;
    reader >> text;
    EXPECT_EQ(text, "old");
}

TEST_F(PosixFileManagerWriteTest, NoDescriptorStaysOpen) {
    const auto lowestFree = [] {
        const FileDescriptor descriptor(open("/dev/null", O_RDONLY | O_CLOEXEC));
        return descriptor.get();
    };
    const int before = lowestFree();
    for (int round = 0; round < 20; ++round) {
        files.writeFileAtomically(folder.path("file"), "content");
        static_cast<void>(files.readFile(folder.path("file")));
        static_cast<void>(readError(folder.path().string()));
        static_cast<void>(writeError(folder.path().string()));
    }
    EXPECT_EQ(lowestFree(), before);
}

TEST_F(PosixFileManagerWriteTest, AReaderAgainstAWriterNeverSeesPartOfAFile) {
    const std::string first(200'000, 'a');
    const std::string second(70'001, 'b');
    files.writeFileAtomically(folder.path("file"), first);
    std::atomic<bool> isWriting{true};
    std::thread writer([&] {
        for (int round = 0; round < 300; ++round) {
            files.writeFileAtomically(folder.path("file"), round % 2 == 0 ? second : first);
        }
        isWriting = false;
    });
    int reads = 0;
    int damaged = 0;
    do {
        try {
            const std::string content = files.readFile(folder.path("file"));
            damaged += content == first || content == second ? 0 : 1;
        } catch (const FileError&) {
            ++damaged;
        }
        ++reads;
    } while (isWriting);
    writer.join();
    EXPECT_GT(reads, 0);
    EXPECT_EQ(damaged, 0) << "of " << reads << " reads";
    EXPECT_EQ(folder.entries(), Names{"file"});
}

TEST_F(PosixFileManagerWriteTest, TwoWritersLeaveOneOfTheirContentsAndNoTemporaryFile) {
    const std::string first(50'000, 'a');
    const std::string second(60'000, 'b');
    const auto writeOften = [&](const std::string& content) {
        for (int round = 0; round < 100; ++round) {
            files.writeFileAtomically(folder.path("file"), content);
        }
    };
    std::thread other([&] { writeOften(first); });
    writeOften(second);
    other.join();
    const std::string content = files.readFile(folder.path("file"));
    EXPECT_TRUE(content == first || content == second);
    EXPECT_EQ(folder.entries(), Names{"file"});
}

} // namespace

} // namespace tarvex
