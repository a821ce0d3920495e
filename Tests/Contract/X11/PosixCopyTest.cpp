#include "Platform/Posix/PosixFileManager.h"
#include "Tests/Support/TemporaryDirectory.h"
#include "Tests/Support/UnprivilegedUser.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <sys/stat.h>

namespace tarvex {
namespace {

// A file cannot have names on two file systems.
TEST(PosixCopyTest, FileOnAnotherFileSystemIsCopied) {
    const TemporaryDirectory near;
    const TemporaryDirectory far("/dev/shm");
    struct stat here = {};
    struct stat there = {};
    ASSERT_EQ(::stat(near.path().c_str(), &here), 0);
    ASSERT_EQ(::stat(far.path().c_str(), &there), 0);
    ASSERT_NE(here.st_dev, there.st_dev) << "TMPDIR must not be on the same file system as /dev/shm";
    writeContent(far.path("real"), "far content");
    std::filesystem::create_symlink(far.path("real"), near.path("link"));
    PosixFileManager files(near.path("support"));
    files.keepCopy(near.path("link"), near.path("copy"));
    EXPECT_EQ(contentOf(near.path("copy")), "far content");
    EXPECT_EQ(contentOf(far.path("real")), "far content");
}

// A file of somebody else's, which the user may neither read nor give a second name, in a folder of his own.
TEST(PosixCopyTest, FileThatCanBeNeitherLinkedNorReadIsMoved) {
    const TemporaryDirectory folder;
    writeContent(folder.path("theirs"), "their content");
    std::filesystem::permissions(folder.path("theirs"), std::filesystem::perms::owner_read);
    PosixFileManager files(folder.path("support"));
    {
        const UnprivilegedUser user(folder.path());
        files.keepCopy(folder.path("theirs"), folder.path("copy"));
    }
    EXPECT_EQ(contentOf(folder.path("copy")), "their content");
    // A test that runs as an ordinary user has no file of another, and systems may let anybody link any file.
    EXPECT_TRUE(!std::filesystem::exists(folder.path("theirs")) ||
                std::filesystem::hard_link_count(folder.path("copy")) == 2);
}

} // namespace
} // namespace tarvex
