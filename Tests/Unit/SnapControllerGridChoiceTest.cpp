#include "Tests/Unit/SnapControllerFixture.h"

#include <map>

namespace tarvex {
namespace {

class SnapControllerGridChoiceTest : public SnapControllerTest {
protected:
    static constexpr const char* firstScreen = "v4369-p8738-sno-serial";
    static constexpr const char* secondScreen = "v4369-p13107-sno-serial";

    void assign(std::map<std::string, std::string> assignments) {
        configure([&](TarvexConfigFields& fields) {
            fields.grids = {makeGrid("a", {0.25}), makeGrid("b", {0.5}), makeGrid("c", {0.75})};
            fields.defaultGridByDisplayId = std::move(assignments);
        });
    }

    std::string chosenAt(Point point) {
        showZonesAt(point);
        std::string id = activeGridId();
        desktop_.releaseButton();
        desktop_.releaseModifiers();
        return id;
    }
};

TEST_F(SnapControllerGridChoiceTest, ScreenWithoutAnAssignmentUsesTheFirstGrid) {
    assign({});
    EXPECT_EQ(chosenAt(inLeftZone), "a");
}

TEST_F(SnapControllerGridChoiceTest, AssignedGridIsUsed) {
    assign({{firstScreen, "b"}, {"v1-p2-s3", "c"}});
    EXPECT_EQ(chosenAt(inLeftZone), "b");
}

TEST_F(SnapControllerGridChoiceTest, EachScreenHasItsOwnGrid) {
    plugSecondScreen();
    assign({{firstScreen, "b"}, {secondScreen, "c"}});
    EXPECT_EQ(chosenAt(inLeftZone), "b");
    EXPECT_EQ(chosenAt(onSecondScreen), "c");
}

TEST_F(SnapControllerGridChoiceTest, SerialNumberTellsEqualMonitorsApart) {
    plugSecondScreen();
    desktop_.displays().at(202).model = desktop_.displays().at(101).model;
    desktop_.displays().at(202).serial = 77;
    assign({{firstScreen, "b"}, {"v4369-p8738-s77", "c"}});
    EXPECT_EQ(chosenAt(inLeftZone), "b");
    EXPECT_EQ(chosenAt(onSecondScreen), "c");
}

TEST_F(SnapControllerGridChoiceTest, EqualMonitorsWithoutSerialNumbersShareTheirGrid) {
    plugSecondScreen();
    desktop_.displays().at(202).model = desktop_.displays().at(101).model;
    assign({{firstScreen, "b"}});
    EXPECT_EQ(chosenAt(inLeftZone), "b");
    EXPECT_EQ(chosenAt(onSecondScreen), "b");
}

TEST_F(SnapControllerGridChoiceTest, AssignmentToAMissingGridUsesTheFirst) {
    assign({{firstScreen, "gone"}});
    EXPECT_EQ(chosenAt(inLeftZone), "a");
}

TEST_F(SnapControllerGridChoiceTest, GridIdsAreComparedExactly) {
    assign({{firstScreen, "B"}});
    EXPECT_EQ(chosenAt(inLeftZone), "a");
    assign({{firstScreen, "b "}});
    EXPECT_EQ(chosenAt(inLeftZone), "a");
}

TEST_F(SnapControllerGridChoiceTest, FirstOfGridsWithOneIdIsUsed) {
    configure([](TarvexConfigFields& fields) {
        fields.grids = {makeGrid("a", {0.5}), makeGrid("twin", {}), makeGrid("twin", {0.2, 0.4, 0.6})};
        fields.defaultGridByDisplayId = {{firstScreen, "twin"}};
    });
    showZonesAt(inLeftZone);
    EXPECT_EQ(controller().activeCells().size(), 1U);
}

TEST_F(SnapControllerGridChoiceTest, ScreenThatNamesNoDisplayUsesTheFirstGrid) {
    assign({{firstScreen, "b"}, {"v0-p0-sno-serial", "c"}});
    desktop_.displays().at(101).isNumberKnown = false;
    EXPECT_EQ(chosenAt(inLeftZone), "a");
}

TEST_F(SnapControllerGridChoiceTest, EmptyGridListUsesTheBuiltInGrid) {
    configure([](TarvexConfigFields& fields) {
        fields.grids = {};
        fields.defaultGridByDisplayId = {{firstScreen, "b"}};
    });
    EXPECT_EQ(chosenAt(inLeftZone), "default");
    EXPECT_EQ(desktop_.windowFrame(window_), leftZone);
}

TEST_F(SnapControllerGridChoiceTest, MissingFileUsesTheBuiltInGrid) {
    EXPECT_EQ(chosenAt(inLeftZone), "default");
}

TEST_F(SnapControllerGridChoiceTest, ChosenGridIsHandedToTheOverlay) {
    assign({{firstScreen, "b"}});
    showZonesAt(inLeftZone);
    ASSERT_NE(controller().overlayWindow(), nullptr);
    EXPECT_EQ(controller().overlayWindow()->overlayView().grid(), controller().activeGrid());
}

// The selection is skipped when the second reading fails, so that no grid was chosen for it.
TEST_F(SnapControllerGridChoiceTest, OverlayWithoutAnActiveGridResolvesOneFromTheReadingAtHand) {
    assign({{firstScreen, "c"}});
    dragWindowTo(inLeftZone);
    desktop_.configFiles().resetLoads();
    desktop_.configFiles().onLoad([this](int load) {
        if (load == 1) {
            breakConfiguration();
        }
    });
    desktop_.holdModifiers(command);
    EXPECT_EQ(controller().activeGrid(), nullptr);
    EXPECT_EQ(shownGridId(), "c");
    EXPECT_TRUE(controller().isOverlayActive());
    EXPECT_TRUE(controller().activeCells().empty());
    desktop_.configFiles().onLoad(nullptr);
}

} // namespace
} // namespace tarvex
