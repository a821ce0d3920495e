#include "Tests/Support/Simulated/SimulatedInput.h"

#include <algorithm>
#include <utility>

namespace tarvex {

class SimulatedInput::Tap final : public EventTap {
public:
    Tap(std::shared_ptr<TapState> state, std::shared_ptr<std::vector<std::string>> misuses)
        : state_(std::move(state)), misuses_(std::move(misuses)) {}

    Tap(const Tap&) = delete;
    Tap& operator=(const Tap&) = delete;
    Tap(Tap&&) = delete;
    Tap& operator=(Tap&&) = delete;

    ~Tap() override {
        if (state_->sources != 0) {
            misuses_->emplace_back("a tap was dropped before its source");
        }
        state_->isAlive = false;
        state_->queue.clear();
    }

    [[nodiscard]] const std::shared_ptr<TapState>& state() const { return state_; }

private:
    std::shared_ptr<TapState> state_;
    std::shared_ptr<std::vector<std::string>> misuses_;
};

class SimulatedInput::Source final : public RunLoopSource {
public:
    Source(std::shared_ptr<TapState> tap, std::shared_ptr<std::vector<std::string>> misuses)
        : tap_(std::move(tap)), misuses_(std::move(misuses)) {
        ++tap_->sources;
    }

    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;
    Source(Source&&) = delete;
    Source& operator=(Source&&) = delete;

    ~Source() override {
        if (tap_->isOnLoop) {
            misuses_->emplace_back("a source was dropped while it was on the loop");
            tap_->isOnLoop = false;
        }
        --tap_->sources;
    }

    [[nodiscard]] TapState& tap() const { return *tap_; }

private:
    std::shared_ptr<TapState> tap_;
    std::shared_ptr<std::vector<std::string>> misuses_;
};

bool SimulatedInput::preflightListenEventAccess() {
    journal_->note("preflight listening");
    return isListeningAllowed_;
}

bool SimulatedInput::requestListenEventAccess() {
    journal_->note("request listening");
    return isListeningAllowed_;
}

std::unique_ptr<EventTap> SimulatedInput::createTap(const EventTapRequest& request) {
    journal_->note("create tap");
    requests_.push_back(request);
    if (!isListeningAllowed_ || refusesTaps_) {
        return nullptr;
    }
    auto state = std::make_shared<TapState>();
    state->request = request;
    auto tap = std::make_unique<Tap>(state, misuses_);
    state->proxy = tap.get();
    std::erase_if(taps_, [](const auto& other) { return !other->isAlive; });
    taps_.push_back(std::move(state));
    return tap;
}

std::unique_ptr<RunLoopSource> SimulatedInput::createRunLoopSource(EventTap& tap) {
    journal_->note("create source");
    if (refusesSources_) {
        return nullptr;
    }
    return std::make_unique<Source>(dynamic_cast<Tap&>(tap).state(), misuses_);
}

void SimulatedInput::addSource(RunLoopSource& source) {
    journal_->note("add source");
    dynamic_cast<Source&>(source).tap().isOnLoop = true;
}

void SimulatedInput::removeSource(RunLoopSource& source) {
    journal_->note("remove source");
    dynamic_cast<Source&>(source).tap().isOnLoop = false;
}

void SimulatedInput::enableTap(EventTap& tap) {
    journal_->note("enable tap");
    dynamic_cast<Tap&>(tap).state()->isEnabled = true;
}

void SimulatedInput::pressButton() {
    isButtonDown_ = true;
    emit(EventType::leftMouseDown);
}

void SimulatedInput::releaseButton() {
    isButtonDown_ = false;
    emit(EventType::leftMouseUp);
}

void SimulatedInput::moveTo(Point point) {
    pointer_ = point;
    if (isButtonDown_) {
        emit(EventType::leftMouseDragged);
    }
}

void SimulatedInput::setModifiers(std::uint64_t flags) {
    if (std::exchange(flags_, flags) != flags) {
        emit(EventType::flagsChanged);
    }
}

void SimulatedInput::send(EventType type) {
    emit(type);
}

void SimulatedInput::killTaps() {
    for (const auto& tap : taps_) {
        tap->isEnabled = false;
        tap->queue.clear();
    }
}

int SimulatedInput::liveTaps() const {
    return static_cast<int>(
        std::count_if(taps_.begin(), taps_.end(), [](const auto& tap) { return tap->isAlive; }));
}

int SimulatedInput::listeningTaps() const {
    return static_cast<int>(
        std::count_if(taps_.begin(), taps_.end(), [](const auto& tap) { return tap->isListening(); }));
}

void SimulatedInput::emit(EventType type) {
    const TapEvent event{type, flags_};
    const auto bit = static_cast<std::uint32_t>(type);
    for (const auto& tap : taps_) {
        if (!tap->isListening() || bit >= 64 || (tap->request.eventMask >> bit & 1U) == 0) {
            continue;
        }
        const bool isQueuedMotion =
            type == EventType::leftMouseDragged && !tap->queue.empty() && tap->queue.back() == event;
        if (isQueuedMotion) {
            continue;
        }
        tap->queue.push_back(event);
        mainLoop_->post([this, tap] {
            if (tap->queue.empty()) {
                return;
            }
            const TapEvent next = tap->queue.front();
            tap->queue.pop_front();
            if (tap->isListening()) {
                deliver(*tap, next);
            }
        });
    }
}

void SimulatedInput::deliver(TapState& tap, const TapEvent& event) {
    const TapEvent handed = event;
    const TapEvent* returned = tap.request.callback(tap.proxy, handed.type, &handed, tap.request.refcon);
    if (returned != &handed || handed != event) {
        ++alteredEvents_;
    }
}

void SimulatedInput::disableTaps(EventType notice) {
    for (const auto& tap : taps_) {
        if (!tap->isListening()) {
            continue;
        }
        tap->isEnabled = false;
        tap->queue.clear();
        mainLoop_->post([this, tap, notice] {
            if (tap->isAlive && tap->isOnLoop) {
                deliver(*tap, {notice, 0});
            }
        });
    }
}

} // namespace tarvex
