#include "Platform/Posix/FileDescriptor.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <utility>

namespace tarvex {

namespace {

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
