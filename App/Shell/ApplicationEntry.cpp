#include "App/Shell/ApplicationEntry.h"

namespace tarvex {

ApplicationEntry makeApplicationEntry(const ApplicationPlatform& platform, ViewWindowPlatform& viewWindows) {
    const LoggerFactory loggers(platform.log);
    const auto makeDisplayService = [&] {
        return std::make_shared<DisplayService>(loggers.makeLogger("DisplayService"), platform.displays,
                                                platform.screens);
    };
    const auto configStore = std::make_shared<ConfigStore>(loggers.makeLogger("ConfigStore"), platform.files);
    const auto displayService = makeDisplayService();
    const auto displayFrameService = std::make_shared<DisplayFrameService>(platform.screens);
    ApplicationEntry entry;
    entry.gridEditorController = std::make_shared<GridEditorController>(
        configStore, displayService, displayFrameService,
        GridEditorPlatform{platform.screens, viewWindows, platform.mainLoop, platform.textMeasurer,
                           platform.log});
    entry.applicationController =
        std::make_shared<ApplicationController>(entry.gridEditorController, makeDisplayService(), platform);
    entry.delegate = std::make_unique<AppDelegate>(entry.applicationController);
    return entry;
}

} // namespace tarvex
