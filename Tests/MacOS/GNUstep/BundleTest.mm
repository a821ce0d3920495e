#include "Platform/MacOS/AppKit/ObjCHandle.h"

#include <gtest/gtest.h>

#import <Foundation/Foundation.h>
#include <string>

namespace tarvex::test {
namespace {

/// The property lists that go into the bundle and its signature, read as a Mac reads them.
class BundleTest : public ::testing::Test {
protected:
    BundleTest() : pool_([[NSAutoreleasePool alloc] init]) {}

    ~BundleTest() override { [pool_ drain]; }

    BundleTest(const BundleTest&) = delete;
    BundleTest& operator=(const BundleTest&) = delete;
    BundleTest(BundleTest&&) = delete;
    BundleTest& operator=(BundleTest&&) = delete;

    static NSDictionary* propertyList(const char* path) {
        return [NSDictionary dictionaryWithContentsOfFile:[NSString stringWithUTF8String:path]];
    }

    static std::string text(NSDictionary* list, NSString* key) {
        const id value = [list objectForKey:key];
        return [value isKindOfClass:[NSString class]] ? [value UTF8String] : "none";
    }

private:
    NSAutoreleasePool* pool_;
};

TEST_F(BundleTest, InformationSaysWhatTheProgramIs) {
    NSDictionary* const information = propertyList(TARVEX_INFO_PLIST);
    ASSERT_NE(information, nil);
    EXPECT_EQ(text(information, @"CFBundleIdentifier"), "org.tarvex.Tarvex");
    EXPECT_EQ(text(information, @"CFBundleExecutable"), "Tarvex");
    EXPECT_EQ(text(information, @"CFBundlePackageType"), "APPL");
    EXPECT_EQ(text(information, @"CFBundleShortVersionString"), TARVEX_VERSION);
    EXPECT_EQ(text(information, @"CFBundleVersion"), TARVEX_VERSION);
    EXPECT_EQ(text(information, @"LSMinimumSystemVersion"), "13.0");
    EXPECT_EQ(text(information, @"NSPrincipalClass"), "NSApplication");
    EXPECT_TRUE([[information objectForKey:@"LSUIElement"] boolValue]);
    EXPECT_TRUE([[information objectForKey:@"NSHighResolutionCapable"] boolValue]);
    EXPECT_FALSE([[information objectForKey:@"NSSupportsAutomaticTermination"] boolValue]);
}

TEST_F(BundleTest, IconThatTheInformationNamesIsTheOneInTheBundle) {
    const std::string name = text(propertyList(TARVEX_INFO_PLIST), @"CFBundleIconFile");
    EXPECT_EQ(std::string(TARVEX_MAC_ICON).substr(std::string(TARVEX_MAC_ICON).rfind('/') + 1),
              name + ".icns");
}

TEST_F(BundleTest, InformationHasNoPlaceholderLeft) {
    NSDictionary* const information = propertyList(TARVEX_INFO_PLIST);
    ASSERT_GE([information count], 15U);
    for (NSString* key in information) {
        const std::string value = [[[information objectForKey:key] description] UTF8String];
        EXPECT_EQ(value.find_first_of("@$"), std::string::npos) << [key UTF8String];
        EXPECT_FALSE(value.empty()) << [key UTF8String];
    }
}

TEST_F(BundleTest, HardenedRuntimeHasNoExceptions) {
    NSDictionary* const entitlements = propertyList(TARVEX_ENTITLEMENTS);
    ASSERT_NE(entitlements, nil);
    EXPECT_EQ([entitlements count], 0U);
}

} // namespace
} // namespace tarvex::test
