#pragma once

#include "App/ZoneEditor/GridEditorOverlayWindow.h"
#include "Core/Configuration/ConfigStore.h"
#include "Core/Displays/DisplayFrameService.h"
#include "Core/Displays/DisplayService.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarvex {

/// The ports that a GridEditorController asks directly; all must outlive it.
struct GridEditorPlatform {
    ScreenPlatform& screens;
    ViewWindowPlatform& windows;
    MainLoop& mainLoop;
    TextMeasurer& textMeasurer;
    LogPlatform& log;
};

/// Opens the zone editor of a display and saves what the user accepts. At most one editor is open. Main
/// thread only.
class GridEditorController : public std::enable_shared_from_this<GridEditorController> {
public:
    GridEditorController(std::shared_ptr<ConfigStore> configStore,
                         std::shared_ptr<DisplayService> displayService,
                         std::shared_ptr<DisplayFrameService> displayFrameService,
                         const GridEditorPlatform& platform);

    /// Opens the editor of the screen that the user works on, else of the first active display. Logs and
    /// opens nothing when there is none.
    void showEditorForMainDisplay();

    /// Opens the editor of the display of that number, closing any that is open. A display without a screen
    /// is edited on the main screen; logs and opens nothing when there is none either. Settings that cannot
    /// be read count as the defaults, and what is accepted then overwrites them. What is accepted is saved
    /// with the other settings as they were when the editor was opened.
    void showEditor(std::uint32_t displayId);

    /// Closes every editor without saving.
    void closeAllOverlays();

    /// How many editors are open: none or one.
    [[nodiscard]] std::size_t overlayCount() const { return overlayWindows_.size(); }

private:
    /// Numbers editors, so that a callback finds its own and no later one.
    using OverlayIdentifier = std::uint64_t;

    [[nodiscard]] std::optional<std::uint32_t> getMainDisplayId();
    [[nodiscard]] std::optional<Rect> visibleFrameFor(std::uint32_t displayId);
    [[nodiscard]] static GridDefinitionRef getOrCreateDisplayGrid(const TarvexConfig& config,
                                                                  const std::string& displayStableId);
    [[nodiscard]] static GridDefinitionRef findGrid(const TarvexConfig& config, const std::string& gridId);
    [[nodiscard]] static TarvexConfigRef upsertDisplayGrid(const TarvexConfig& config,
                                                           const GridDefinition& grid,
                                                           const std::string& displayStableId);
    [[nodiscard]] static std::vector<GridDefinitionRef> upsertGrid(std::vector<GridDefinitionRef> grids,
                                                                   const GridDefinitionRef& grid);
    [[nodiscard]] static bool containsGrid(const std::vector<GridDefinitionRef>& grids,
                                           const std::string& gridId);
    void openOverlay(const TarvexConfigRef& config, const Rect& visibleFrame, const std::string& stableId);
    void save(const TarvexConfig& config);
    void closeOverlay(OverlayIdentifier identifier);

    std::shared_ptr<ConfigStore> configStore_;
    std::shared_ptr<DisplayService> displayService_;
    std::shared_ptr<DisplayFrameService> displayFrameService_;
    GridEditorPlatform platform_;
    std::map<OverlayIdentifier, std::unique_ptr<GridEditorOverlayWindow>> overlayWindows_;
    OverlayIdentifier lastIdentifier_ = 0;
};

} // namespace tarvex
