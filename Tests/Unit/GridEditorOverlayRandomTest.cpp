#include "Tests/Support/RandomSource.h"
#include "Tests/Unit/GridEditorOverlayViewFixture.h"

#include <algorithm>
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

    std::size_t lineCount() { return verticals().size() + horizontals().size(); }

    // How far the nearest line is from the event; more than any threshold where there is none.
    double distanceToLines(const MouseEvent& event) {
        double nearest = 1;
        for (const double x : verticals()) {
            nearest = std::min(nearest, std::abs(event.location.x / visibleFrame.width - x));
        }
        for (const double y : horizontals()) {
            nearest = std::min(nearest, std::abs(1 - event.location.y / visibleFrame.height - y));
        }
        return nearest;
    }

    // None where rounding decides.
    static std::optional<bool> isWithin(double distance, double threshold) {
        constexpr double rounding = 1e-9;
        return std::abs(distance - threshold) > rounding ? std::optional(distance < threshold) : std::nullopt;
    }

    void pressAtRandom() {
        const MouseEvent event = anywhere();
        const GridDefinitionRef before = view().grid();
        const std::size_t count = lineCount();
        const auto isOnLine = isWithin(distanceToLines(event), 0.015);
        view().mouseDown(event);
        if (!isInside(event)) {
            EXPECT_EQ(view().grid(), before);
            return;
        }
        EXPECT_TRUE(view().dragBaseOrientation().has_value());
        EXPECT_TRUE(view().pendingSplit().has_value());
        if (isOnLine) {
            EXPECT_EQ(lineCount() < count, *isOnLine);
            lifted_ += *isOnLine ? 1 : 0;
        }
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
        const std::size_t count = lineCount();
        const double distance = distanceToLines(event);
        view().rightMouseDown(event);
        if (!isInside(event)) {
            EXPECT_EQ(view().grid(), before);
            return;
        }
        if (const auto isMeant = isWithin(distance, 0.015)) {
            EXPECT_EQ(view().flashSplit().has_value(), *isMeant);
        }
        if (const auto isDeleted = isWithin(distance, 0.01)) {
            EXPECT_EQ(view().grid() != before, *isDeleted);
            EXPECT_EQ(lineCount() < count, *isDeleted);
            deleted_ += *isDeleted ? 1 : 0;
        }
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
    int lifted_ = 0;
    int deleted_ = 0;
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
    EXPECT_GT(lifted_, 1000);
    EXPECT_GT(deleted_, 1000);
}

} // namespace

} // namespace tarvex
