#pragma once

#include "App/Shell/AppDelegate.h"
#include "App/Shell/ApplicationController.h"
#include "App/ZoneEditor/GridEditorController.h"

#include <memory>

namespace tarvex {

/// The objects that live as long as the program does.
struct ApplicationEntry {
    std::shared_ptr<GridEditorController> gridEditorController;
    std::shared_ptr<ApplicationController> applicationController;
    std::unique_ptr<AppDelegate> delegate;
};

/// Makes them, in the order in which they need each other; nothing is shown and nothing started yet. The
/// platform tells the delegate when the program has finished launching.
[[nodiscard]] ApplicationEntry makeApplicationEntry(const ApplicationPlatform& platform,
                                                    ViewWindowPlatform& viewWindows);

} // namespace tarvex
