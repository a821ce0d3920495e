#pragma once

#include "App/Hotkeys/KeyMonitorPlatform.h"
#include "App/Hotkeys/ModifierMapper.h"
#include "Core/Configuration/TarvexConfig.h"

#include <functional>
#include <memory>
#include <optional>

namespace tarvex {

/// Turns the next key press in the program's windows into a hotkey. Main thread only.
class HotkeyRecorder {
public:
    /// Called with the hotkey, or with none when Escape was pressed.
    using RecordedCallback = std::function<void(std::optional<HotkeyDefinition>)>;

    /// The platform must outlive the recorder.
    explicit HotkeyRecorder(KeyMonitorPlatform& keyMonitors) : keyMonitors_(&keyMonitors) {}

    /// Waits for a key press and swallows it; the callback is called once, unless stop() or another start()
    /// comes first. Any key but Escape will do, with whatever modifiers.
    void start(RecordedCallback onRecorded);

    /// Ends the recording without a callback. Harmless when there is none.
    void stop();

    [[nodiscard]] bool isRecording() const { return monitor_ != nullptr; }

private:
    void handleKey(const KeyEvent& event, const RecordedCallback& onRecorded);

    KeyMonitorPlatform* keyMonitors_;
    ModifierMapper modifierMapper_;
    std::unique_ptr<KeyMonitor> monitor_;
};

} // namespace tarvex
