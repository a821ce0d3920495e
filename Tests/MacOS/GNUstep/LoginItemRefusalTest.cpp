#include "Platform/MacOS/Shell/ServiceLoginItem.h"
#include "Tests/MacOS/GNUstep/LoginItemService.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace tarvex::test {
namespace {

// In plain C++, where what is thrown can be caught.
TEST(LoginItemRefusalTest, RefusalIsThrownWithItsReason) {
    ServiceLoginItem item;
    setLoginItemRefuses(true);
    try {
        item.registerMainApplication();
        ADD_FAILURE() << "registered";
    } catch (const std::runtime_error& error) {
        EXPECT_NE(std::string(error.what()).find("Operation not permitted"), std::string::npos);
    }
    EXPECT_EQ(item.status(), LoginItemStatus::notRegistered);
    setLoginItemRefuses(false);
    item.registerMainApplication();
    setLoginItemRefuses(true);
    EXPECT_THROW(item.unregisterMainApplication(), std::runtime_error);
    EXPECT_EQ(item.status(), LoginItemStatus::enabled);
    setLoginItemRefuses(false);
    item.unregisterMainApplication();
}

} // namespace
} // namespace tarvex::test
