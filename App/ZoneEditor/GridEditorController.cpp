#include "App/ZoneEditor/GridEditorController.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace tarvex {

GridEditorController::GridEditorController(std::shared_ptr<ConfigStore> configStore,
                                           std::shared_ptr<DisplayService> displayService,
                                           std::shared_ptr<DisplayFrameService> displayFrameService,
                                           const GridEditorPlatform& platform)
    : configStore_(std::move(configStore)),
      displayService_(std::move(displayService)),
      displayFrameService_(std::move(displayFrameService)),
      platform_(platform) {}

void GridEditorController::showEditorForMainDisplay() {
    platform_.log.systemLog("GridEditorController.showEditorForMainDisplay");
    std::optional<std::uint32_t> displayId = getMainDisplayId();
    if (!displayId) {
        const std::vector<std::uint32_t> active = displayService_->getActiveDisplays();
        if (active.empty()) {
            platform_.log.systemLog("No active display");
            return;
        }
        displayId = active.front();
    }
    showEditor(*displayId);
}

void GridEditorController::showEditor(std::uint32_t displayId) {
    platform_.log.systemLog("GridEditorController.showEditor");
    const std::optional<Rect> visibleFrame = visibleFrameFor(displayId);
    if (!visibleFrame) {
        platform_.log.systemLog("No visible frame");
        return;
    }
    const TarvexConfigRef config = loadConfigOrDefault(*configStore_);
    const std::string stableId = displayService_->getIdentifier(displayId).stableId();
    closeAllOverlays();
    openOverlay(config, *visibleFrame, stableId);
}

void GridEditorController::openOverlay(const TarvexConfigRef& config, const Rect& visibleFrame,
                                       const std::string& stableId) {
    const OverlayIdentifier identifier = ++lastIdentifier_;
    const std::weak_ptr<GridEditorController> weakSelf = weak_from_this();
    auto onCancel = [weakSelf, identifier] {
        if (const auto self = weakSelf.lock()) {
            self->closeOverlay(identifier);
        }
    };
    auto onOk = [weakSelf, identifier, config, stableId](const GridDefinitionRef& grid) {
        if (const auto self = weakSelf.lock()) {
            self->save(*upsertDisplayGrid(*config, *grid, stableId));
            self->closeOverlay(identifier);
        }
    };
    const auto [overlay, isNew] = overlayWindows_.emplace(
        identifier,
        std::make_unique<GridEditorOverlayWindow>(
            getOrCreateDisplayGrid(*config, stableId), visibleFrame, config->cellMarginPoints(),
            std::move(onCancel), std::move(onOk),
            GridEditorSurroundings{platform_.mainLoop, platform_.textMeasurer}, platform_.windows));
    overlay->second->makeKeyAndOrderFront();
    platform_.windows.activateIgnoringOtherApps();
}

void GridEditorController::closeAllOverlays() {
    // Closing one must not find it open any more.
    const auto closing = std::exchange(overlayWindows_, {});
}

void GridEditorController::closeOverlay(OverlayIdentifier identifier) {
    const auto closing = overlayWindows_.extract(identifier);
}

std::optional<std::uint32_t> GridEditorController::getMainDisplayId() {
    const std::optional<Screen> screen = platform_.screens.mainScreen();
    return screen ? screen->displayNumber : std::nullopt;
}

std::optional<Rect> GridEditorController::visibleFrameFor(std::uint32_t displayId) {
    if (const auto frame = displayFrameService_->getVisibleFrame(displayId)) {
        return frame;
    }
    const std::optional<Screen> screen = platform_.screens.mainScreen();
    return screen ? std::optional(screen->visibleFrame) : std::nullopt;
}

void GridEditorController::save(const TarvexConfig& config) {
    try {
        configStore_->saveConfig(config);
    } catch (const std::exception&) {
        // The store has logged it, and the old file stands.
        return;
    }
}

GridDefinitionRef GridEditorController::getOrCreateDisplayGrid(const TarvexConfig& config,
                                                               const std::string& displayStableId) {
    const auto entry = config.defaultGridByDisplayId().find(displayStableId);
    if (entry != config.defaultGridByDisplayId().end()) {
        if (GridDefinitionRef grid = findGrid(config, entry->second)) {
            return grid;
        }
    }
    const GridDefinitionRef pattern =
        config.grids().empty() ? TarvexConfig::makeDefault()->grids().front() : config.grids().front();
    return std::make_shared<const GridDefinition>("display-" + displayStableId, pattern->name(),
                                                  pattern->verticalSplits(), pattern->horizontalSplits());
}

GridDefinitionRef GridEditorController::findGrid(const TarvexConfig& config, const std::string& gridId) {
    const auto found = std::find_if(config.grids().begin(), config.grids().end(),
                                    [&](const GridDefinitionRef& grid) { return grid->id() == gridId; });
    return found == config.grids().end() ? nullptr : *found;
}

TarvexConfigRef GridEditorController::upsertDisplayGrid(const TarvexConfig& config,
                                                        const GridDefinition& grid,
                                                        const std::string& displayStableId) {
    const auto entry = config.defaultGridByDisplayId().find(displayStableId);
    const std::string gridId = entry == config.defaultGridByDisplayId().end() ? grid.id() : entry->second;
    TarvexConfigFields fields = config.fields();
    fields.grids = upsertGrid(std::move(fields.grids),
                              std::make_shared<const GridDefinition>(
                                  gridId, grid.name(), grid.verticalSplits(), grid.horizontalSplits()));
    fields.defaultGridByDisplayId.insert_or_assign(displayStableId, gridId);
    return std::make_shared<const TarvexConfig>(std::move(fields));
}

std::vector<GridDefinitionRef> GridEditorController::upsertGrid(std::vector<GridDefinitionRef> grids,
                                                                const GridDefinitionRef& grid) {
    if (!containsGrid(grids, grid->id())) {
        grids.push_back(grid);
        return grids;
    }
    std::replace_if(
        grids.begin(), grids.end(),
        [&](const GridDefinitionRef& candidate) { return candidate->id() == grid->id(); }, grid);
    return grids;
}

bool GridEditorController::containsGrid(const std::vector<GridDefinitionRef>& grids,
                                        const std::string& gridId) {
    return std::any_of(grids.begin(), grids.end(),
                       [&](const GridDefinitionRef& grid) { return grid->id() == gridId; });
}

} // namespace tarvex
