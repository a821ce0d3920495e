#include "App/Logging/LogFile.h"

#include "Tests/Support/TemporaryDirectory.h"
#include "Tests/Support/UnprivilegedUser.h"
#include "Tests/Unit/FileSizeLimit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace tarvex {

namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

constexpr std::size_t maxSize = 1'000'000;
constexpr std::size_t targetSize = 900'000;

// Large contents are compared outside of the assertion, which would work out a difference line by line.
class LogFileTest : public testing::Test {
protected:
    // A file of so many bytes in lines of ten bytes each, counted from zero.
    static std::string numberedLines(std::size_t size) {
        std::string text;
        for (std::size_t number = 0; text.size() < size; ++number) {
            const std::string digits = std::to_string(number);
            text += std::string(9 - digits.size(), '0') + digits + "\n";
        }
        text.resize(size);
        return text;
    }

    TemporaryDirectory folder;
    std::string path = folder.path("Tarvex.log");
};

TEST_F(LogFileTest, TheLimits) {
    EXPECT_EQ(LogFile::maxFileSizeBytes, maxSize);
    EXPECT_EQ(LogFile::targetFileSizeBytes, targetSize);
    EXPECT_EQ(LogFile(path).path(), path);
}

TEST_F(LogFileTest, AMissingFolderIsCreatedAtConstruction) {
    const LogFile file(folder.path("state/Tarvex/Logs/Tarvex.log"));
    EXPECT_TRUE(fs::is_directory(folder.path("state/Tarvex/Logs")));
    EXPECT_FALSE(fs::exists(file.path())) << "the file waits for its first line";
}

TEST_F(LogFileTest, NewFoldersArePrivateAndThoseThatStandKeepTheirMode) {
    fs::create_directory(folder.path("state"));
    fs::permissions(folder.path("state"), static_cast<fs::perms>(0755));
    const LogFile file(folder.path("state/Tarvex/Logs/Tarvex.log"));
    EXPECT_EQ(fs::status(folder.path("state")).permissions(), static_cast<fs::perms>(0755));
    EXPECT_EQ(fs::status(folder.path("state/Tarvex")).permissions(), fs::perms::owner_all);
    EXPECT_EQ(fs::status(folder.path("state/Tarvex/Logs")).permissions(), fs::perms::owner_all);
}

TEST_F(LogFileTest, AMissingFileIsCreated) {
    LogFile(path).append("first\n");
    EXPECT_EQ(contentOf(path), "first\n");
}

TEST_F(LogFileTest, LinesAreAppended) {
    writeContent(path, "earlier\n");
    const LogFile file(path);
    file.append("one\n");
    file.append("two\n");
    EXPECT_EQ(contentOf(path), "earlier\none\ntwo\n");
}

TEST_F(LogFileTest, BytesAreWrittenAsTheyAre) {
    const std::string line("t\xc3\xa4g \xe6\x97\xa5\nsecond line\t\0end\r\n", 28);
    LogFile(path).append(line);
    EXPECT_EQ(contentOf(path), line);
}

TEST_F(LogFileTest, AFileThatIsMovedAwayIsMadeAgain) {
    const LogFile file(path);
    file.append("one\n");
    fs::rename(path, folder.path("kept.log"));
    file.append("two\n");
    EXPECT_EQ(contentOf(path), "two\n");
    EXPECT_EQ(contentOf(folder.path("kept.log")), "one\n");
}

TEST_F(LogFileTest, AFileOfExactlyTheLimitIsLeftAlone) {
    const std::string old = numberedLines(maxSize - 10);
    writeContent(path, old);
    LogFile(path).append("123456789\n");
    EXPECT_TRUE(contentOf(path) == old + "123456789\n");
    EXPECT_EQ(fs::file_size(path), maxSize);
}

TEST_F(LogFileTest, OneByteMoreIsCutAfterTheFirstLineFeedOfTheTail) {
    const std::string old = numberedLines(maxSize - 10);
    writeContent(path, old);
    LogFile(path).append("1234567890\n");
    const std::string whole = old + "1234567890\n";
    const std::string tail = whole.substr(whole.size() - targetSize);
    const std::string expected = tail.substr(tail.find('\n') + 1);
    EXPECT_TRUE(contentOf(path) == expected);
    EXPECT_EQ(expected.substr(0, 10), "000010001\n") << "the file starts with a whole line";
    EXPECT_LE(expected.size(), targetSize);
    EXPECT_EQ(folder.entries(), Names{"Tarvex.log"});
}

TEST_F(LogFileTest, ATailThatStartsWithALineFeedLosesOnlyThat) {
    std::string old(maxSize, 'x');
    old[old.size() + 1 - targetSize] = '\n';
    writeContent(path, old);
    LogFile(path).append("y");
    const std::string content = contentOf(path);
    EXPECT_EQ(content.size(), targetSize - 1);
    EXPECT_EQ(content.find('\n'), std::string::npos);
    EXPECT_EQ(content.back(), 'y');
}

TEST_F(LogFileTest, ATailWithoutALineFeedIsKeptWhole) {
    writeContent(path, "start\n" + std::string(maxSize, 'x'));
    LogFile(path).append("y");
    EXPECT_TRUE(contentOf(path) == std::string(targetSize - 1, 'x') + "y");
}

TEST_F(LogFileTest, ATailThatOnlyEndsWithALineFeedLeavesNothing) {
    writeContent(path, std::string(maxSize, 'x'));
    LogFile(path).append("\n");
    EXPECT_TRUE(fs::exists(path));
    EXPECT_EQ(fs::file_size(path), 0U);
}

TEST_F(LogFileTest, AFileThatWasFarTooLargeIsCutAtOnce) {
    writeContent(path, numberedLines(5'000'000));
    LogFile(path).append("last\n");
    EXPECT_LE(fs::file_size(path), targetSize);
    EXPECT_TRUE(contentOf(path).ends_with("000499999\nlast\n"));
}

TEST_F(LogFileTest, ALineLargerThanTheLimitIsCutToo) {
    LogFile(path).append(std::string(2'000'000, 'x'));
    EXPECT_EQ(fs::file_size(path), targetSize);
}

TEST_F(LogFileTest, GrowsAndIsCutAgainAndAgain) {
    const LogFile file(path);
    const std::string line = std::string(9'999, 'x') + "\n";
    std::uintmax_t largest = 0;
    for (int count = 0; count < 350; ++count) {
        file.append(line);
        const std::uintmax_t size = fs::file_size(path);
        ASSERT_LE(size, maxSize);
        largest = std::max(largest, size);
    }
    EXPECT_EQ(largest, maxSize);
    EXPECT_EQ(folder.entries(), Names{"Tarvex.log"});
}

TEST_F(LogFileTest, ACutRemovesWhatAnInterruptedOneLeftAndNothingElse) {
    for (const char* abandoned : {"Tarvex.log.0.tmp", "Tarvex.log.4294967295.tmp"}) {
        writeContent(folder.path(abandoned), "part");
    }
    Names others{"Tarvex.log.tmp",        "Tarvex.log..tmp",    "Tarvex.log.12",    "Tarvex.log.1a.tmp",
                 "Tarvex.log.1.tmp.kept", "Tarvex.log.1.2.tmp", "tarvex.log.1.tmp", "Tarvex.logx1.tmp",
                 "MyTarvex.log.1.tmp",    "Other.log.1.tmp",    "Tarvex.log.-1.tmp"};
    for (const std::string& name : others) {
        writeContent(folder.path(name), "kept");
    }
    fs::create_directory(folder.path("Tarvex.log.5.tmp"));
    fs::create_symlink("Other.log.1.tmp", folder.path("Tarvex.log.6.tmp"));
    ASSERT_EQ(mkfifo(folder.path("Tarvex.log.7.tmp").c_str(), 0600), 0);
    LogFile(path).append("short\n");
    EXPECT_TRUE(fs::exists(folder.path("Tarvex.log.0.tmp"))) << "only a cut looks for them";
    writeContent(path, numberedLines(maxSize));
    LogFile(path).append("last\n");
    EXPECT_LE(fs::file_size(path), targetSize);
    others.insert(others.end(), {"Tarvex.log", "Tarvex.log.5.tmp", "Tarvex.log.6.tmp", "Tarvex.log.7.tmp"});
    Names left = folder.entries();
    std::sort(left.begin(), left.end());
    std::sort(others.begin(), others.end());
    EXPECT_EQ(left, others);
}

TEST_F(LogFileTest, ACutThatFindsNoSpaceLeavesTheOldFileAndNoTemporaryOne) {
    const std::string old = numberedLines(maxSize + 10);
    writeContent(path, old);
    {
        const FileSizeLimit limit(targetSize / 2);
        LogFile(path).append("lost\n");
    }
    EXPECT_TRUE(contentOf(path) == old);
    EXPECT_EQ(folder.entries(), Names{"Tarvex.log"});
}

TEST_F(LogFileTest, ACutKeepsThePermissions) {
    writeContent(path, numberedLines(maxSize));
    ASSERT_EQ(chmod(path.c_str(), 0640), 0);
    LogFile(path).append("last\n");
    EXPECT_LE(fs::file_size(path), targetSize);
    EXPECT_EQ(fs::status(path).permissions(), static_cast<fs::perms>(0640));
}

TEST_F(LogFileTest, ACutKeepsTheLink) {
    fs::create_directory(folder.path("elsewhere"));
    writeContent(folder.path("elsewhere/real.log"), numberedLines(maxSize));
    fs::create_symlink("elsewhere/real.log", path);
    LogFile(path).append("last\n");
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_LE(fs::file_size(folder.path("elsewhere/real.log")), targetSize);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path("elsewhere")), fs::directory_iterator()), 1);
}

TEST_F(LogFileTest, ADanglingLinkGetsItsTarget) {
    fs::create_symlink("real.log", path);
    LogFile(path).append("line\n");
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_EQ(contentOf(folder.path("real.log")), "line\n");
}

TEST_F(LogFileTest, APlainFileInPlaceOfTheFolderLosesTheLineOnly) {
    writeContent(folder.path("Logs"), "file");
    const LogFile file(folder.path("Logs/Tarvex.log"));
    EXPECT_NO_THROW(file.append("lost\n"));
    EXPECT_EQ(contentOf(folder.path("Logs")), "file");
    fs::remove(folder.path("Logs"));
    fs::create_directory(folder.path("Logs"));
    file.append("kept\n");
    EXPECT_EQ(contentOf(folder.path("Logs/Tarvex.log")), "kept\n") << "the next line starts afresh";
}

TEST_F(LogFileTest, AFolderInPlaceOfTheFileLosesTheLine) {
    fs::create_directory(path);
    EXPECT_NO_THROW(LogFile(path).append("lost\n"));
    EXPECT_TRUE(fs::is_empty(path));
}

TEST_F(LogFileTest, APipeInPlaceOfTheFileLosesTheLineWithoutWaiting) {
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_NO_THROW(LogFile(path).append("lost\n"));
    EXPECT_TRUE(fs::is_fifo(path));
}

TEST_F(LogFileTest, ALoopOfLinksLosesTheLine) {
    fs::create_symlink("Tarvex.log", path);
    EXPECT_NO_THROW(LogFile(path).append("lost\n"));
    EXPECT_TRUE(fs::is_symlink(path));
}

TEST_F(LogFileTest, AnEmptyPathIsHarmless) {
    const LogFile file("");
    EXPECT_NO_THROW(file.append("lost\n"));
}

TEST_F(LogFileTest, AFolderInWhichNothingCanBeMadeLosesTheCutOnly) {
    writeContent(path, numberedLines(maxSize));
    fs::permissions(path, fs::perms::all);
    const UnprivilegedUser user(folder.path());
    fs::permissions(folder.path(), fs::perms::owner_read | fs::perms::owner_exec);
    LogFile(path).append("last\n");
    if (UnprivilegedUser::isBoundByPermissions()) {
        EXPECT_EQ(fs::file_size(path), maxSize + 5);
    } else {
        EXPECT_LE(fs::file_size(path), targetSize) << "every folder is open to the superuser";
    }
    fs::permissions(folder.path(), fs::perms::owner_all);
    EXPECT_TRUE(contentOf(path).ends_with("last\n"));
    EXPECT_EQ(folder.entries(), Names{"Tarvex.log"});
}

TEST_F(LogFileTest, AFileThatTheUserMayNotReadKeepsTheLineAndLosesTheCut) {
    const std::string old = numberedLines(maxSize);
    writeContent(path, old);
    fs::permissions(path, static_cast<fs::perms>(0222));
    {
        const UnprivilegedUser user(folder.path());
        LogFile(path).append("last\n");
        if (UnprivilegedUser::isBoundByPermissions()) {
            EXPECT_EQ(fs::file_size(path), maxSize + 5);
        } else {
            EXPECT_LE(fs::file_size(path), targetSize) << "every file is open to the superuser";
        }
        EXPECT_EQ(folder.entries(), Names{"Tarvex.log"});
    }
    fs::permissions(path, fs::perms::owner_all);
    EXPECT_TRUE(contentOf(path).ends_with("last\n"));
}

TEST_F(LogFileTest, AFileThatTheUserMayNotWriteLosesTheLine) {
    writeContent(path, "old\n");
    fs::permissions(path, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    const UnprivilegedUser user(folder.path());
    EXPECT_NO_THROW(LogFile(path).append("line\n"));
    EXPECT_EQ(contentOf(path), UnprivilegedUser::isBoundByPermissions() ? "old\n" : "old\nline\n");
}

} // namespace

} // namespace tarvex
