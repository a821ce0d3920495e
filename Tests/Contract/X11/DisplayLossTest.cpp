#include "Tests/Contract/X11/DisplayAdapters.h"
#include "Tests/Support/X11/XServer.h"

#include <gtest/gtest.h>

#include <memory>

namespace tarvex {
namespace {

TEST(DisplayLoss, ConnectionThatBreaksDuringTheQueryIsAnErrorAndNoDisplay) {
    auto server = std::make_unique<test::XServer>();
    XDisplayAdapters adapters(server->displayName());
    server.reset();
    ASSERT_FALSE(adapters.connection->isBroken()) << "only a request finds out";
    const ActiveDisplayList list = adapters.displays.activeDisplays(5);
    EXPECT_EQ(list.error, XConnection::connectionLost);
    EXPECT_EQ(list.count, 0U);
    EXPECT_TRUE(list.displays.empty());
}

} // namespace
} // namespace tarvex
