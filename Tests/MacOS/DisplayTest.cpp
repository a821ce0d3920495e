#include "Core/Displays/DisplayService.h"
#include "Platform/MacOS/Displays/CoreGraphicsDisplayPlatform.h"
#include "Tests/MacOS/MacWorld.h"
#include "Tests/Support/RecordingLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarvex {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t number = 69733378;

/// A screen list that knows none of the displays, so that the registry names them.
class NoScreens final : public ScreenPlatform {
public:
    [[nodiscard]] std::vector<Screen> screens() override { return {}; }

    [[nodiscard]] std::optional<Screen> mainScreen() override { return std::nullopt; }
};

class MacDisplays : public testing::Test {
protected:
    MacDisplays() {
        fake::mac().displays.all = {{.number = number,
                                     .vendor = 1234,
                                     .model = 5678,
                                     .serial = 90123,
                                     .bounds = nativeRect({0, 0, 2560, 1440})}};
    }

    static fake::RegistryEntry& addEntry(std::map<std::string, fake::RegistryValue> properties) {
        fake::RegistryEntry entry;
        entry.properties = std::move(properties);
        entry.productNames = {{"de", "Bildschirm"}, {"en", "Studio Monitor"}};
        return fake::mac().registry.entries.emplace_back(std::move(entry));
    }

    static fake::RegistryEntry& addMatchingEntry() {
        return addEntry(
            {{"DisplayVendorID", 1234}, {"DisplayProductID", 5678}, {"DisplaySerialNumber", 90123}});
    }

    std::optional<std::string> name() { return service_.getDisplayName(number); }

    CoreGraphicsDisplayPlatform platform_;
    NoScreens screens_;
    RecordingLog log_;
    DisplayService service_{Logger(log_, "Tarvex", "DisplayService"), platform_, screens_};
};

TEST_F(MacDisplays, ErrorsOfTheListAreHandedOn) {
    fake::mac().displays.countError = kCGErrorCannotComplete;
    EXPECT_EQ(platform_.activeDisplays(0).error, 1004);
    fake::mac().displays.listError = kCGErrorInvalidConnection;
    const ActiveDisplayList list = platform_.activeDisplays(4);
    EXPECT_EQ(list.error, 1002);
    EXPECT_THAT(list.displays, IsEmpty());
    EXPECT_THAT(service_.getActiveDisplays(), IsEmpty());
    EXPECT_THAT(log_.unifiedLines(),
                ElementsAre(UnifiedLogLine{"Tarvex", "DisplayService", "Failed to get display count: 1004"},
                            UnifiedLogLine{"Tarvex", "DisplayService", "Failed to get displays: 1004"}));
}

TEST_F(MacDisplays, NoDisplaysAreAnEmptyList) {
    fake::mac().displays.all.clear();
    EXPECT_THAT(service_.getActiveDisplays(), IsEmpty());
    EXPECT_THAT(service_.getDisplaySummaries(), IsEmpty());
    EXPECT_THAT(log_.unifiedLines(), IsEmpty());
}

TEST_F(MacDisplays, DisplayThatWentAwayHasNoBoundsAtInfinity) {
    fake::mac().displays.all.clear();
    EXPECT_EQ(platform_.bounds(number), Rect{});
    EXPECT_EQ(service_.getDisplayTitle(number), "v0-p0-sno-serial [External] (v0-p0-sno-serial) @ 0x0 @ 0,0");
}

TEST_F(MacDisplays, RegistryNamesTheDisplayInTheUsersLanguage) {
    addMatchingEntry();
    EXPECT_EQ(name(), "Studio Monitor");
    EXPECT_THAT(fake::mac().registry.informationOptions, ElementsAre(0x200U));
    fake::mac().locale.identifier = "de_AT";
    EXPECT_EQ(name(), "Bildschirm");
    fake::mac().locale.identifier = "fr_FR";
    EXPECT_EQ(name(), std::nullopt);
}

TEST_F(MacDisplays, EmptyRegistryLeavesTheStableId) {
    EXPECT_EQ(name(), std::nullopt);
    EXPECT_EQ(service_.getDisplayTitle(number),
              "v1234-p5678-s90123 [External] (v1234-p5678-s90123) @ 2560x1440");
}

TEST_F(MacDisplays, SearchThatFailsIsNoRegistry) {
    addMatchingEntry();
    fake::mac().registry.searchResult = 5;
    EXPECT_EQ(platform_.displayRegistry(), nullptr);
    EXPECT_EQ(name(), std::nullopt);
}

TEST_F(MacDisplays, OtherServicesAreNotSearched) {
    addMatchingEntry().className = "IOFramebuffer";
    EXPECT_EQ(name(), std::nullopt);
}

TEST_F(MacDisplays, MissingAndStrangePropertiesMatchNothing) {
    addEntry({});
    addEntry({{"DisplayVendorID", "1234"}, {"DisplayProductID", 5678}});
    addEntry({{"DisplayVendorID", 1234}, {"DisplayProductID", 5678.5}});
    addEntry({{"DisplayVendorID", 1234}, {"DisplayProductID", 5678}});
    addEntry({{"DisplayVendorID", 1234}, {"DisplayProductID", 5678}, {"DisplaySerialNumber", 1}});
    EXPECT_EQ(name(), std::nullopt);
    addMatchingEntry();
    EXPECT_EQ(name(), "Studio Monitor");
}

TEST_F(MacDisplays, OnlyNamesThatAreTextsCount) {
    addMatchingEntry().productNames = {{7, "Seven"}, {"en", 7}, {"en_US", "Studio Monitor"}};
    EXPECT_EQ(name(), "Studio Monitor");
}

TEST_F(MacDisplays, EntryWithoutProductNamesNamesNothing) {
    fake::RegistryEntry& entry = addMatchingEntry();
    entry.productNames.clear();
    EXPECT_EQ(name(), std::nullopt);
    entry.hasPlainName = true;
    EXPECT_EQ(name(), std::nullopt);
    entry.hasInformation = false;
    EXPECT_EQ(name(), std::nullopt);
}

TEST_F(MacDisplays, WalkMayBeLeftHalfWay) {
    addMatchingEntry();
    addMatchingEntry();
    const auto walk = platform_.displayRegistry();
    ASSERT_NE(walk, nullptr);
    const auto first = walk->next();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->integerProperty("DisplayVendorID"), 1234);
    EXPECT_EQ(first->integerProperty("\xFF"), std::nullopt);
}

TEST_F(MacDisplays, LocaleComesWithoutTheUsersDeviations) {
    fake::mac().locale.identifier = "en_US@rg=gbzzzz";
    EXPECT_EQ(platform_.currentLocaleIdentifier(), "en_US");
    fake::mac().locale.identifier = "zh-Hans_CN";
    EXPECT_EQ(platform_.currentLocaleIdentifier(), "zh-Hans_CN");
    fake::mac().locale.isKnown = false;
    EXPECT_EQ(platform_.currentLocaleIdentifier(), "");
}

} // namespace
} // namespace tarvex
