#pragma once

#include "App/Hotkeys/ModifierMapper.h"
#include "App/Input/AccessibilityService.h"
#include "App/Input/EventTapManager.h"
#include "App/Logging/MessageLog.h"
#include "App/Snapping/SnapOverlayWindow.h"
#include "App/Toolkit/KeyWindowPlatform.h"
#include "App/Toolkit/PointerPlatform.h"
#include "App/Toolkit/Window.h"
#include "Core/Configuration/ConfigStore.h"
#include "Core/Displays/DisplayFrameService.h"
#include "Core/Displays/DisplayService.h"
#include "Core/Grid/CellFrameCalculator.h"
#include "Core/Grid/CellSelectionState.h"
#include "Core/Grid/CoordinateTransformer.h"
#include "Core/Grid/GridCalculator.h"
#include "Core/Grid/GridHitTester.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace tarvex {

class GridEditorController;
class PreferencesController;

/// The services that a SnapController works with, all made by its owner.
struct SnapServices {
    /// Kept alive, not used for snapping; may be null.
    std::shared_ptr<PreferencesController> preferencesController;
    /// Kept alive, not used for snapping; may be null.
    std::shared_ptr<GridEditorController> gridEditorController;
    std::shared_ptr<ConfigStore> configStore;
    std::shared_ptr<DisplayService> displayService;
    std::shared_ptr<DisplayFrameService> displayFrameService;
    std::shared_ptr<AccessibilityService> accessibilityService;
    std::shared_ptr<EventTapManager> eventTapManager;
    CoordinateTransformer coordinateTransformer;
    GridCalculator gridCalculator;
    CellFrameCalculator cellFrameCalculator;
    GridHitTester gridHitTester;
};

/// The ports that a SnapController asks directly; all must outlive it.
struct SnapPlatform {
    ScreenPlatform& screens;
    PointerPlatform& pointer;
    WindowPlatform& windows;
    KeyWindowPlatform& keyWindow;
    LogPlatform& log;
    MessageLog& fileLog;
};

/// Follows a drag from press to release: shows the zones of the display under the pointer while the
/// configured modifiers are held, gathers the zones passed over, and puts the dragged window there on
/// release. Events are only observed. The settings are read afresh for every event that needs them. Main
/// thread only; nothing throws.
class SnapController {
public:
    /// A grid of more zones than this is not shown and snaps nothing: a configuration could ask for more
    /// than the memory holds. Counted from the split lists as they stand.
    static constexpr std::uint64_t maxZones = 100'000;

    SnapController(SnapServices services, const SnapPlatform& platform);
    SnapController(const SnapController&) = delete;
    SnapController& operator=(const SnapController&) = delete;
    SnapController(SnapController&&) = delete;
    SnapController& operator=(SnapController&&) = delete;
    /// Takes the tap down, since it points here.
    ~SnapController();

    /// Asks for the permission to steer windows and installs the event tap.
    void start();

    /// True from the press of the button to its release.
    [[nodiscard]] bool isDragging() const { return isDragging_; }

    /// True while the zones are shown for the current drag.
    [[nodiscard]] bool isOverlayActive() const { return isOverlayActive_; }

    [[nodiscard]] const CellSelectionState& selectionState() const { return selectionState_; }

    [[nodiscard]] const std::vector<GridCell>& activeCells() const { return activeCells_; }

    /// The last modifier mask seen in this drag.
    [[nodiscard]] std::uint32_t activeModifiers() const { return activeModifiers_; }

    /// The window being dragged; null when none was found under the press.
    [[nodiscard]] const AccessibilityElementRef& activeWindow() const { return activeWindow_; }

    /// The dragged window's frame at the press, in screen space.
    [[nodiscard]] const std::optional<Rect>& originalWindowFrame() const { return originalWindowFrame_; }

    [[nodiscard]] const GridDefinitionRef& activeGrid() const { return activeGrid_; }

    /// Null until zones were first shown.
    [[nodiscard]] const SnapOverlayWindow* overlayWindow() const { return overlayWindow_.get(); }

    friend const TapEvent* snapEventTapCallback(EventTap* proxy, EventType type, const TapEvent* event,
                                                void* refcon);

private:
    void installEventTap();
    void handleByType(EventType type, const TapEvent& event);
    void handleMouseDown();
    void handleMouseDragged(const TapEvent& event);
    void updateOverlayState(Point point, const TapEvent& event);
    void updateSelection(Point point, std::uint32_t modifiers);
    void updateOverlay(const TarvexConfig& config, const Rect& visibleFrame, Point point);
    void ensureOverlay(const Rect& visibleFrame);
    void snapAndHide(Point point);
    void snap(Point point);
    void restoreIfNeeded(const TarvexConfig& config);
    void hideOverlay();
    void resetState();
    void moveWindow(const AccessibilityElementRef& window, const Rect& frame);

    [[nodiscard]] static bool matches(std::uint32_t modifiers, const TarvexConfig& config);
    [[nodiscard]] static bool isMulti(std::uint32_t modifiers, const TarvexConfig& config);
    [[nodiscard]] static std::string_view modeName(std::uint32_t modifiers, const TarvexConfig& config);
    [[nodiscard]] GridDefinitionRef resolveGrid(const TarvexConfig& config, Point point);
    void refuseZones();
    [[nodiscard]] std::optional<Screen> screenUnder(Point point);
    [[nodiscard]] std::optional<Rect> getVisibleFrame(Point point);
    [[nodiscard]] std::optional<std::uint32_t> getDisplayId(Point point);
    [[nodiscard]] static std::optional<Rect> unionFrames(const CellFrameMap& framesMap,
                                                         const std::vector<GridCell>& selection);

    SnapServices services_;
    SnapPlatform platform_;
    ModifierMapper modifierMapper_;
    std::unique_ptr<SnapOverlayWindow> overlayWindow_;
    AccessibilityElementRef activeWindow_;
    bool isDragging_ = false;
    bool isOverlayActive_ = false;
    CellSelectionState selectionState_;
    std::vector<GridCell> activeCells_;
    std::uint32_t activeModifiers_ = 0;
    std::optional<Rect> originalWindowFrame_;
    GridDefinitionRef activeGrid_;
    bool hasLoggedSnapDrag_ = false;
    bool hasLoggedTooManyZones_ = false;
    void* eventTapRefcon_ = nullptr;
};

/// The callback of the event tap; refcon is the SnapController. Always returns the event as it came.
const TapEvent* snapEventTapCallback(EventTap* proxy, EventType type, const TapEvent* event, void* refcon);

} // namespace tarvex
