#include "Tests/MacOS/MacSnapping.h"

#include "Core/Grid/GridSplitNormalizer.h"
#include "Core/Logging/Logger.h"

#include <utility>

namespace tarvex {

MacSnapping::MacSnapping() : eventTapManager_(EventTapManager::make(tapPlatform_, mainLoop_, log_)) {
    const LoggerFactory loggers(log_);
    const CoordinateTransformer transformer;
    SnapServices services{
        .preferencesController = nullptr,
        .gridEditorController = nullptr,
        .configStore = std::make_shared<ConfigStore>(loggers.makeLogger("ConfigStore"), files_),
        .displayService =
            std::make_shared<DisplayService>(loggers.makeLogger("DisplayService"), displays_, screens_),
        .displayFrameService = std::make_shared<DisplayFrameService>(screens_),
        .accessibilityService = std::make_shared<AccessibilityService>(accessibility_, screens_, log_),
        .eventTapManager = eventTapManager_,
        .coordinateTransformer = transformer,
        .gridCalculator = GridCalculator(GridSplitNormalizer(GridSplitNormalizer::standardEpsilon)),
        .cellFrameCalculator = CellFrameCalculator(transformer),
        .gridHitTester = GridHitTester(),
    };
    const SnapPlatform platform{.screens = screens_,
                                .pointer = pointer_,
                                .windows = overlays_,
                                .keyWindow = keyWindow_,
                                .log = log_,
                                .fileLog = fileLog_};
    controller_ = std::make_unique<SnapController>(std::move(services), platform);
}

void MacSnapping::press(Point point) {
    pointer_.location = point;
    send(kCGEventLeftMouseDown);
}

void MacSnapping::dragTo(Point point) {
    pointer_.location = point;
    send(kCGEventLeftMouseDragged);
}

void MacSnapping::hold(std::uint64_t flags) {
    flags_ = flags;
    send(kCGEventFlagsChanged);
}

void MacSnapping::release() {
    send(kCGEventLeftMouseUp);
}

// Longer than the pace of the motion.
void MacSnapping::send(CGEventType type) {
    fake::mac().eventTaps.send(type, flags_);
    fake::mac().runLoop.advance(0.01);
}

} // namespace tarvex
