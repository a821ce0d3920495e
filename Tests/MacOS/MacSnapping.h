#pragma once

#include "App/Snapping/SnapController.h"
#include "Platform/MacOS/Accessibility/MacAccessibilityPlatform.h"
#include "Platform/MacOS/CoreFoundation/RunLoopMainLoop.h"
#include "Platform/MacOS/Displays/CoreGraphicsDisplayPlatform.h"
#include "Platform/MacOS/Input/MacEventTapPlatform.h"
#include "Tests/MacOS/MacWorld.h"
#include "Tests/Support/RecordingLog.h"
#include "Tests/Support/Simulated/SimulatedConfigFiles.h"
#include "Tests/Support/Simulated/SimulatedLogs.h"
#include "Tests/Support/Simulated/SimulatedWindows.h"

#include <cstdint>
#include <memory>

namespace tarvex {

/// Everything that the program's snapping is made of, over the adapters of a Mac. The toolkit's part, which
/// is the overlay window, the screens and the pointer, is the test's.
class MacSnapping {
public:
    MacSnapping();

    /// As a person does it; each reaches the program before the call returns. Points are in screen space.
    void press(Point point);
    void dragTo(Point point);
    void hold(std::uint64_t flags);
    void release();

    /// Ends the controller, as the end of the program does.
    void destroyController() { controller_.reset(); }

    SnapController& controller() { return *controller_; }

    EventTapManager& taps() { return *eventTapManager_; }

    RecordingLog& log() { return log_; }

    SimulatedWindows& overlays() { return overlays_; }

private:
    void send(CGEventType type);

    Journal journal_;
    RecordingLog log_;
    SimulatedFileLog fileLog_{journal_};
    SimulatedConfigFiles files_{journal_};
    SimulatedWindows overlays_{journal_};
    SimulatedKeyWindow keyWindow_;
    MacScreens screens_;
    MacPointer pointer_;
    RunLoopMainLoop mainLoop_;
    MacEventTapPlatform tapPlatform_{mainLoop_};
    MacAccessibilityPlatform accessibility_;
    CoreGraphicsDisplayPlatform displays_;
    std::shared_ptr<EventTapManager> eventTapManager_;
    std::unique_ptr<SnapController> controller_;
    std::uint64_t flags_ = 0;
};

} // namespace tarvex
