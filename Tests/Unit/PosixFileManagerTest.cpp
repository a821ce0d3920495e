#include "Platform/Posix/PosixFileManager.h"

#include "Platform/Posix/FileDescriptor.h"
#include "Tests/Support/TemporaryDirectory.h"
#include "Tests/Support/UnprivilegedUser.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace tarvex {

namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

mode_t modeOf(const fs::path& path) {
    struct stat status {};

    return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

// While it lives, no file of the process may grow beyond the size: writing fails with "File too large".
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t size) {
        getrlimit(RLIMIT_FSIZE, &old_);
        const rlimit limit{size, old_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
        oldHandler_ = std::signal(SIGXFSZ, SIG_IGN);
    }

    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    FileSizeLimit(FileSizeLimit&&) = delete;
    FileSizeLimit& operator=(FileSizeLimit&&) = delete;

    ~FileSizeLimit() {
        setrlimit(RLIMIT_FSIZE, &old_);
        std::signal(SIGXFSZ, oldHandler_);
    }

private:
    rlimit old_{};
    void (*oldHandler_)(int) = nullptr;
};

class PosixFileManagerTest : public testing::Test {
protected:
    // The message of the FileError; empty when nothing is thrown.
    [[nodiscard]] static std::string errorOf(const std::function<void()>& action) {
        try {
            action();
        } catch (const FileError& error) {
            return error.what();
        }
        return "";
    }

    [[nodiscard]] std::string readError(const std::string& path) {
        return errorOf([&] { static_cast<void>(files.readFile(path)); });
    }

    [[nodiscard]] std::string writeError(const std::string& path) {
        return errorOf([&] { files.writeFileAtomically(path, "new"); });
    }

    [[nodiscard]] std::string createError(const std::string& path) {
        return errorOf([&] { files.createDirectory(path); });
    }

    TemporaryDirectory folder;
    PosixFileManager files{folder.path("support")};
};

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
    EXPECT_EQ(files.readFile(folder.path("file")), content);
    EXPECT_EQ(files.readFile(folder.path("link")), content);
}

TEST_F(PosixFileManagerTest, ReadsAnEmptyFile) {
    writeContent(folder.path("file"), "");
    EXPECT_EQ(files.readFile(folder.path("file")), "");
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

TEST_F(PosixFileManagerTest, WritesANewFileAndNothingElse) {
    files.writeFileAtomically(folder.path("file"), "content");
    EXPECT_EQ(contentOf(folder.path("file")), "content");
    EXPECT_EQ(folder.entries(), Names{"file"});
}

TEST_F(PosixFileManagerTest, ANewFileHasThePermissionsOfTheUmask) {
    const mode_t old = umask(027);
    files.writeFileAtomically(folder.path("file"), "content");
    EXPECT_EQ(umask(old), 027U) << "the umask of the process stays";
    EXPECT_EQ(modeOf(folder.path("file")), 0640U);
}

TEST_F(PosixFileManagerTest, ReplacesAFile) {
    writeContent(folder.path("file"), std::string(100'000, 'o'));
    files.writeFileAtomically(folder.path("file"), "new");
    EXPECT_EQ(contentOf(folder.path("file")), "new");
    files.writeFileAtomically(folder.path("file"), "");
    EXPECT_EQ(contentOf(folder.path("file")), "");
    EXPECT_EQ(folder.entries(), Names{"file"});
}

TEST_F(PosixFileManagerTest, WritesEveryByteOfALargeContent) {
    std::string content(10'000'000, '\0');
    for (std::size_t index = 0; index < content.size(); ++index) {
        content[index] = static_cast<char>(index * 31 + index / 4096);
    }
    files.writeFileAtomically(folder.path("file"), content);
    EXPECT_TRUE(files.readFile(folder.path("file")) == content);
}

TEST_F(PosixFileManagerTest, KeepsThePermissionsOfTheFile) {
    writeContent(folder.path("file"), "old");
    for (const mode_t mode : {0600U, 0644U, 0666U, 0755U, 0400U, 04755U}) {
        ASSERT_EQ(chmod(folder.path("file").c_str(), mode), 0);
        files.writeFileAtomically(folder.path("file"), "new");
        EXPECT_EQ(modeOf(folder.path("file")), mode);
    }
}

TEST_F(PosixFileManagerTest, KeepsTheOwnerAsFarAsTheUserMay) {
    writeContent(folder.path("file"), "old");
    const bool isGivenAway = chown(folder.path("file").c_str(), 12345, 23456) == 0;

    struct stat before {};

    ASSERT_EQ(stat(folder.path("file").c_str(), &before), 0);
    files.writeFileAtomically(folder.path("file"), "new");

    struct stat after {};

    ASSERT_EQ(stat(folder.path("file").c_str(), &after), 0);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_gid, before.st_gid);
    EXPECT_EQ(after.st_uid, isGivenAway ? 12345 : geteuid());
}

TEST_F(PosixFileManagerTest, AFileOfAnotherOwnerInTheUsersFolderIsReplaced) {
    writeContent(folder.path("file"), "old");
    const UnprivilegedUser user(folder.path());
    files.writeFileAtomically(folder.path("file"), "new");
    EXPECT_EQ(contentOf(folder.path("file")), "new");

    struct stat status {};

    ASSERT_EQ(stat(folder.path("file").c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, geteuid());
}

TEST_F(PosixFileManagerTest, ALinkStaysALinkAndItsTargetIsReplaced) {
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

TEST_F(PosixFileManagerTest, AChainOfRelativeAndAbsoluteLinksIsFollowedFromEachLinksOwnFolder) {
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

TEST_F(PosixFileManagerTest, ALinkWithAVeryLongTarget) {
    std::string target;
    for (int level = 0; level < 300; ++level) {
        target += "./";
    }
    target += "real";
    fs::create_symlink(target, folder.path("link"));
    files.writeFileAtomically(folder.path("link"), "new");
    EXPECT_EQ(contentOf(folder.path("real")), "new");
}

TEST_F(PosixFileManagerTest, TheTargetOfADanglingLinkIsCreated) {
    fs::create_symlink("real", folder.path("link"));
    files.writeFileAtomically(folder.path("link"), "new");
    EXPECT_TRUE(fs::is_symlink(folder.path("link")));
    EXPECT_EQ(contentOf(folder.path("real")), "new");
}

TEST_F(PosixFileManagerTest, ADanglingLinkIntoAMissingFolderThrows) {
    fs::create_symlink("missing/real", folder.path("link"));
    EXPECT_TRUE(writeError(folder.path("link")).ends_with("No such file or directory"));
    EXPECT_EQ(folder.entries(), Names{"link"});
}

TEST_F(PosixFileManagerTest, ALoopOfLinksThrows) {
    fs::create_symlink("b", folder.path("a"));
    fs::create_symlink("a", folder.path("b"));
    EXPECT_EQ(writeError(folder.path("a")),
              "Cannot follow \"" + folder.path("a") + "\": Too many levels of symbolic links");
}

TEST_F(PosixFileManagerTest, OnlyARegularFileIsReplaced) {
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

TEST_F(PosixFileManagerTest, WritingIntoAMissingFolderThrows) {
    EXPECT_TRUE(writeError(folder.path("missing/file")).ends_with("No such file or directory"));
    EXPECT_TRUE(folder.entries().empty());
}

TEST_F(PosixFileManagerTest, AFailedWriteLeavesTheOldFileWholeAndNoTemporaryFile) {
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

TEST_F(PosixFileManagerTest, AFailedFirstWriteLeavesNothing) {
    {
        const FileSizeLimit limit(0);
        EXPECT_NE(writeError(folder.path("file")), "");
    }
    EXPECT_TRUE(folder.entries().empty());
}

TEST_F(PosixFileManagerTest, AnOpenReaderKeepsTheOldContent) {
    writeContent(folder.path("file"), "old");
    std::ifstream reader(folder.path("file"));
    files.writeFileAtomically(folder.path("file"), "new");
    std::string text;
    reader >> text;
    EXPECT_EQ(text, "old");
}

TEST_F(PosixFileManagerTest, NoDescriptorStaysOpen) {
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

TEST_F(PosixFileManagerTest, AReaderAgainstAWriterNeverSeesPartOfAFile) {
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

TEST_F(PosixFileManagerTest, TwoWritersLeaveOneOfTheirContentsAndNoTemporaryFile) {
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

TEST(FileDescriptorTest, ClosesAtTheEndAndOnlyOnce) {
    int number = -1;
    {
        FileDescriptor first(open("/dev/null", O_RDONLY | O_CLOEXEC));
        ASSERT_TRUE(first.isOpen());
        number = first.get();
        FileDescriptor second(std::move(first));
        FileDescriptor third;
        third = std::move(second);
        EXPECT_EQ(third.get(), number);
        EXPECT_NE(fcntl(number, F_GETFD), -1);
    }
    EXPECT_EQ(fcntl(number, F_GETFD), -1);
}

TEST(FileDescriptorTest, ClosingEarlyIsReportedOnce) {
    FileDescriptor descriptor(open("/dev/null", O_RDONLY | O_CLOEXEC));
    ASSERT_TRUE(descriptor.isOpen());
    EXPECT_TRUE(descriptor.close());
    EXPECT_FALSE(descriptor.isOpen());
    EXPECT_TRUE(descriptor.close());
    FileDescriptor invalid(1'000'000);
    EXPECT_FALSE(invalid.close()) << "there is no such descriptor";
}

} // namespace

} // namespace tarvex
