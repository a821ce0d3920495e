#include "Platform/MacOS/CoreFoundation/NotificationObserver.h"

#include "Platform/MacOS/CoreFoundation/CFText.h"
#include "Tests/MacOS/Fakes/FakeMac.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace tarvex {
namespace {

constexpr const char* name = "something happened";

void post(const void* object = nullptr) {
    fake::mac().notifications.post(CFNotificationCenterGetLocalCenter(), name, object);
}

std::unique_ptr<NotificationObserver> observe(const void* object, std::function<void()> handler) {
    return std::make_unique<NotificationObserver>(CFNotificationCenterGetLocalCenter(), name, object,
                                                  std::move(handler));
}

TEST(NotificationObserver, HearsWhileItLives) {
    int calls = 0;
    auto observer = observe(nullptr, [&calls] { ++calls; });
    post();
    post();
    EXPECT_EQ(calls, 2);
    observer.reset();
    post();
    EXPECT_EQ(calls, 2);
}

TEST(NotificationObserver, HearsOfItsObjectAlone) {
    const auto first = makeCFString("first");
    const auto second = makeCFString("second");
    int calls = 0;
    const auto observer = observe(first.get(), [&calls] { ++calls; });
    post(second.get());
    EXPECT_EQ(calls, 0);
    post(first.get());
    EXPECT_EQ(calls, 1);
}

TEST(NotificationObserver, MayGoInItsOwnCall) {
    std::unique_ptr<NotificationObserver> observer;
    std::string heard;
    const std::string text(100, 'x');
    observer = observe(nullptr, [&observer, &heard, text] {
        observer.reset();
        heard = text;
    });
    post();
    EXPECT_EQ(heard, text);
    EXPECT_EQ(fake::mac().notifications.observerCount(), 0U);
}

TEST(NotificationObserver, IsNotHeldBackWhileTheProgramIsNotInFront) {
    int calls = 0;
    const NotificationObserver observer(CFNotificationCenterGetDistributedCenter(), name, nullptr,
                                        [&calls] { ++calls; });
    fake::mac().notifications.isSuspended = true;
    fake::mac().notifications.tellEverybody(name);
    fake::mac().runLoop.settle();
    EXPECT_EQ(calls, 1);
}

} // namespace
} // namespace tarvex
