#include "Tests/Unit/DisplayServiceFixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

namespace tarvex {

namespace {

using display_fakes::RegistryEntry;

using DisplayServiceTest = DisplayServiceFixture;

TEST_F(DisplayServiceTest, ActiveDisplaysInThePlatformsOrder) {
    displays.counted = {0, 3, {}};
    displays.listed = {0, 3, {7, 2, 5}};
    EXPECT_EQ(service().getActiveDisplays(), (std::vector<std::uint32_t>{7, 2, 5}));
    EXPECT_EQ(displays.capacities, (std::vector<std::uint32_t>{0, 3}));
    EXPECT_TRUE(log.unifiedLines().empty());
}

TEST_F(DisplayServiceTest, ACountOfZeroGivesNoDisplaysWhateverTheSecondCallSays) {
    displays.counted = {0, 0, {}};
    displays.listed = {0, 2, {7, 2}};
    EXPECT_TRUE(service().getActiveDisplays().empty());
}

TEST_F(DisplayServiceTest, AFailedCountIsLoggedAndGivesNoDisplays) {
    displays.counted = {1001, 0, {}};
    displays.listed = {0, 2, {7, 2}};
    EXPECT_TRUE(service().getActiveDisplays().empty());
    EXPECT_EQ(loggedMessages(), std::vector<std::string>{"Failed to get display count: 1001"});
}

TEST_F(DisplayServiceTest, AFailedListIsLogged) {
    displays.counted = {0, 2, {}};
    displays.listed = {-7, 0, {}};
    EXPECT_TRUE(service().getActiveDisplays().empty());
    EXPECT_EQ(loggedMessages(), std::vector<std::string>{"Failed to get displays: -7"});
}

TEST_F(DisplayServiceTest, BothFailuresAreLogged) {
    displays.counted = {1, 2, {}};
    displays.listed = {2, 1, {9}};
    EXPECT_EQ(service().getActiveDisplays(), std::vector<std::uint32_t>{9})
        << "an error code alone drops nothing";
    EXPECT_EQ(loggedMessages(),
              (std::vector<std::string>{"Failed to get display count: 1", "Failed to get displays: 2"}));
}

TEST_F(DisplayServiceTest, ADisplayThatLeftBetweenTheCallsIsNotListed) {
    displays.counted = {0, 3, {}};
    displays.listed = {0, 2, {7, 2}};
    EXPECT_EQ(service().getActiveDisplays(), (std::vector<std::uint32_t>{7, 2}));
}

TEST_F(DisplayServiceTest, ADisplayThatCameBetweenTheCallsWaitsForTheNextOne) {
    displays.counted = {0, 1, {}};
    displays.listed = {0, 3, {7}};
    EXPECT_EQ(service().getActiveDisplays(), std::vector<std::uint32_t>{7});
}

TEST_F(DisplayServiceTest, PlacesThatThePlatformLeftUnfilledAreZero) {
    displays.counted = {0, 3, {}};
    displays.listed = {0, 3, {7}};
    EXPECT_EQ(service().getActiveDisplays(), (std::vector<std::uint32_t>{7, 0, 0}));
}

TEST_F(DisplayServiceTest, TheIdentifierHoldsThePlatformsNumbers) {
    displays.displays[4] = {1234, 5678, 90123, {}, false};
    EXPECT_EQ(service().getIdentifier(4), DisplayIdentifier(1234, 5678, 90123));
}

TEST_F(DisplayServiceTest, ASerialNumberOfZeroIsNone) {
    displays.displays[4] = {1234, 5678, 0, {}, false};
    EXPECT_EQ(service().getIdentifier(4).stableId(), "v1234-p5678-sno-serial");
}

TEST_F(DisplayServiceTest, ADisconnectedDisplayHasZeros) {
    EXPECT_EQ(service().getIdentifier(99).stableId(), "v0-p0-sno-serial");
}

TEST_F(DisplayServiceTest, NumbersAreUnsigned32Bit) {
    displays.displays[4] = {4294967295, 4294967295, 4294967295, {}, false};
    EXPECT_EQ(service().getIdentifier(4).stableId(), "v4294967295-p4294967295-s4294967295");
}

TEST_F(DisplayServiceTest, TwoMonitorsOfOneModelWithoutSerialNumbersShareAStableId) {
    displays.displays[1] = {10, 20, 0, {0, 0, 100, 100}, false};
    displays.displays[2] = {10, 20, 0, {100, 0, 100, 100}, false};
    EXPECT_EQ(service().getIdentifier(1).stableId(), service().getIdentifier(2).stableId());
    EXPECT_NE(service().getDisplayTitle(1), service().getDisplayTitle(2));
}

TEST_F(DisplayServiceTest, TheNameOfTheScreenComesFirst) {
    screens.all = {{1, {}, {}, "Screen Name"}};
    EXPECT_EQ(pickedName("en_US", {{"en", "Registry Name"}}), "Screen Name");
    EXPECT_EQ(displays.registryUse.visits, 0);
}

TEST_F(DisplayServiceTest, AnEmptyScreenNameIsAName) {
    screens.all = {{1, {}, {}, ""}};
    EXPECT_EQ(pickedName("en_US", {{"en", "Registry Name"}}), "");
}

TEST_F(DisplayServiceTest, ScreensOfOtherDisplaysDoNotCount) {
    screens.all = {{2, {}, {}, "Other"}, {std::nullopt, {}, {}, "Unknown"}};
    EXPECT_EQ(pickedName("en_US", {{"en", "Registry Name"}}), "Registry Name");
}

TEST_F(DisplayServiceTest, NoRegistryNoName) {
    displays.displays[1] = {10, 20, 30, {}, false};
    EXPECT_EQ(service().getDisplayName(1), std::nullopt);
    displays.registry.emplace();
    EXPECT_EQ(service().getDisplayName(1), std::nullopt);
}

TEST_F(DisplayServiceTest, TheWholeLocaleServesWhenTheLanguageIsMissing) {
    EXPECT_EQ(pickedName("en_US", {{"en_US", "A"}}), "A");
}

TEST_F(DisplayServiceTest, ANameInAnotherLanguageIsNone) {
    EXPECT_EQ(pickedName("en_US", {{"de", "B"}}), std::nullopt);
}

TEST_F(DisplayServiceTest, TheLanguageComesBeforeTheWholeLocale) {
    EXPECT_EQ(pickedName("en_US", {{"en_US", "A"}, {"en", "C"}}), "C");
}

TEST_F(DisplayServiceTest, AnEmptyMapHasNoName) {
    EXPECT_EQ(pickedName("en_US", {}), std::nullopt);
    EXPECT_EQ(pickedName("", {}), std::nullopt);
}

TEST_F(DisplayServiceTest, WithoutALocaleTheFirstNameServes) {
    EXPECT_EQ(pickedName("", {{"de", "B"}, {"en", "C"}}), "B");
    EXPECT_EQ(pickedName("_", {{"de", "B"}, {"en", "C"}}), "B");
}

TEST_F(DisplayServiceTest, WithoutALocaleAnExactEntryComesBeforeTheFirst) {
    EXPECT_EQ(pickedName("", {{"de", "B"}, {"", "D"}}), "D");
    EXPECT_EQ(pickedName("__", {{"de", "B"}, {"__", "E"}}), "E");
}

TEST_F(DisplayServiceTest, EmptyPiecesOfTheLocaleAreDropped) {
    EXPECT_EQ(pickedName("_en_US", {{"de", "B"}, {"en", "C"}}), "C");
    EXPECT_EQ(pickedName("en", {{"en", "C"}}), "C");
}

TEST_F(DisplayServiceTest, AnEntryMatchesByAllThreeNumbers) {
    EXPECT_TRUE(
        matches(30, {{"DisplayVendorID", 10}, {"DisplayProductID", 20}, {"DisplaySerialNumber", 30}}));
    EXPECT_FALSE(
        matches(30, {{"DisplayVendorID", 11}, {"DisplayProductID", 20}, {"DisplaySerialNumber", 30}}));
    EXPECT_FALSE(
        matches(30, {{"DisplayVendorID", 10}, {"DisplayProductID", 21}, {"DisplaySerialNumber", 30}}));
    EXPECT_FALSE(
        matches(30, {{"DisplayVendorID", 10}, {"DisplayProductID", 20}, {"DisplaySerialNumber", 31}}));
}

TEST_F(DisplayServiceTest, AnEntryWithoutASerialMatchesOnlyAnIdentityWithoutOne) {
    EXPECT_TRUE(matches(0, {{"DisplayVendorID", 10}, {"DisplayProductID", 20}}));
    EXPECT_FALSE(matches(30, {{"DisplayVendorID", 10}, {"DisplayProductID", 20}}));
}

TEST_F(DisplayServiceTest, AnIdentityWithoutASerialMatchesAnySerial) {
    EXPECT_TRUE(matches(0, {{"DisplayVendorID", 10}, {"DisplayProductID", 20}, {"DisplaySerialNumber", 77}}));
}

TEST_F(DisplayServiceTest, AMissingVendorOrProductMatchesNothing) {
    EXPECT_FALSE(matches(0, {{"DisplayProductID", 20}}));
    EXPECT_FALSE(matches(0, {{"DisplayVendorID", 10}}));
    EXPECT_FALSE(matches(0, {}));
}

TEST_F(DisplayServiceTest, TheWalkStopsAtTheFirstMatchAndReleasesEverything) {
    const RegistryEntry other{{{"DisplayVendorID", 1}, {"DisplayProductID", 1}}, {{"en", "Other"}}};
    const RegistryEntry first{{{"DisplayVendorID", 10}, {"DisplayProductID", 20}}, {{"en", "First"}}};
    const RegistryEntry second{{{"DisplayVendorID", 10}, {"DisplayProductID", 20}}, {{"en", "Second"}}};
    displays.displays[1] = {10, 20, 0, {}, false};
    displays.registry = {other, first, second};
    EXPECT_EQ(service().getDisplayName(1), "First");
    EXPECT_EQ(displays.registryUse.visits, 2);
    EXPECT_EQ(displays.registryUse.openHandles, 0);
}

TEST_F(DisplayServiceTest, AWalkWithoutAMatchReleasesEverything) {
    displays.displays[1] = {10, 20, 0, {}, false};
    displays.registry = {RegistryEntry{}, RegistryEntry{}};
    EXPECT_EQ(service().getDisplayName(1), std::nullopt);
    EXPECT_EQ(displays.registryUse.visits, 2);
    EXPECT_EQ(displays.registryUse.openHandles, 0);
}

TEST_F(DisplayServiceTest, TheTitleOfAMonitorWithoutASerialNumberTellsItsPlace) {
    displays.displays[1] = {1234, 5678, 0, {1512, 0, 2560, 1440}, false};
    screens.all = {{1, {}, {}, "Studio Monitor"}};
    EXPECT_EQ(service().getDisplayTitle(1),
              "Studio Monitor [External] (v1234-p5678-sno-serial) @ 2560x1440 @ 1512,0");
}

TEST_F(DisplayServiceTest, TheTitleOfAMonitorWithASerialNumberDoesNot) {
    displays.displays[1] = {1, 2, 3, {1512, 0, 1280, 800}, true};
    screens.all = {{1, {}, {}, "Panel"}};
    EXPECT_EQ(service().getDisplayTitle(1), "Panel [Built-in] (v1-p2-s3) @ 1280x800");
}

TEST_F(DisplayServiceTest, TheTitleTakesTheRegistryNameWithoutAScreen) {
    displays.displays[1] = {10, 20, 30, {0, 0, 100, 50}, false};
    displays.registry = {{{{"DisplayVendorID", 10}, {"DisplayProductID", 20}, {"DisplaySerialNumber", 30}},
                          {{"en", "Registry Name"}}}};
    EXPECT_EQ(service().getDisplayTitle(1), "Registry Name [External] (v10-p20-s30) @ 100x50");
}

TEST_F(DisplayServiceTest, TheTitleOfANamelessDisplayIsItsStableId) {
    displays.displays[1] = {10, 20, 30, {0, 0, 100, 50}, false};
    EXPECT_EQ(service().getDisplayTitle(1), "v10-p20-s30 [External] (v10-p20-s30) @ 100x50");
}

TEST_F(DisplayServiceTest, SizesAndPlacesAreTruncatedTowardsZero) {
    displays.displays[1] = {1, 2, 0, {-1512.9, 10.9, 2560.99, 1440.5}, false};
    EXPECT_EQ(service().getDisplayTitle(1),
              "v1-p2-sno-serial [External] (v1-p2-sno-serial) @ 2560x1440 @ -1512,10");
}

TEST_F(DisplayServiceTest, BoundsThatAreNotFiniteAreAProgrammingError) {
    for (const double value : {std::nan(""), std::numeric_limits<double>::infinity()}) {
        displays.displays[1] = {1, 2, 3, {0, 0, value, 10}, false};
        EXPECT_THROW(static_cast<void>(service().getDisplayTitle(1)), std::logic_error);
    }
}

TEST_F(DisplayServiceTest, SummariesInListOrder) {
    displays.counted = {0, 2, {}};
    displays.listed = {0, 2, {5, 1}};
    displays.displays[1] = {1, 2, 3, {0, 0, 1920.7, 1080}, true};
    displays.displays[5] = {4, 5, 0, {1920, 0, 1280, 1024}, false};
    EXPECT_EQ(service().getDisplaySummaries(),
              (std::vector<std::string>{"v4-p5-sno-serial @ 1280x1024", "v1-p2-s3 @ 1920x1080"}));
}

TEST_F(DisplayServiceTest, NoDisplaysNoSummaries) {
    EXPECT_TRUE(service().getDisplaySummaries().empty());
}

} // namespace

} // namespace tarvex
