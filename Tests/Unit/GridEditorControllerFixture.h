#pragma once

#include "App/ZoneEditor/GridEditorController.h"
#include "Core/Configuration/JsonCoding.h"
#include "Tests/Support/Simulated/SimulatedDesktop.h"
#include "Tests/Support/Simulated/SimulatedViewWindows.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace tarvex {

/// Two displays side by side, on each of which the zone editor can be opened.
class GridEditorControllerTest : public ::testing::Test {
protected:
    using Splits = std::vector<double>;

    static GridDefinitionRef makeGrid(const std::string& id, Splits vertical, Splits horizontal = {}) {
        return std::make_shared<const GridDefinition>(id, "Name of " + id, std::move(vertical),
                                                      std::move(horizontal));
    }

    static constexpr std::uint32_t left = 7;
    static constexpr std::uint32_t right = 9;

    GridEditorControllerTest() {
        desktop_.plugScreen({.number = left, .frame = {0, 0, 1280, 1024}, .topPanel = 24, .serial = 1});
        desktop_.plugScreen({.number = right, .frame = {1280, 0, 1920, 1080}, .serial = 2});
        makeController();
    }

    void makeController() {
        const LoggerFactory loggers(desktop_.log());
        displayService_ = std::make_shared<DisplayService>(loggers.makeLogger("DisplayService"),
                                                           desktop_.displays(), desktop_.displays());
        controller_ = std::make_shared<GridEditorController>(
            std::make_shared<ConfigStore>(loggers.makeLogger("ConfigStore"), desktop_.configFiles()),
            displayService_, std::make_shared<DisplayFrameService>(desktop_.displays()),
            GridEditorPlatform{desktop_.displays(), windows_, desktop_.mainLoop(), textMeasurer_,
                               desktop_.log()});
    }

    [[nodiscard]] std::string stableId(std::uint32_t display) {
        return displayService_->getIdentifier(display).stableId();
    }

    /// The settings that the editor finds, the defaults with these fields changed.
    void store(const std::function<void(TarvexConfigFields&)>& change) {
        TarvexConfigFields fields = TarvexConfig::makeDefault()->fields();
        change(fields);
        desktop_.configFiles().put(encodeTarvexConfig(TarvexConfig(fields)));
    }

    [[nodiscard]] TarvexConfigRef stored() { return decodeTarvexConfig(desktop_.configFiles().text()); }

    /// The one editor that is open.
    SimulatedViewWindow& window() {
        if (windows_.open().size() != 1) {
            throw std::logic_error("not one editor is open");
        }
        return *windows_.open().front();
    }

    GridEditorOverlayView& view() { return dynamic_cast<GridEditorOverlayView&>(*window().view); }

    /// Adds a vertical line in the open editor.
    void addVertical(double x) {
        const Rect frame = window().attributes.contentRect;
        const MouseEvent event{{x * frame.width, frame.height / 3}, event_flag::shift};
        view().mouseDown(event);
        view().mouseUp(event);
    }

    void accept() { static_cast<void>(view().keyDown({36, 0})); }

    void cancel() { static_cast<void>(view().keyDown({53, 0})); }

    SimulatedDesktop desktop_;
    SimulatedViewWindows windows_{desktop_.journal()};
    SimulatedTextMeasurer textMeasurer_;
    std::shared_ptr<DisplayService> displayService_;
    std::shared_ptr<GridEditorController> controller_;
};

} // namespace tarvex
