#pragma once

#include "App/Input/EventTapPlatform.h"
#include "App/Toolkit/PointerPlatform.h"
#include "Tests/Support/Simulated/Journal.h"
#include "Tests/Support/Simulated/SimulatedMainLoop.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace tarvex {

/// The mouse and the keyboard, and the taps that observe them. What a person does reaches a tap on a later
/// turn of the main loop, and only while the tap's source is on the loop and the tap is enabled.
class SimulatedInput final : public EventTapPlatform, public PointerPlatform {
public:
    SimulatedInput(SimulatedMainLoop& mainLoop, Journal& journal)
        : mainLoop_(&mainLoop), journal_(&journal) {}

    [[nodiscard]] bool preflightListenEventAccess() override;
    [[nodiscard]] bool requestListenEventAccess() override;
    [[nodiscard]] std::unique_ptr<EventTap> createTap(const EventTapRequest& request) override;
    [[nodiscard]] std::unique_ptr<RunLoopSource> createRunLoopSource(EventTap& tap) override;
    void addSource(RunLoopSource& source) override;
    void removeSource(RunLoopSource& source) override;
    void enableTap(EventTap& tap) override;

    [[nodiscard]] Point mouseLocation() override { return pointer_; }

    /// What a person does.
    void pressButton();
    void releaseButton();
    void moveTo(Point point);
    /// The modifiers that are held from now on, as event_flag bits.
    void setModifiers(std::uint64_t flags);

    [[nodiscard]] std::uint64_t modifiers() const { return flags_; }

    [[nodiscard]] bool isButtonDown() const { return isButtonDown_; }

    /// An event that no honest mouse or keyboard sends, with the modifiers held.
    void send(EventType type);

    /// Whether the user lets the program listen. Without it no tap can be made.
    void setListeningAllowed(bool isAllowed) { isListeningAllowed_ = isAllowed; }

    /// Whether the platform refuses to make taps or sources although it lets the program listen.
    void setRefusesTaps(bool refuses) { refusesTaps_ = refuses; }

    void setRefusesSources(bool refuses) { refusesSources_ = refuses; }

    /// Every tap stops without a word.
    void killTaps();

    /// Every tap is disabled and told so.
    void disableTapsByTimeout() { disableTaps(EventType::tapDisabledByTimeout); }

    void disableTapsByUserInput() { disableTaps(EventType::tapDisabledByUserInput); }

    [[nodiscard]] const std::vector<EventTapRequest>& requests() const { return requests_; }

    /// How many taps exist, and how many of them would deliver an event now.
    [[nodiscard]] int liveTaps() const;
    [[nodiscard]] int listeningTaps() const;

    /// How many events a callback did not hand back as they came.
    [[nodiscard]] int alteredEvents() const { return alteredEvents_; }

    /// What the owner of a tap did in the wrong order.
    [[nodiscard]] const std::vector<std::string>& misuses() const { return *misuses_; }

private:
    struct TapState {
        EventTapRequest request;
        EventTap* proxy = nullptr;
        bool isAlive = true;
        bool isEnabled = false;
        int sources = 0;
        bool isOnLoop = false;
        std::deque<TapEvent> queue;

        [[nodiscard]] bool isListening() const { return isAlive && isEnabled && isOnLoop; }
    };

    class Tap;
    class Source;

    void emit(EventType type);
    void deliver(TapState& tap, const TapEvent& event);
    void disableTaps(EventType notice);

    SimulatedMainLoop* mainLoop_;
    Journal* journal_;
    std::vector<std::shared_ptr<TapState>> taps_;
    std::vector<EventTapRequest> requests_;
    // Outlives the desktop, since a tap may be dropped after it.
    std::shared_ptr<std::vector<std::string>> misuses_ = std::make_shared<std::vector<std::string>>();
    Point pointer_;
    std::uint64_t flags_ = 0;
    bool isButtonDown_ = false;
    bool isListeningAllowed_ = true;
    bool refusesTaps_ = false;
    bool refusesSources_ = false;
    int alteredEvents_ = 0;
};

} // namespace tarvex
