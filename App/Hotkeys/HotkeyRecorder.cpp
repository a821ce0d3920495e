#include "App/Hotkeys/HotkeyRecorder.h"

#include <utility>

namespace tarvex {

namespace {

constexpr std::uint16_t escapeKey = 53;

} // namespace

void HotkeyRecorder::start(RecordedCallback onRecorded) {
    stop();
    monitor_ = keyMonitors_->addLocalKeyDownMonitor(
        [this, onRecorded = std::move(onRecorded)](const KeyEvent& event) {
            handleKey(event, onRecorded);
            return false;
        });
}

void HotkeyRecorder::stop() {
    monitor_.reset();
}

void HotkeyRecorder::handleKey(const KeyEvent& event, const RecordedCallback& onRecorded) {
    // A copy, since the callback may end the recording and with it the monitor that holds the original.
    const RecordedCallback callback = onRecorded;
    if (event.keyCode == escapeKey) {
        callback(std::nullopt);
    } else {
        callback(HotkeyDefinition{event.keyCode,
                                  modifierMapper_.toCarbonModifiers(KeyModifierFlags{event.modifierFlags})});
    }
    stop();
}

} // namespace tarvex
