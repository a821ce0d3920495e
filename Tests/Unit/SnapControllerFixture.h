#pragma once

#include "Core/Configuration/JsonCoding.h"
#include "Tests/Support/Simulated/SceneText.h"
#include "Tests/Support/Simulated/SimulatedSnapping.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tarvex {

using Lines = std::vector<std::string>;

inline GridDefinitionRef makeGrid(std::string id, std::vector<double> verticalSplits,
                                  std::vector<double> horizontalSplits = {}) {
    return std::make_shared<GridDefinition>(id, id, std::move(verticalSplits), std::move(horizontalSplits));
}

/// A started snap controller on a desktop with one screen, a panel at its bottom, and one window. There is no
/// configuration file: Command is the single-zone modifier, Command and Shift the multi-zone ones, the margin
/// is 8 points and there are two zones side by side.
class SnapControllerTest : public ::testing::Test {
protected:
    static constexpr std::uint64_t command = event_flag::command;
    static constexpr std::uint64_t shift = event_flag::shift;
    static constexpr std::uint64_t option = event_flag::option;
    static constexpr std::uint64_t control = event_flag::control;

    static constexpr Rect screenFrame{0, 0, 1440, 900};
    static constexpr Rect visibleFrame{0, 25, 1440, 875};
    static constexpr Rect leftZone{8, 33, 708, 859};
    static constexpr Rect rightZone{724, 33, 708, 859};
    static constexpr Point inLeftZone{300, 450};
    static constexpr Point inRightZone{1100, 450};
    static constexpr Point onPanel{300, 10};
    static constexpr Rect homeFrame{200, 300, 500, 400};

    // A second screen, larger, to the right and lower.
    static constexpr Rect secondScreenFrame{1440, -300, 1920, 1200};
    static constexpr Point onSecondScreen{1800, 500};
    static constexpr Point nowhere{-500, -500};

    void SetUp() override {
        desktop_.plugScreen({.number = 101, .frame = screenFrame, .bottomPanel = 25});
        window_ = desktop_.openWindow(homeFrame);
        controller().start();
        forgetHistory();
    }

    void TearDown() override {
        EXPECT_EQ(desktop_.input().alteredEvents(), 0);
        snapping_.destroyController();
        EXPECT_EQ(desktop_.input().liveTaps(), 0);
        EXPECT_EQ(desktop_.input().misuses(), Lines());
        EXPECT_EQ(desktop_.accessibility().liveElements(), 0);
    }

    SnapController& controller() { return snapping_.controller(); }

    void plugSecondScreen() {
        desktop_.plugScreen({.number = 202, .frame = secondScreenFrame, .model = 0x3333});
    }

    // Writes a configuration that differs from the built-in one by what the change does.
    void configure(const std::function<void(TarvexConfigFields&)>& change) {
        desktop_.configFiles().put(configText(change));
    }

    static std::string configText(const std::function<void(TarvexConfigFields&)>& change) {
        TarvexConfigFields fields = TarvexConfig::makeDefault()->fields();
        change(fields);
        return encodeTarvexConfig(TarvexConfig(fields));
    }

    void breakConfiguration() { desktop_.configFiles().put("{"); }

    void healConfiguration() { desktop_.configFiles().remove(); }

    // Starts a drag of the window, without any modifier, and moves to the point.
    void dragWindowTo(Point point) {
        desktop_.grabWindow(window_);
        desktop_.moveTo(point);
    }

    // Starts a drag and shows the zones with the pointer at the point.
    void showZonesAt(Point point, std::uint64_t modifiers = command) {
        dragWindowTo(point);
        desktop_.holdModifiers(modifiers);
        forgetHistory();
    }

    void forgetHistory() {
        desktop_.journal().clear();
        desktop_.log().clear();
        desktop_.fileLog().clear();
        desktop_.configFiles().resetLoads();
    }

    Lines happened() { return desktop_.journal().take(); }

    [[nodiscard]] Lines selectedKeys() {
        const auto& keys = controller().selectionState().selectedKeys();
        Lines sorted(keys.begin(), keys.end());
        std::sort(sorted.begin(), sorted.end());
        return sorted;
    }

    [[nodiscard]] bool isOverlayShown() { return !desktop_.windows().shown().empty(); }

    [[nodiscard]] std::optional<Rect> overlayFrame() {
        const SnapOverlayWindow* overlay = controller().overlayWindow();
        return overlay == nullptr ? std::nullopt : std::optional<Rect>(overlay->frame());
    }

    // The number of the overlay that is shown; 0 for none.
    [[nodiscard]] int shownNumber() {
        const auto shown = desktop_.windows().shown();
        return shown.empty() ? 0 : shown.front()->number;
    }

    [[nodiscard]] std::string activeGridId() {
        return controller().activeGrid() ? controller().activeGrid()->id() : "none";
    }

    // The grid that the overlay was last given.
    [[nodiscard]] std::string shownGridId() {
        const SnapOverlayWindow* overlay = controller().overlayWindow();
        return overlay != nullptr && overlay->overlayView().grid() ? overlay->overlayView().grid()->id()
                                                                   : "none";
    }

    // The picture on the one overlay that is shown.
    [[nodiscard]] Lines picture() {
        const auto shown = desktop_.windows().shown();
        EXPECT_EQ(shown.size(), 1U);
        return shown.empty() ? Lines() : describeUnordered(shown.front()->scene);
    }

    // The picture of zones in screen space on an overlay that covers the frame.
    static Lines pictureOf(const Rect& frame, std::vector<Rect> zones, std::vector<Rect> selection) {
        for (auto* rects : {&zones, &selection}) {
            for (Rect& rect : *rects) {
                rect = rect.translated(-frame.x, -frame.y);
            }
        }
        return zonePicture(frame.size(), zones, selection);
    }

    void expectAtRest() {
        EXPECT_FALSE(controller().isDragging());
        EXPECT_FALSE(controller().isOverlayActive());
        EXPECT_EQ(controller().activeWindow(), nullptr);
        EXPECT_TRUE(selectedKeys().empty());
        EXPECT_TRUE(controller().activeCells().empty());
        EXPECT_EQ(controller().activeGrid(), nullptr);
        EXPECT_EQ(controller().activeModifiers(), 0U);
        EXPECT_EQ(controller().originalWindowFrame(), std::nullopt);
        EXPECT_FALSE(isOverlayShown());
        EXPECT_EQ(desktop_.accessibility().liveElements(), 0);
    }

    SimulatedDesktop desktop_;
    SimulatedSnapping snapping_{desktop_};
    int window_ = 0;
};

} // namespace tarvex
