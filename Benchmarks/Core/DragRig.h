#pragma once

#include "App/Snapping/SnapController.h"
#include "Benchmarks/Core/StillDesktop.h"
#include "Platform/Posix/PosixFileManager.h"

#include <cstdint>
#include <filesystem>
#include <string>

namespace tarvex::benchmark {

/// A grid of equal zones, the settings file of its own that holds it, and a snap controller in the middle of
/// a drag that reads that file. Only the desktop around it is a stand-in. Throws when the settings cannot be
/// written or the drag does not start.
class DragRig {
public:
    DragRig(int columns, int rows);
    DragRig(const DragRig&) = delete;
    DragRig& operator=(const DragRig&) = delete;
    DragRig(DragRig&&) = delete;
    DragRig& operator=(DragRig&&) = delete;
    ~DragRig();

    /// One dragged event with the pointer in the middle of that zone (row 0 at the top), given to the
    /// installed tap.
    void dragTo(int column, int row);

    /// Throws unless that zone alone is selected and no setting failed to load.
    void requireSelected(int column, int row) const;

    /// How many pictures were drawn up to now.
    [[nodiscard]] int pictureCount() const { return windows_.pictureCount(); }

    /// The settings file.
    [[nodiscard]] const std::string& settingsPath() const { return settingsPath_; }

private:
    void writeSettings(ConfigStore& store) const;
    [[nodiscard]] SnapServices makeServices();
    [[nodiscard]] SnapPlatform makePlatform();

    int columns_;
    int rows_;
    std::filesystem::path folder_;
    std::string settingsPath_;
    PosixFileManager files_;
    StillScreens screens_;
    StillDisplays displays_;
    StillPointer pointer_;
    StillAccessibility accessibility_;
    StillEventTaps taps_;
    StillWindows windows_;
    StillKeyWindow keyWindow_;
    StillMainLoop mainLoop_;
    StillLog log_;
    SnapController controller_;
};

} // namespace tarvex::benchmark
