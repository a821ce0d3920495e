#pragma once

#include "App/Input/EventTapPlatform.h"
#include "App/ZoneEditor/GridEditorOverlayView.h"
#include "Tests/Support/Simulated/SimulatedMainLoop.h"
#include "Tests/Support/Simulated/SimulatedViewWindows.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace tarvex {

/// A zone editor of 1000 by 500 points whose visible frame begins elsewhere, so that the frame's and the
/// view's own coordinates are never taken for each other.
class GridEditorOverlayViewTest : public ::testing::Test {
protected:
    using Splits = std::vector<double>;

    static constexpr Rect visibleFrame{300, 40, 1000, 500};
    static constexpr std::uint64_t shift = event_flag::shift;

    /// The lines of the grid that the next view() starts with.
    void useGrid(Splits vertical, Splits horizontal) {
        start_ =
            std::make_shared<const GridDefinition>("id", "Name", std::move(vertical), std::move(horizontal));
        view_.reset();
    }

    GridEditorOverlayView& view() {
        if (!view_) {
            view_ = std::make_unique<GridEditorOverlayView>(
                start_, visibleFrame, margin_, [this] { ++cancels_; },
                [this](const GridDefinitionRef& grid) { accepted_.push_back(grid); },
                GridEditorSurroundings{mainLoop_, textMeasurer_});
            view_->setRedrawHandler([this] { ++redraws_; });
        }
        return *view_;
    }

    /// The event at a normalized position (y down).
    static MouseEvent at(double x, double y, std::uint64_t flags = 0) {
        return {{x * visibleFrame.width, (1 - y) * visibleFrame.height}, flags};
    }

    static MouseEvent outside(std::uint64_t flags = 0) { return {{-1, 250}, flags}; }

    void press(double x, double y, std::uint64_t flags = 0) { view().mouseDown(at(x, y, flags)); }

    void drag(double x, double y, std::uint64_t flags = 0) { view().mouseDragged(at(x, y, flags)); }

    void release(double x, double y, std::uint64_t flags = 0) { view().mouseUp(at(x, y, flags)); }

    void click(double x, double y, std::uint64_t flags = 0) {
        press(x, y, flags);
        release(x, y, flags);
    }

    const Splits& verticals() { return view().grid()->verticalSplits(); }

    const Splits& horizontals() { return view().grid()->horizontalSplits(); }

    /// How many redraws the work asks for.
    template <typename Work>
    int redrawsDuring(Work&& work) {
        view();
        const int before = redraws_;
        std::forward<Work>(work)();
        return redraws_ - before;
    }

    SimulatedMainLoop mainLoop_;
    SimulatedTextMeasurer textMeasurer_;
    GridDefinitionRef start_ =
        std::make_shared<const GridDefinition>("id", "Name", std::vector<double>{}, std::vector<double>{});
    double margin_ = 8;
    int cancels_ = 0;
    int redraws_ = 0;
    std::vector<GridDefinitionRef> accepted_;
    std::unique_ptr<GridEditorOverlayView> view_;
};

} // namespace tarvex
