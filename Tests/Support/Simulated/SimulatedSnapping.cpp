#include "Tests/Support/Simulated/SimulatedSnapping.h"

#include "Core/Grid/GridSplitNormalizer.h"
#include "Core/Logging/Logger.h"

#include <utility>

namespace tarvex {

SimulatedSnapping::SimulatedSnapping(SimulatedDesktop& desktop)
    : eventTapManager_(EventTapManager::make(desktop.input(), desktop.mainLoop(), desktop.log())) {
    const LoggerFactory loggers(desktop.log());
    const CoordinateTransformer transformer;
    SnapServices services{
        .preferencesController = nullptr,
        .gridEditorController = nullptr,
        .configStore =
            std::make_shared<ConfigStore>(loggers.makeLogger("ConfigStore"), desktop.configFiles()),
        .displayService = std::make_shared<DisplayService>(loggers.makeLogger("DisplayService"),
                                                           desktop.displays(), desktop.displays()),
        .displayFrameService = std::make_shared<DisplayFrameService>(desktop.displays()),
        .accessibilityService = std::make_shared<AccessibilityService>(desktop.accessibility(),
                                                                       desktop.displays(), desktop.log()),
        .eventTapManager = eventTapManager_,
        .coordinateTransformer = transformer,
        .gridCalculator = GridCalculator(GridSplitNormalizer(GridSplitNormalizer::standardEpsilon)),
        .cellFrameCalculator = CellFrameCalculator(transformer),
        .gridHitTester = GridHitTester(),
    };
    const SnapPlatform platform{.screens = desktop.displays(),
                                .pointer = desktop.input(),
                                .windows = desktop.windows(),
                                .keyWindow = desktop.keyWindow(),
                                .log = desktop.log(),
                                .fileLog = desktop.fileLog()};
    controller_ = std::make_unique<SnapController>(std::move(services), platform);
}

} // namespace tarvex
