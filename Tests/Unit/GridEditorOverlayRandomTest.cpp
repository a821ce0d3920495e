#include "Tests/Support/RandomSource.h"
#include "Tests/Unit/GridEditorOverlayViewFixture.h"

#include <cmath>

namespace tarvex {

namespace {

bool isNormalized(const std::vector<double>& splits) {
    constexpr double epsilon = GridSplitNormalizer::standardEpsilon;
    double before = 0;
    for (const double value : splits) {
        if (!(value - before > epsilon)) {
            return false;
        }
        before = value;
    }
    return before < 1 - epsilon;
}

// Whoever plays with the mouse at random: 100,000 events, with every rule looked at after each.
class GridEditorOverlayRandomTest : public GridEditorOverlayViewTest {
protected:
    MouseEvent anywhere() {
        // Often on the lines that stand, now and then outside.
        double x = random_.between(-0.05, 1.05);
        double y = random_.between(-0.05, 1.05);
        if (!verticals().empty() && random_.unit() < 0.3) {
            x = anyOf(verticals()) + random_.between(-0.02, 0.02);
        }
        if (!horizontals().empty() && random_.unit() < 0.3) {
            y = anyOf(horizontals()) + random_.between(-0.02, 0.02);
        }
        return at(x, y, random_.unit() < 0.4 ? shift : 0);
    }

    double anyOf(const std::vector<double>& values) {
        return values[random_.integer(std::size_t{0}, values.size() - 1)];
    }

    static bool isInside(const MouseEvent& event) {
        return Rect{0, 0, visibleFrame.width, visibleFrame.height}.contains(event.location);
    }

    void pressAtRandom() {
        const MouseEvent event = anywhere();
        const GridDefinitionRef before = view().grid();
        view().mouseDown(event);
        if (!isInside(event)) {
            EXPECT_EQ(view().grid(), before);
            return;
        }
        EXPECT_TRUE(view().dragBaseOrientation().has_value());
        EXPECT_TRUE(view().pendingSplit().has_value());
    }

    void releaseAtRandom() {
        const MouseEvent event = anywhere();
        const GridDefinitionRef before = view().grid();
        const bool wasPending = view().pendingSplit().has_value();
        view().mouseUp(event);
        if (!isInside(event)) {
            EXPECT_EQ(view().grid(), before);
            return;
        }
        EXPECT_FALSE(view().dragBaseOrientation() || view().pendingSplit() || view().draggedSplit());
        EXPECT_EQ(view().grid() == before, !wasPending);
        if (wasPending) {
            EXPECT_TRUE(isNormalized(verticals()) && isNormalized(horizontals()));
        }
    }

    void rightClickAtRandom() {
        const MouseEvent event = anywhere();
        const GridDefinitionRef before = view().grid();
        const std::size_t count = verticals().size() + horizontals().size();
        view().rightMouseDown(event);
        if (view().grid() == before) {
            return;
        }
        EXPECT_TRUE(isInside(event));
        EXPECT_TRUE(view().flashSplit().has_value());
        EXPECT_LT(verticals().size() + horizontals().size(), count);
    }

    void doSomething() {
        switch (random_.integer(0, 5)) {
        case 0:
            pressAtRandom();
            break;
        case 1:
            releaseAtRandom();
            break;
        case 2:
            rightClickAtRandom();
            break;
        case 3:
            mainLoop_.advance(0.05);
            break;
        case 4:
            view().mouseMoved(anywhere());
            break;
        default:
            view().mouseDragged(anywhere());
            break;
        }
    }

    RandomSource random_{20261121};
};

TEST_F(GridEditorOverlayRandomTest, RulesHoldWhateverTheMouseDoes) {
    for (int event = 0; event < 100'000; ++event) {
        const GridDefinitionRef before = view().grid();
        const std::vector<double> verticalsBefore = before->verticalSplits();
        const std::vector<double> horizontalsBefore = before->horizontalSplits();
        doSomething();
        ASSERT_FALSE(HasFailure()) << "event " << event;
        ASSERT_TRUE(isNormalized(verticals()) && isNormalized(horizontals())) << event;
        ASSERT_EQ(view().grid()->id(), "id");
        ASSERT_EQ(view().grid()->name(), "Name");
        // Whoever still holds the old grid finds it as it was.
        ASSERT_EQ(before->verticalSplits(), verticalsBefore);
        ASSERT_EQ(before->horizontalSplits(), horizontalsBefore);
        ASSERT_EQ(view().dragBaseOrientation().has_value(), view().pendingSplit().has_value());
    }
}

} // namespace

} // namespace tarvex
