#include "Tests/Support/EvenSplits.h"
#include "Tests/Support/Simulated/SceneText.h"
#include "Tests/Unit/GridEditorOverlayViewFixture.h"

#include <algorithm>
#include <string>
#include <utility>

namespace tarvex {

namespace {

using Lines = std::vector<std::string>;

// The picture as text. Zones have no order among themselves, so that outlines and labels are put in the order
// of their text; a label's background goes with it.
class GridEditorOverlayDrawingTest : public GridEditorOverlayViewTest {
protected:
    struct Picture {
        std::string backdrop;
        Lines outlines;
        Lines labels;
        Lines lines;
    };

    Picture picture() {
        const Lines all = describe(view().draw());
        Picture picture;
        std::size_t next = 0;
        picture.backdrop = all.at(next++);
        while (next < all.size() && all[next].starts_with("stroke ") && !all[next].starts_with("stroke e")) {
            picture.outlines.push_back(all[next++]);
        }
        while (next < all.size() && all[next].starts_with("fill rounded")) {
            picture.labels.push_back(all[next] + " | " + all.at(next + 1));
            next += 2;
        }
        picture.lines.assign(all.begin() + static_cast<std::ptrdiff_t>(next), all.end());
        std::sort(picture.outlines.begin(), picture.outlines.end());
        std::sort(picture.labels.begin(), picture.labels.end());
        return picture;
    }
};

TEST_F(GridEditorOverlayDrawingTest, EmptyGridIsOneZoneWithoutLines) {
    const Picture now = picture();
    EXPECT_EQ(now.backdrop, "fill 0,0 1000x500 black 0.45");
    EXPECT_EQ(now.outlines, Lines{"stroke 8,8 984x484 white 0.4 width 1"});
    // Seven characters of six points, fifteen points high.
    EXPECT_EQ(now.labels, Lines{"fill rounded 473,239.5 54x21 white 0.72 radii 6x6 | text 479,242.5 "
                                "\"984\u00D7484\" black 0.85 size 12 weight 500 monospaced digits"});
    EXPECT_TRUE(now.lines.empty());
}

TEST_F(GridEditorOverlayDrawingTest, LinesComeAfterTheZonesVerticalOnesFirst) {
    useGrid({0.75, 0.25}, {0.5});
    const Picture now = picture();
    EXPECT_EQ(now.outlines.size(), 6U);
    EXPECT_EQ(now.labels.size(), 6U);
    EXPECT_EQ(now.lines,
              (Lines{"line 750,0 to 750,500 white 0.85 width 2", "line 250,0 to 250,500 white 0.85 width 2",
                     "line 0,250 to 1000,250 white 0.85 width 2"}));
}

TEST_F(GridEditorOverlayDrawingTest, NormalizedYRunsDown) {
    useGrid({}, {0.1});
    EXPECT_EQ(picture().lines, Lines{"line 0,450 to 1000,450 white 0.85 width 2"});
    EXPECT_EQ(picture().outlines,
              (Lines{"stroke 8,454 984x38 white 0.4 width 1", "stroke 8,8 984x438 white 0.4 width 1"}));
}

TEST_F(GridEditorOverlayDrawingTest, SizesAreTruncated) {
    margin_ = 0.05;
    EXPECT_NE(picture().labels.at(0).find("\"999\u00D7499\""), std::string::npos);
}

TEST_F(GridEditorOverlayDrawingTest, ZonesSmallerThanTheirMarginsAreLabelledZero) {
    margin_ = 1200;
    EXPECT_NE(picture().labels.at(0).find("\"0\u00D70\""), std::string::npos);
}

TEST_F(GridEditorOverlayDrawingTest, AnyMarginGivesAPicture) {
    for (const double margin : {-1e308, 1e308, -5.0}) {
        margin_ = margin;
        view_.reset();
        EXPECT_EQ(picture().labels.size(), 1U) << margin;
    }
}

TEST_F(GridEditorOverlayDrawingTest, HoveredVerticalLineStandsOut) {
    useGrid({0.25, 0.75}, {0.5});
    view().mouseMoved(at(0.25, 0.2));
    EXPECT_EQ(
        picture().lines,
        (Lines{"fill 243,0 14x500 blue 0.35", "line 250,0 to 250,500 blue 0.95 width 7",
               "line 750,0 to 750,500 white 0.4 width 2", "line 0,250 to 1000,250 white 0.4 width 2",
               "fill ellipse 244,4 12x12 blue 0.55", "stroke ellipse 244,4 12x12 blue 0.95 width 1",
               "fill ellipse 244,484 12x12 blue 0.55", "stroke ellipse 244,484 12x12 blue 0.95 width 1"}));
}

TEST_F(GridEditorOverlayDrawingTest, HoveredHorizontalLineStandsOut) {
    useGrid({0.25}, {0.5});
    view().mouseMoved(at(0.75, 0.5));
    EXPECT_EQ(picture().lines,
              (Lines{"fill 0,243 1000x14 blue 0.35", "line 250,0 to 250,500 white 0.4 width 2",
                     "line 0,250 to 1000,250 blue 0.95 width 7", "fill ellipse 4,244 12x12 blue 0.55",
                     "stroke ellipse 4,244 12x12 blue 0.95 width 1", "fill ellipse 984,244 12x12 blue 0.55",
                     "stroke ellipse 984,244 12x12 blue 0.95 width 1"}));
}

TEST_F(GridEditorOverlayDrawingTest, LineBeingPlacedIsBlueAndItsZonesShowAlready) {
    useGrid({0.25}, {});
    press(0.75, 0.2, shift);
    const Picture now = picture();
    EXPECT_EQ(now.outlines.size(), 3U);
    EXPECT_EQ(now.lines,
              (Lines{"line 250,0 to 250,500 white 0.85 width 2", "line 750,0 to 750,500 blue 0.95 width 6"}));
    drag(0.75, 0.25);
    EXPECT_EQ(picture().lines, (Lines{"line 250,0 to 250,500 white 0.85 width 2",
                                      "line 0,375 to 1000,375 blue 0.95 width 6"}));
}

TEST_F(GridEditorOverlayDrawingTest, LineThatWasPickedUpIsDrawnOnlyWhereItIsPlaced) {
    useGrid({0.25}, {});
    view().mouseMoved(at(0.25, 0.2));
    press(0.25, 0.2);
    drag(0.5, 0.2);
    // The pointer still counts as over the line that was there.
    EXPECT_EQ(
        picture().lines,
        (Lines{"fill 243,0 14x500 blue 0.35", "line 500,0 to 500,500 blue 0.95 width 6",
               "fill ellipse 244,4 12x12 blue 0.55", "stroke ellipse 244,4 12x12 blue 0.95 width 1",
               "fill ellipse 244,484 12x12 blue 0.55", "stroke ellipse 244,484 12x12 blue 0.95 width 1"}));
    EXPECT_EQ(picture().outlines.size(), 2U);
}

TEST_F(GridEditorOverlayDrawingTest, LineThatARightClickMissedFlashesRed) {
    useGrid({0.25}, {0.5});
    view().mouseMoved(at(0.25, 0.9));
    view().rightMouseDown(at(0.262, 0.9));
    const Lines now = picture().lines;
    ASSERT_GE(now.size(), 3U);
    EXPECT_EQ(now[1], "line 250,0 to 250,500 red 0.95 width 5");
    EXPECT_EQ(now[2], "line 0,250 to 1000,250 white 0.4 width 2");
    mainLoop_.advance(0.2);
    EXPECT_EQ(picture().lines[1], "line 250,0 to 250,500 blue 0.95 width 7");
}

TEST_F(GridEditorOverlayDrawingTest, LineOfTheOtherOrientationAtTheSameValueIsNotMeant) {
    useGrid({0.25}, {0.25});
    view().mouseMoved(at(0.25, 0.9));
    EXPECT_EQ(picture().lines[2], "line 0,375 to 1000,375 white 0.4 width 2");
    view().rightMouseDown(at(0.262, 0.9));
    EXPECT_EQ(picture().lines[2], "line 0,375 to 1000,375 white 0.4 width 2");
}

TEST_F(GridEditorOverlayDrawingTest, NearDuplicatesAreHighlightedTogether) {
    useGrid({0.25, 0.25005, 0.25011}, {});
    view().mouseMoved(at(0.25, 0.9));
    const Lines now = picture().lines;
    EXPECT_EQ(std::count_if(now.begin(), now.end(),
                            [](const std::string& line) { return line.ends_with("blue 0.95 width 7"); }),
              2);
    EXPECT_EQ(std::count_if(now.begin(), now.end(),
                            [](const std::string& line) { return line.ends_with("white 0.4 width 2"); }),
              1);
}

TEST_F(GridEditorOverlayDrawingTest, LineAsFarOffAsTheToleranceIsAnother) {
    // The difference is the tolerance to the last bit.
    useGrid({0, 0.0001}, {});
    view().mouseMoved(at(0.001, 0.9));
    EXPECT_EQ(picture().lines.at(1), "line 0,0 to 0,500 white 0.4 width 2");
    EXPECT_EQ(picture().lines.at(2), "line 0.1,0 to 0.1,500 blue 0.95 width 7");
    view().rightMouseDown(at(0.0111, 0.9));
    EXPECT_EQ(picture().lines.at(1), "line 0,0 to 0,500 white 0.4 width 2");
    EXPECT_EQ(picture().lines.at(2), "line 0.1,0 to 0.1,500 red 0.95 width 5");
}

TEST_F(GridEditorOverlayDrawingTest, ThousandsOfZonesAreLeftToTheirLines) {
    // A hundred million zones, less a few: more than memory holds.
    useGrid(evenSplits(8999), evenSplits(8999));
    const Picture now = picture();
    EXPECT_TRUE(now.outlines.empty());
    EXPECT_TRUE(now.labels.empty());
    EXPECT_EQ(now.lines.size(), 2U * 8999);
}

TEST_F(GridEditorOverlayDrawingTest, TenThousandZonesAreDrawnAndOneRowMoreIsNot) {
    margin_ = 0;
    useGrid(evenSplits(99), evenSplits(99));
    EXPECT_EQ(picture().outlines.size(), 10'000U);
    useGrid(evenSplits(99), evenSplits(100));
    const Picture now = picture();
    EXPECT_TRUE(now.outlines.empty());
    EXPECT_EQ(now.lines.size(), 199U);
}

TEST_F(GridEditorOverlayDrawingTest, ButtonsStandInTheLowerRightCorner) {
    const Form form = view().form();
    ASSERT_EQ(form.controls.size(), 2U);
    const Control& cancel = form.controls[0];
    EXPECT_EQ(cancel.kind, ControlKind::pushButton);
    EXPECT_EQ(cancel.id, "cancel");
    EXPECT_EQ(cancel.text, "Cancel");
    EXPECT_EQ(cancel.frame, (Rect{782, 16, 96, 32}));
    EXPECT_EQ(cancel.font, (Font{14, 600, false}));
    const Control& accept = form.controls[1];
    EXPECT_EQ(accept.kind, ControlKind::pushButton);
    EXPECT_EQ(accept.id, "ok");
    EXPECT_EQ(accept.text, "OK");
    EXPECT_EQ(accept.frame, (Rect{888, 16, 96, 32}));
    EXPECT_EQ(accept.font, (Font{14, 600, false}));
    for (const Control& button : form.controls) {
        EXPECT_TRUE(button.isEnabled);
        EXPECT_FALSE(button.isHidden);
    }
}

TEST_F(GridEditorOverlayDrawingTest, ButtonsHaveTheirStyles) {
    ButtonStyle common;
    common.bezelStyle = 1;
    common.alpha = 1;
    common.cornerRadius = 8;
    common.shadow = ControlShadow{{ColorName::black, 0.5}, 0.5, 5, {0, -2}};
    ButtonStyle secondary = common;
    secondary.bezelColor = Color{ColorName::gray, 1, 0.2};
    secondary.backgroundColor = Color{ColorName::gray, 1, 0.2};
    secondary.titleColor = Color{ColorName::white, 1};
    secondary.borderWidth = 2.5;
    secondary.borderColor = Color{ColorName::gray, 1, 0.4};
    ButtonStyle primary = common;
    primary.bezelColor = Color{ColorName::blue, 1};
    primary.contentTintColor = Color{ColorName::black, 1};
    primary.backgroundColor = Color{ColorName::blue, 1};
    const Form form = view().form();
    EXPECT_EQ(form.controls.at(0).buttonStyle, secondary);
    EXPECT_EQ(form.controls.at(1).buttonStyle, primary);
}

} // namespace

} // namespace tarvex
