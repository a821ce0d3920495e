#include "Platform/Posix/PosixFileManager.h"
#include "Tests/Support/TemporaryDirectory.h"
#include "Tests/Support/UnprivilegedUser.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace tarvex {
namespace {

// Access lists as Linux keeps them (acl_ea.h of the kernel).
enum class Tag : std::uint16_t { owner = 1, user = 2, group = 4, mask = 16, others = 32 };

struct Entry {
    Tag tag;
    std::uint16_t permissions;
    std::uint32_t id = 0xFFFFFFFF;
};

std::string accessList(std::initializer_list<Entry> entries) {
    const auto append = [](std::string& text, std::uint32_t value, int bytes) {
        for (int index = 0; index < bytes; ++index) {
            text += static_cast<char>(value >> (8 * index));
        }
    };
    std::string list;
    append(list, 2, 4);
    for (const Entry& entry : entries) {
        append(list, static_cast<std::uint32_t>(entry.tag), 2);
        append(list, entry.permissions, 2);
        append(list, entry.id, 4);
    }
    return list;
}

constexpr const char* ofFile = "system.posix_acl_access";
constexpr const char* ofNewFiles = "system.posix_acl_default";

class PosixAccessListTest : public testing::Test {
protected:
    void SetUp() override {
        writeContent(path_, "old");
        // A temporary folder on a file system without access lists could not tell anything.
        ASSERT_TRUE(give(path_, ofFile, list_)) << "TMPDIR must be on a file system with access lists";
    }

    static bool give(const std::string& path, const char* attribute, const std::string& list) {
        return ::setxattr(path.c_str(), attribute, list.data(), list.size(), 0) == 0;
    }

    static std::string listOf(const std::string& path) {
        std::array<char, 256> list{};
        const ssize_t size = ::getxattr(path.c_str(), ofFile, list.data(), list.size());
        return size > 0 ? std::string(list.data(), static_cast<std::size_t>(size)) : std::string{};
    }

    static mode_t modeOf(const std::string& path) {
        struct stat status = {};
        return ::stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
    }

    // Another user may write, the file's own group may do nothing.
    const std::string list_ = accessList(
        {{Tag::owner, 6}, {Tag::user, 6, 4711}, {Tag::group, 0}, {Tag::mask, 6}, {Tag::others, 4}});
    TemporaryDirectory folder_;
    PosixFileManager files_{folder_.path("support")};
    const std::string path_ = folder_.path("file");
};

TEST_F(PosixAccessListTest, TheListIsKept) {
    files_.writeFileAtomically(path_, "new");
    EXPECT_EQ(contentOf(path_), "new");
    EXPECT_EQ(listOf(path_), list_);
    EXPECT_EQ(modeOf(path_), 0664U) << "the group's bits are the list's mask";
}

TEST_F(PosixAccessListTest, TheListOfTheFolderIsForNewFilesOnly) {
    ASSERT_EQ(::removexattr(path_.c_str(), ofFile), 0);
    ASSERT_EQ(::chmod(path_.c_str(), 0640), 0);
    ASSERT_TRUE(give(folder_.path().string(), ofNewFiles, list_));
    files_.writeFileAtomically(path_, "new");
    EXPECT_EQ(listOf(path_), "");
    EXPECT_EQ(modeOf(path_), 0640U);
    files_.writeFileAtomically(folder_.path("other"), "new");
    EXPECT_EQ(listOf(folder_.path("other")), list_);
}

TEST_F(PosixAccessListTest, AListThatNamesAGroupThatCannotBeKeptIsDropped) {
    const bool isGivenAway = ::chown(path_.c_str(), 12345, 23456) == 0;
    {
        const UnprivilegedUser user(folder_.path());
        files_.writeFileAtomically(path_, "new");
    }
    EXPECT_EQ(contentOf(path_), "new");
    EXPECT_EQ(listOf(path_), isGivenAway ? "" : list_);
    EXPECT_EQ(modeOf(path_), isGivenAway ? 0604U : 0664U);
}

} // namespace
} // namespace tarvex
