#include "App/Snapping/SnapController.h"

#include "App/Snapping/RectDescription.h"

#include <string>
#include <utility>

namespace tarvex {

SnapController::SnapController(SnapServices services, const SnapPlatform& platform)
    : services_(std::move(services)), platform_(platform) {}

SnapController::~SnapController() {
    services_.eventTapManager->stopInstalledTap();
    services_.eventTapManager->stopRetry();
}

void SnapController::start() {
    services_.accessibilityService->ensureTrusted();
    eventTapRefcon_ = this;
    installEventTap();
}

void SnapController::installEventTap() {
    EventTapManager& manager = *services_.eventTapManager;
    manager.setRefcon(eventTapRefcon_);
    manager.setHandler(&snapEventTapCallback);
    manager.stopInstalledTap();
    manager.stopRetry();
    manager.attemptInstall();
}

const TapEvent* snapEventTapCallback(EventTap* /*proxy*/, EventType type, const TapEvent* event,
                                     void* refcon) {
    auto* controller = static_cast<SnapController*>(refcon);
    if (controller == nullptr) {
        return event;
    }
    if (type == EventType::tapDisabledByTimeout) {
        if (controller->eventTapRefcon_ != nullptr) {
            controller->installEventTap();
        }
        return event;
    }
    // Keys pressed while a shortcut is recorded in the preferences must not show zones.
    if (controller->platform_.keyWindow.keyWindowTitle() == "Preferences") {
        return event;
    }
    if (event != nullptr) {
        controller->handleByType(type, *event);
    }
    return event;
}

void SnapController::handleByType(EventType type, const TapEvent& event) {
    switch (type) {
    case EventType::leftMouseDown:
        handleMouseDown();
        break;
    case EventType::leftMouseUp:
        if (isDragging_) {
            if (isOverlayActive_) {
                snapAndHide(platform_.pointer.mouseLocation());
            }
            resetState();
        }
        break;
    case EventType::leftMouseDragged:
        handleMouseDragged(event);
        break;
    case EventType::flagsChanged:
        if (isDragging_) {
            updateOverlayState(platform_.pointer.mouseLocation(), event);
        }
        break;
    case EventType::tapDisabledByTimeout:
    case EventType::tapDisabledByUserInput:
        break;
    }
}

void SnapController::handleMouseDown() {
    isDragging_ = true;
    AccessibilityService& accessibility = *services_.accessibilityService;
    activeWindow_ = accessibility.getWindowUnderCursor(platform_.pointer.mouseLocation());
    originalWindowFrame_.reset();
    if (activeWindow_) {
        const auto position = accessibility.getPointAttribute(activeWindow_, "AXPosition");
        const auto size = accessibility.getSizeAttribute(activeWindow_, "AXSize");
        if (position && size) {
            const Point origin = accessibility.convertToCocoaOrigin(*position, *size);
            originalWindowFrame_ = Rect{origin.x, origin.y, size->width, size->height};
        }
    }
    selectionState_.clear();
    activeCells_.clear();
    hasLoggedSnapDrag_ = false;
    hasLoggedTooManyZones_ = false;
}

void SnapController::updateOverlayState(Point point, const TapEvent& event) {
    const TarvexConfigRef config = loadConfigOrDefault(*services_.configStore);
    const std::uint32_t modifiers = modifierMapper_.toCarbonModifiers(event.flags);
    activeModifiers_ = modifiers;
    if (!matches(modifiers, *config)) {
        platform_.fileLog.log("SnapController.updateOverlayState noMatch modifiers=" +
                              std::to_string(modifiers));
        restoreIfNeeded(*config);
        hideOverlay();
        return;
    }
    platform_.fileLog.log("SnapController.updateOverlayState match modifiers=" + std::to_string(modifiers) +
                          " mode=" + std::string(modeName(modifiers, *config)));
    if (const auto visibleFrame = getVisibleFrame(point)) {
        ensureOverlay(*visibleFrame);
        isOverlayActive_ = true;
        updateSelection(point, modifiers);
        updateOverlay(*config, *visibleFrame, point);
    }
}

void SnapController::handleMouseDragged(const TapEvent& event) {
    if (!isDragging_ || !isOverlayActive_) {
        return;
    }
    const std::uint32_t modifiers = modifierMapper_.toCarbonModifiers(event.flags);
    activeModifiers_ = modifiers;
    const TarvexConfigRef config = loadConfigOrDefault(*services_.configStore);
    if (matches(modifiers, *config) && !hasLoggedSnapDrag_) {
        platform_.fileLog.log("SnapController.snapDragStart modifiers=" + std::to_string(modifiers) +
                              " mode=" + std::string(modeName(modifiers, *config)));
        hasLoggedSnapDrag_ = true;
    }
    updateSelection(platform_.pointer.mouseLocation(), modifiers);
}

void SnapController::updateSelection(Point point, std::uint32_t modifiers) {
    const TarvexConfigRef config = loadConfigOrNone(*services_.configStore);
    if (!config) {
        return;
    }
    const auto visibleFrame = getVisibleFrame(point);
    if (!visibleFrame) {
        return;
    }
    activeGrid_ = resolveGrid(*config, point);
    if (GridCalculator::hasMoreCellsThan(maxZones, *activeGrid_)) {
        refuseZones();
        updateOverlay(*config, *visibleFrame, point);
        return;
    }
    activeCells_ = services_.gridCalculator.getCells(*activeGrid_);
    const auto normalizedPoint = services_.coordinateTransformer.toNormalizedPoint(point, *visibleFrame);
    if (!normalizedPoint) {
        return;
    }
    const auto cell = services_.gridHitTester.getCell(activeCells_, *normalizedPoint);
    if (!cell) {
        return;
    }
    if (!isMulti(modifiers, *config)) {
        selectionState_.clear();
    }
    selectionState_.add(*cell);
    updateOverlay(*config, *visibleFrame, point);
}

void SnapController::snapAndHide(Point point) {
    snap(point);
    hideOverlay();
}

void SnapController::snap(Point point) {
    AccessibilityService& accessibility = *services_.accessibilityService;
    const AccessibilityElementRef window =
        activeWindow_ ? activeWindow_ : accessibility.getWindowUnderCursor(point);
    if (!window) {
        platform_.log.systemLog("SnapController.snapAndHide: activeWindow=nil");
        return;
    }
    const TarvexConfigRef config = loadConfigOrNone(*services_.configStore);
    if (!config) {
        platform_.log.systemLog("SnapController.snapAndHide: failed to load config");
        return;
    }
    const auto visibleFrame = getVisibleFrame(point);
    if (!visibleFrame) {
        platform_.log.systemLog("SnapController.snapAndHide: visibleFrame=nil");
        return;
    }
    const CellFrameMap frames =
        services_.cellFrameCalculator.getCellFrames(activeCells_, *visibleFrame, config->cellMarginPoints());
    const std::vector<GridCell> selected = selectionState_.getSelectedCells(activeCells_);
    const auto rect = unionFrames(frames, selected);
    if (!rect) {
        platform_.log.systemLog("SnapController.snapAndHide: selection rect=nil");
        return;
    }
    platform_.fileLog.log("SnapController.snapAndHide success cells=" + std::to_string(selected.size()) +
                          " modifiers=" + std::to_string(activeModifiers_) + " frame=" + describe(*rect));
    moveWindow(window, *rect);
}

void SnapController::restoreIfNeeded(const TarvexConfig& config) {
    if (!isDragging_ || !isOverlayActive_ || !activeWindow_ || !originalWindowFrame_) {
        return;
    }
    const auto fallback = [] {
        return TarvexConfig::makeDefault()->restoreWindowSizeOnUnsnap().value_or(true);
    };
    const auto configured = config.restoreWindowSizeOnUnsnap();
    if (configured ? *configured : fallback()) {
        moveWindow(activeWindow_, *originalWindowFrame_);
    }
}

void SnapController::moveWindow(const AccessibilityElementRef& window, const Rect& frame) {
    AccessibilityService& accessibility = *services_.accessibilityService;
    accessibility.setPosition(window, accessibility.convertToAccessibilityOrigin(frame));
    accessibility.setSize(window, frame.size());
}

void SnapController::hideOverlay() {
    if (overlayWindow_) {
        overlayWindow_->orderOut();
    }
    isOverlayActive_ = false;
    selectionState_.clear();
}

void SnapController::resetState() {
    isDragging_ = false;
    isOverlayActive_ = false;
    activeWindow_.reset();
    selectionState_.clear();
    activeCells_.clear();
    activeGrid_.reset();
    activeModifiers_ = 0;
    originalWindowFrame_.reset();
    hasLoggedSnapDrag_ = false;
    hasLoggedTooManyZones_ = false;
}

} // namespace tarvex
