#include "Platform/MacOS/CoreFoundation/CFHandle.h"
#include "Platform/MacOS/CoreFoundation/CFText.h"
#include "Tests/MacOS/Fakes/FakeMac.h"

#include <gtest/gtest.h>

namespace tarvex {
namespace {

int referencesOf(CFTypeRef object) {
    return fake::objectOf(object)->references;
}

TEST(CFHandle, AdoptTakesTheReferenceOver) {
    const CFStringRef string = fake::makeString("text");
    {
        const auto handle = CFHandle<CFStringRef>::adopt(string);
        EXPECT_EQ(handle.get(), string);
        EXPECT_EQ(referencesOf(string), 1);
    }
    EXPECT_EQ(referencesOf(string), 0);
}

TEST(CFHandle, ShareAddsAReference) {
    const auto owner = CFHandle<CFStringRef>::adopt(fake::makeString("text"));
    {
        const auto handle = CFHandle<CFStringRef>::share(owner.get());
        EXPECT_EQ(referencesOf(owner.get()), 2);
    }
    EXPECT_EQ(referencesOf(owner.get()), 1);
}

TEST(CFHandle, NothingIsNeitherRetainedNorReleased) {
    const CFHandle<CFStringRef> none;
    const auto adopted = CFHandle<CFStringRef>::adopt(nullptr);
    const auto shared = CFHandle<CFStringRef>::share(nullptr);
    const auto copied = none;
    EXPECT_FALSE(none || adopted || shared || copied);
    EXPECT_TRUE(fake::mac().heap.misuses().empty());
}

TEST(CFHandle, CopiesAndMovesKeepTheCount) {
    const CFStringRef string = fake::makeString("text");
    auto first = CFHandle<CFStringRef>::adopt(string);
    auto second = first;
    EXPECT_EQ(referencesOf(string), 2);
    const auto third = std::move(first);
    EXPECT_EQ(referencesOf(string), 2);
    EXPECT_EQ(third.get(), string);
    second = third;
    EXPECT_EQ(referencesOf(string), 2);
    second = CFHandle<CFStringRef>();
    EXPECT_EQ(referencesOf(string), 1);
}

TEST(CFHandle, AssignmentReleasesWhatWasThere) {
    const CFStringRef old = fake::makeString("old");
    auto handle = CFHandle<CFStringRef>::adopt(old);
    handle = CFHandle<CFStringRef>::adopt(fake::makeString("new"));
    EXPECT_EQ(referencesOf(old), 0);
    const auto& itself = handle;
    handle = itself;
    EXPECT_EQ(referencesOf(handle.get()), 1);
}

TEST(CFText, TextSurvivesTheWayThereAndBack) {
    for (const char* text : {"", "AXPosition", "\u00D6sterreich", "\U0001F5D4 window"}) {
        EXPECT_EQ(textOf(makeCFString(text).get()), text);
    }
}

TEST(CFText, BytesThatAreNoTextGiveNothing) {
    EXPECT_FALSE(makeCFString("\xFF\xFE"));
    EXPECT_FALSE(makeCFString("\xC3"));
    EXPECT_EQ(textOf(nullptr), "");
}

TEST(CFText, ObjectsOfAnotherTypeAreNotCast) {
    const auto text = makeCFString("text");
    EXPECT_EQ(castTo<CFStringRef>(text.get(), CFStringGetTypeID()), text.get());
    EXPECT_EQ(castTo<CFNumberRef>(text.get(), CFNumberGetTypeID()), nullptr);
    EXPECT_EQ(castTo<CFStringRef>(nullptr, CFStringGetTypeID()), nullptr);
}

} // namespace
} // namespace tarvex
