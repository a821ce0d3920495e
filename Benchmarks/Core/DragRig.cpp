#include "Benchmarks/Core/DragRig.h"

#include "Core/Configuration/ConfigStore.h"

#include <random>
#include <stdexcept>
#include <utility>
#include <vector>

namespace tarvex::benchmark {

namespace {

std::filesystem::path makeScratchFolder() {
    std::random_device random;
    std::filesystem::path folder;
    do {
        folder = std::filesystem::temp_directory_path() / ("tarvex-benchmark-" + std::to_string(random()));
    } while (!std::filesystem::create_directory(folder));
    return folder;
}

std::vector<double> evenSplits(int parts) {
    std::vector<double> splits;
    for (int part = 1; part < parts; ++part) {
        splits.push_back(static_cast<double>(part) / parts);
    }
    return splits;
}

} // namespace

DragRig::DragRig(int columns, int rows)
    : columns_(columns),
      rows_(rows),
      folder_(makeScratchFolder()),
      settingsPath_((folder_ / "Tarvex" / "config.json").string()),
      files_(folder_.string()),
      controller_(makeServices(), makePlatform()) {
    ConfigStore store(LoggerFactory(log_).makeLogger("ConfigStore"), files_);
    writeSettings(store);
    controller_.start();
    taps_.deliver({EventType::leftMouseDown, 0});
    taps_.deliver({EventType::flagsChanged, event_flag::command});
    dragTo(0, 0);
    requireSelected(0, 0);
}

DragRig::~DragRig() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

void DragRig::dragTo(int column, int row) {
    const Rect& frame = StillScreens::visibleFrame;
    pointer_.location = {frame.minX() + frame.width * (column + 0.5) / columns_,
                         frame.maxY() - frame.height * (row + 0.5) / rows_};
    taps_.deliver({EventType::leftMouseDragged, event_flag::command});
}

void DragRig::requireSelected(int column, int row) const {
    const std::string expected = "r" + std::to_string(row) + "-c" + std::to_string(column);
    const auto& selected = controller_.selectionState().selectedKeys();
    if (selected.size() != 1 || !selected.contains(expected) || log_.errorCount() != 0) {
        throw std::runtime_error("the drag did not select " + expected);
    }
}

// Settings as a person has them after some use: one grid per display, and every key present.
void DragRig::writeSettings(ConfigStore& store) const {
    TarvexConfigFields fields;
    fields.grids = {
        std::make_shared<const GridDefinition>("grid", "Grid", evenSplits(columns_), evenSplits(rows_)),
        std::make_shared<const GridDefinition>("default", "Default", std::vector{0.5},
                                               std::vector<double>{})};
    fields.defaultGridByDisplayId = {{"v4268-p41137-s808530773", "grid"}, {"v1-p2-no-serial", "default"}};
    fields.cellMarginPoints = 8;
    fields.openEditorHotkey = HotkeyDefinition{5, modifier_mask::command | modifier_mask::control};
    fields.openPreferencesHotkey = HotkeyDefinition{35, modifier_mask::command | modifier_mask::control};
    fields.singleSnapModifiers = ModifierDefinition{modifier_mask::command};
    fields.multiSnapModifiers = ModifierDefinition{modifier_mask::command | modifier_mask::shift};
    fields.launchAtLogin = true;
    fields.hideMenuBarIcon = false;
    fields.restoreWindowSizeOnUnsnap = true;
    store.saveConfig(TarvexConfig(std::move(fields)));
}

SnapServices DragRig::makeServices() {
    const LoggerFactory loggers(log_);
    SnapServices services{
        .preferencesController = nullptr,
        .gridEditorController = nullptr,
        .configStore = std::make_shared<ConfigStore>(loggers.makeLogger("ConfigStore"), files_),
        .displayService =
            std::make_shared<DisplayService>(loggers.makeLogger("DisplayService"), displays_, screens_),
        .displayFrameService = std::make_shared<DisplayFrameService>(screens_),
        .accessibilityService = std::make_shared<AccessibilityService>(accessibility_, screens_, log_),
        .eventTapManager = EventTapManager::make(taps_, mainLoop_, log_),
        .coordinateTransformer = {},
        .gridCalculator = GridCalculator(GridSplitNormalizer(GridSplitNormalizer::standardEpsilon)),
        .cellFrameCalculator = CellFrameCalculator(CoordinateTransformer()),
        .gridHitTester = {},
    };
    return services;
}

SnapPlatform DragRig::makePlatform() {
    return {screens_, pointer_, windows_, keyWindow_, log_, log_};
}

} // namespace tarvex::benchmark
