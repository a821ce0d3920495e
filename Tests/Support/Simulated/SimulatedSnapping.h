#pragma once

#include "App/Snapping/SnapController.h"
#include "Tests/Support/Simulated/SimulatedDesktop.h"

#include <memory>

namespace tarvex {

/// Everything that the program's snapping is made of, on a simulated desktop, which must outlive it.
class SimulatedSnapping {
public:
    explicit SimulatedSnapping(SimulatedDesktop& desktop);

    SnapController& controller() { return *controller_; }

    EventTapManager& taps() { return *eventTapManager_; }

    /// Ends the controller, as the end of the program does.
    void destroyController() { controller_.reset(); }

private:
    std::shared_ptr<EventTapManager> eventTapManager_;
    std::unique_ptr<SnapController> controller_;
};

} // namespace tarvex
