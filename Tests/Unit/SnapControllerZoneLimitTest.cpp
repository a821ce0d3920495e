#include "Tests/Support/EvenSplits.h"
#include "Tests/Unit/SnapControllerFixture.h"

namespace tarvex {
namespace {

class SnapControllerZoneLimitTest : public SnapControllerTest {
protected:
    static constexpr const char* refusal = "SnapController.updateSelection: too many zones";
    static constexpr const char* abandonment = "SnapController.snapAndHide: selection rect=nil";

    void configureGrid(std::vector<double> verticalSplits, std::vector<double> horizontalSplits) {
        configure([&](TarvexConfigFields& fields) {
            fields.cellMarginPoints = 0;
            fields.grids = {makeGrid("huge", std::move(verticalSplits), std::move(horizontalSplits))};
        });
    }
};

TEST_F(SnapControllerZoneLimitTest, AGridOfAHundredMillionZonesShowsNoneAndSnapsNothing) {
    configureGrid(evenSplits(10'000), evenSplits(10'000));
    dragWindowTo(inLeftZone);
    forgetHistory();
    desktop_.holdModifiers(command);
    EXPECT_TRUE(controller().isOverlayActive());
    EXPECT_TRUE(controller().activeCells().empty());
    EXPECT_TRUE(selectedKeys().empty());
    EXPECT_TRUE(isOverlayShown());
    EXPECT_EQ(picture(), Lines()) << "a new overlay that was given nothing to show";
    desktop_.moveTo(inRightZone);
    const Rect before = desktop_.windowFrame(window_);
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.log().lines(), (Lines{refusal, abandonment})) << "once for the whole drag";
    EXPECT_EQ(desktop_.windowFrame(window_), before);
    expectAtRest();
}

TEST_F(SnapControllerZoneLimitTest, EveryDragSaysSoOnce) {
    configureGrid(evenSplits(400), evenSplits(400));
    for (int drag = 0; drag < 2; ++drag) {
        showZonesAt(inLeftZone);
        desktop_.moveTo(inRightZone);
        desktop_.releaseButton();
        desktop_.releaseModifiers();
    }
    showZonesAt(inLeftZone, 0);
    desktop_.holdModifiers(command);
    EXPECT_EQ(desktop_.log().lines(), (Lines{refusal}));
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.log().lines(), (Lines{refusal, abandonment}));
}

// Repeated splits make no zones, so that the limit can be met with few of them.
TEST_F(SnapControllerZoneLimitTest, TheLimitItselfIsAllowedAndCountedBeforeTheSplitsAreCleaned) {
    static_assert(SnapController::maxZones == 100'000);
    configureGrid(std::vector<double>(399, 0.5), std::vector<double>(249, 0.5));
    showZonesAt(inLeftZone);
    EXPECT_EQ(controller().activeCells().size(), 4U);
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.log().lines(), Lines());
    desktop_.releaseModifiers();
    configureGrid(std::vector<double>(400, 0.5), std::vector<double>(249, 0.5));
    showZonesAt(inLeftZone, 0);
    desktop_.holdModifiers(command);
    EXPECT_TRUE(controller().activeCells().empty());
    EXPECT_EQ(desktop_.log().lines(), (Lines{refusal}));
    desktop_.releaseButton();
    desktop_.releaseModifiers();
    configureGrid({}, std::vector<double>(100'000, 0.5));
    showZonesAt(inLeftZone);
    EXPECT_TRUE(controller().activeCells().empty());
    desktop_.releaseButton();
}

TEST_F(SnapControllerZoneLimitTest, ZonesOfAnotherGridAreNotSnappedToInItsPlace) {
    showZonesAt(inLeftZone);
    ASSERT_EQ(selectedKeys(), (Lines{"r0-c0"}));
    configureGrid(evenSplits(400), evenSplits(400));
    desktop_.moveTo(inRightZone);
    EXPECT_EQ(picture(), pictureOf(visibleFrame, {}, {})) << "what is shown is what would happen";
    const Rect before = desktop_.windowFrame(window_);
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.log().lines(), (Lines{refusal, abandonment}));
    EXPECT_EQ(desktop_.windowFrame(window_), before);
}

TEST_F(SnapControllerZoneLimitTest, AGridThatIsMendedInMidDragIsUsedAtOnce) {
    configureGrid(evenSplits(400), evenSplits(400));
    showZonesAt(inLeftZone);
    healConfiguration();
    desktop_.moveTo(inRightZone);
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.windowFrame(window_), rightZone);
}

} // namespace
} // namespace tarvex
