#include "Tests/Unit/SnapControllerRandomDesktop.h"

#include <deque>

namespace tarvex {
namespace {

constexpr int eventsPerSeed = 50000;

class SnapControllerRandomTest : public SnapControllerRandomDesktop {
protected:
    // What must hold between any two events; empty when it does.
    std::string violation() {
        const SnapController& snap = controller();
        const auto shown = desktop_.windows().shown().size();
        const bool isSelected = !snap.selectionState().selectedKeys().empty();
        const int elements = desktop_.accessibility().liveElements();
        const std::vector<std::pair<bool, const char*>> rules = {
            {snap.isDragging() == mustBeDragging_, "dragging from press to release"},
            {snap.isOverlayActive() == mustBeSnapping_, "snapping while the modifiers match"},
            {!snap.isOverlayActive() || snap.isDragging(), "no snapping outside a drag"},
            {shown == (snap.isOverlayActive() ? 1U : 0U), "the overlay is shown exactly while snapping"},
            {desktop_.windows().open().size() <= 1, "one overlay at most"},
            {!isSelected || snap.isOverlayActive(), "no selection without an overlay"},
            {snap.isDragging() || isAtRest(), "nothing is left of a drag after its reset"},
            {elements == (snap.activeWindow() ? 1 : 0), "only the dragged window is held"},
            {desktop_.input().alteredEvents() == 0, "events pass unchanged"},
            {desktop_.input().misuses().empty(), "taps are dropped in order"},
            {desktop_.input().liveTaps() <= 1, "one tap at most"},
            {snapping_.taps().isInstalled() != snapping_.taps().isWaiting(), "the tap is there or awaited"},
            {writesAreWhole(), "a window's position is written with its size, once"},
        };
        for (const auto& [holds, rule] : rules) {
            if (!holds) {
                return rule;
            }
        }
        return {};
    }

    bool isAtRest() {
        const SnapController& snap = controller();
        return snap.activeWindow() == nullptr && snap.activeCells().empty() && snap.activeGrid() == nullptr &&
               snap.activeModifiers() == 0 && !snap.originalWindowFrame();
    }

    bool writesAreWhole() {
        int positions = 0;
        int sizes = 0;
        for (const std::string& entry : desktop_.journal().entries()) {
            positions += entry.find("write AXPosition") != std::string::npos ? 1 : 0;
            sizes += entry.find("write AXSize") != std::string::npos ? 1 : 0;
        }
        return positions == sizes && positions <= 1;
    }

    void count() {
        for (const std::string& line : desktop_.fileLog().lines()) {
            snaps_ += line.starts_with("SnapController.snapAndHide success") ? 1 : 0;
            drags_ += line.starts_with("SnapController.snapDragStart") ? 1 : 0;
        }
        abandoned_ += static_cast<int>(desktop_.log().lines().size());
    }

    std::string lastSteps() const {
        std::string text;
        for (const std::string& step : steps_) {
            text.append(" ").append(step);
        }
        return text;
    }

    int snaps_ = 0;
    int drags_ = 0;
    int abandoned_ = 0;
    std::deque<std::string> steps_;
};

TEST_P(SnapControllerRandomTest, InvariantsHoldAfterEveryEvent) {
    for (int step = 0; step < eventsPerSeed; ++step) {
        forgetHistory();
        steps_.emplace_back(happen());
        if (steps_.size() > 20) {
            steps_.pop_front();
        }
        count();
        desktop_.windows().forgetClosed();
        ASSERT_EQ(violation(), "") << "seed " << GetParam() << ", event " << step
                                   << ", the last ones:" << lastSteps();
    }
    // Enough happened for the rules to mean something.
    EXPECT_GT(snaps_, 50);
    EXPECT_GT(drags_, 50);
    EXPECT_GT(abandoned_, 50);
}

INSTANTIATE_TEST_SUITE_P(Seeds, SnapControllerRandomTest, ::testing::Values(1U, 20U, 300U, 4000U),
                         [](const auto& info) { return "Seed" + std::to_string(info.param); });

} // namespace
} // namespace tarvex
