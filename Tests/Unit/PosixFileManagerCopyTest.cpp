#include "Tests/Support/UnprivilegedUser.h"
#include "Tests/Unit/PosixFileManagerFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

namespace tarvex {

namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

class PosixFileManagerCopyTest : public PosixFileManagerFixture {
protected:
    PosixFileManagerCopyTest() { writeContent(original, "content"); }

    const std::string original = folder.path("file");
    const std::string copy = folder.path("file.bak");
};

TEST_F(PosixFileManagerCopyTest, CopyOutlivesTheOriginal) {
    files.keepCopy(original, copy);
    files.writeFileAtomically(original, "new");
    EXPECT_EQ(contentOf(copy), "content");
    EXPECT_EQ(contentOf(original), "new");
    EXPECT_EQ(folder.entries(), (Names{"file", "file.bak"}));
}

TEST_F(PosixFileManagerCopyTest, EarlierCopyIsReplaced) {
    writeContent(copy, "older");
    files.keepCopy(original, copy);
    EXPECT_EQ(contentOf(copy), "content");
    files.keepCopy(original, copy);
    EXPECT_EQ(contentOf(copy), "content");
    EXPECT_EQ(folder.entries(), (Names{"file", "file.bak"}));
}

TEST_F(PosixFileManagerCopyTest, LinksAreFollowed) {
    fs::create_directories(folder.path() / "elsewhere");
    writeContent(folder.path() / "elsewhere/real", "real content");
    const std::string link = folder.path("link");
    fs::create_symlink("elsewhere/real", link);
    files.keepCopy(link, copy);
    EXPECT_EQ(contentOf(copy), "real content");
    EXPECT_FALSE(fs::is_symlink(copy));
    EXPECT_TRUE(fs::is_symlink(link));
}

TEST_F(PosixFileManagerCopyTest, FileNeedNotBeReadable) {
    const std::string mine = folder.path("mine");
    {
        const UnprivilegedUser user(folder.path());
        writeContent(mine, "my content");
        fs::permissions(mine, fs::perms::none);
        files.keepCopy(mine, copy);
    }
    EXPECT_EQ(modeOf(copy), 0U);
    fs::permissions(copy, fs::perms::owner_read);
    EXPECT_EQ(contentOf(copy), "my content");
}

TEST_F(PosixFileManagerCopyTest, WhatIsNoFileIsRefused) {
    const std::string sub = folder.path("sub");
    fs::create_directories(sub);
    EXPECT_NE(errorOf([&] { files.keepCopy(sub, copy); }), "");
    EXPECT_NE(errorOf([&] { files.keepCopy(folder.path("missing"), copy); }), "");
    EXPECT_NE(errorOf([&] { files.keepCopy(original, sub); }), "");
    EXPECT_EQ(folder.entries(), (Names{"file", "sub"}));
}

TEST_F(PosixFileManagerCopyTest, PipeIsRefusedAndTheEarlierCopyStays) {
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    writeContent(copy, "older");
    EXPECT_NE(errorOf([&] { files.keepCopy(pipe, copy); }), "");
    EXPECT_EQ(contentOf(copy), "older");
    EXPECT_THAT(folder.entries(), ::testing::UnorderedElementsAre("file", "file.bak", "pipe"));
}

} // namespace

} // namespace tarvex
