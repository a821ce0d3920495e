#include "Platform/MacOS/AppKit/SceneRenderer.h"

#include "Platform/MacOS/AppKit/AppKitTextMeasurer.h"
#include "Tests/MacOS/GNUstep/AppKitTest.h"

#include <utility>

/// Draws a scene on white.
@interface TarvexSceneTestView : NSView {
    const tarvex::Scene* scene_;
}
- (void)setScene:(const tarvex::Scene*)scene;
@end

@implementation TarvexSceneTestView

- (void)setScene:(const tarvex::Scene*)scene {
    scene_ = scene;
}

- (void)drawRect:(NSRect)rect {
    [[NSColor whiteColor] set];
    NSRectFill(rect);
    tarvex::drawScene(*scene_);
}

@end

namespace tarvex::test {
namespace {

constexpr Color black{ColorName::black, 1};
constexpr Color halfBlack{ColorName::black, 0.5};

class SceneRendererTest : public AppKitTest {
protected:
    SceneRendererTest() {
        const NSRect bounds = NSMakeRect(0, 0, 200, 100);
        window_ = [[NSWindow alloc] initWithContentRect:bounds
                                              styleMask:NSBorderlessWindowMask
                                                backing:NSBackingStoreBuffered
                                                  defer:NO];
        [window_ setReleasedWhenClosed:NO];
        view_ = [[TarvexSceneTestView alloc] initWithFrame:bounds];
        [window_ setContentView:view_];
    }

    ~SceneRendererTest() override {
        [window_ close];
        [view_ release];
        [window_ release];
    }

    SceneRendererTest(const SceneRendererTest&) = delete;
    SceneRendererTest& operator=(const SceneRendererTest&) = delete;
    SceneRendererTest(SceneRendererTest&&) = delete;
    SceneRendererTest& operator=(SceneRendererTest&&) = delete;

    ViewPixels draw(ScenePrimitive primitive) { return draw(Scene{{std::move(primitive)}}); }

    ViewPixels draw(Scene scene) {
        scene_ = std::move(scene);
        [view_ setScene:&scene_];
        [window_ orderFront:nil];
        [window_ display];
        endTurn();
        return ViewPixels(view_);
    }

    Scene scene_;
    NSWindow* window_;
    TarvexSceneTestView* view_;
};

TEST_F(SceneRendererTest, FilledRectangleGrowsUpFromTheBottomLeft) {
    const ViewPixels pixels = draw(FillRect{{20, 10, 60, 30}, black});
    EXPECT_EQ(pixels.countOthers({20, 10, 60, 30}, "000000"), 0);
    EXPECT_EQ(pixels.countOthers({0, 0, 200, 100}, "ffffff"), 60 * 30);
}

TEST_F(SceneRendererTest, LaterPrimitivesLieOverEarlierOnesAndMixByTheirAlpha) {
    const ViewPixels pixels =
        draw(Scene{{FillRect{{0, 0, 100, 100}, black}, FillRect{{50, 0, 100, 100}, {ColorName::white, 0.5}},
                    FillRect{{140, 0, 20, 100}, halfBlack}}});
    EXPECT_EQ(pixels.at(25, 50), "000000");
    EXPECT_NEAR(std::stoi(pixels.at(75, 50), nullptr, 16), 0x7f7f7f, 0x010101);
    EXPECT_NEAR(std::stoi(pixels.at(155, 50), nullptr, 16), 0x7f7f7f, 0x010101);
    EXPECT_EQ(pixels.at(170, 50), "ffffff");
}

TEST_F(SceneRendererTest, ClearShowsNothingWhateverItsAlpha) {
    const ViewPixels pixels = draw(FillRect{{0, 0, 200, 100}, {ColorName::clear, 1}});
    EXPECT_EQ(pixels.countOthers({0, 0, 200, 100}, "ffffff"), 0);
}

TEST_F(SceneRendererTest, GraysHaveTheirLightness) {
    const ViewPixels pixels = draw(FillRect{{0, 0, 200, 100}, {ColorName::gray, 1, 0.2}});
    EXPECT_NEAR(std::stoi(pixels.at(50, 50), nullptr, 16), 0x333333, 0x010101);
}

TEST_F(SceneRendererTest, OutlineIsCentredOnTheEdge) {
    const ViewPixels pixels = draw(StrokeRect{{50, 30, 100, 40}, black, 4});
    EXPECT_EQ(pixels.countOthers({48, 28, 4, 44}, "000000"), 0);
    EXPECT_EQ(pixels.countOthers({148, 28, 4, 44}, "000000"), 0);
    EXPECT_EQ(pixels.countOthers({48, 68, 104, 4}, "000000"), 0);
    EXPECT_EQ(pixels.countOthers({52, 32, 96, 36}, "ffffff"), 0);
    EXPECT_EQ(pixels.countOthers({0, 0, 200, 100}, "ffffff"), 104 * 44 - 96 * 36);
}

TEST_F(SceneRendererTest, LineHasSquareEndsAndHalfItsWidthOnEitherSide) {
    const ViewPixels pixels = draw(StrokeLine{{20, 50}, {120, 50}, black, 6});
    EXPECT_EQ(pixels.countOthers({20, 47, 100, 6}, "000000"), 0);
    EXPECT_EQ(pixels.countOthers({0, 0, 200, 100}, "ffffff"), 600);
}

TEST_F(SceneRendererTest, LineWidthOfOneDoesNotReachTheNext) {
    const ViewPixels pixels = draw(Scene{{StrokeLine{{20, 80}, {120, 80}, black, 6}, //
                                          StrokeLine{{20, 20}, {120, 20}, black, 2}}});
    EXPECT_EQ(pixels.countOthers({20, 19, 100, 2}, "000000"), 0);
    EXPECT_EQ(pixels.countOthers({0, 0, 200, 50}, "ffffff"), 200);
}

TEST_F(SceneRendererTest, EllipseLeavesTheCornersOfItsRectangleFree) {
    const ViewPixels pixels = draw(FillEllipse{{40, 20, 60, 60}, black});
    EXPECT_EQ(pixels.at(70, 50), "000000");
    EXPECT_EQ(pixels.at(70, 22), "000000");
    EXPECT_EQ(pixels.at(42, 22), "ffffff");
    EXPECT_EQ(pixels.at(97, 77), "ffffff");
    EXPECT_EQ(pixels.countOthers({104, 0, 96, 100}, "ffffff"), 0);
}

TEST_F(SceneRendererTest, OutlineOfAnEllipseLeavesTheInsideFree) {
    const ViewPixels pixels = draw(StrokeEllipse{{40, 20, 60, 60}, black, 4});
    EXPECT_EQ(pixels.at(70, 50), "ffffff");
    EXPECT_EQ(pixels.at(70, 20), "000000");
    EXPECT_EQ(pixels.at(40, 50), "000000");
    EXPECT_EQ(pixels.at(44, 24), "ffffff");
}

TEST_F(SceneRendererTest, RoundedRectangleIsRoundAtItsCornersAlone) {
    const ViewPixels pixels = draw(FillRoundedRect{{20, 20, 100, 40}, {10, 10}, black});
    EXPECT_EQ(pixels.at(21, 21), "ffffff");
    EXPECT_EQ(pixels.at(118, 58), "ffffff");
    EXPECT_EQ(pixels.countOthers({30, 20, 80, 40}, "000000"), 0);
    EXPECT_EQ(pixels.countOthers({20, 30, 100, 20}, "000000"), 0);
}

TEST_F(SceneRendererTest, TextStaysInTheBoxThatTheMeasurerGives) {
    const Font font{16, 500, true};
    const std::string text = "640\xC3\x97"
                             "355";
    const Size size = AppKitTextMeasurer().sizeOfText(text, font);
    ASSERT_GT(size.width, 40);
    ASSERT_GT(size.height, 12);
    ASSERT_LT(size.width, 120);
    ASSERT_LT(size.height, 40);
    const ViewPixels pixels = draw(TextLabel{{30, 40}, text, font, black});
    const Rect box{28, 38, size.width + 4, size.height + 4};
    EXPECT_GT(pixels.countOthers(box, "ffffff"), 50);
    EXPECT_EQ(pixels.countOthers({0, 0, 200, 100}, "ffffff"), pixels.countOthers(box, "ffffff"));
}

TEST_F(SceneRendererTest, LongerTextIsWiderAndLargerTextHigher) {
    AppKitTextMeasurer measurer;
    const Size size = measurer.sizeOfText("640", {12, 400});
    EXPECT_GT(measurer.sizeOfText("6400", {12, 400}).width, size.width);
    EXPECT_EQ(measurer.sizeOfText("6400", {12, 400}).height, size.height);
    EXPECT_GT(measurer.sizeOfText("640", {24, 400}).height, size.height);
}

} // namespace
} // namespace tarvex::test
