#pragma once

#include "Tests/Support/RandomSource.h"
#include "Tests/Unit/SnapControllerFixture.h"

namespace tarvex {

/// A desktop on which everything happens that can happen, at random, and whether the controller must be
/// dragging and snapping then.
class SnapControllerRandomDesktop : public SnapControllerTest,
                                    public ::testing::WithParamInterface<std::uint32_t> {
protected:
    void SetUp() override {
        SnapControllerTest::SetUp();
        plugSecondScreen();
        desktop_.configFiles().onLoad([this](int load) {
            // Now and then the file breaks between two readings of one event.
            if (breaksBetweenReadings_ && load == 1) {
                breakFile();
            }
        });
    }

    template <typename Value>
    const Value& pick(const std::vector<Value>& values) {
        return values[random_.integer(std::size_t{0}, values.size() - 1)];
    }

    bool oneIn(int count) { return random_.integer(1, count) == 1; }

    Point anyPlace() {
        switch (random_.integer(0, 9)) {
        case 0:
            return nowhere;
        case 1:
            return onPanel;
        case 2:
        case 3:
            return onSecondScreen;
        case 4:
            return {1440, random_.between(0, 900)};
        default:
            return {random_.between(-50, 3400), random_.between(-350, 950)};
        }
    }

    void breakFile() {
        switch (random_.integer(0, 2)) {
        case 0:
            desktop_.configFiles().put("{\"grids\":[");
            break;
        case 1:
            desktop_.configFiles().setUnreadable(true);
            desktop_.configFiles().put("{}");
            break;
        default:
            desktop_.configFiles().setFolderBlocked(true);
            break;
        }
        single_ = modifier_mask::command;
        multi_ = modifier_mask::command | modifier_mask::shift;
    }

    void writeFile() {
        desktop_.configFiles().setUnreadable(false);
        desktop_.configFiles().setFolderBlocked(false);
        single_ = pick(masks_);
        multi_ = pick(masks_);
        configure([&](TarvexConfigFields& fields) {
            fields.singleSnapModifiers = ModifierDefinition{single_};
            fields.multiSnapModifiers = ModifierDefinition{multi_};
            fields.cellMarginPoints = pick(std::vector<double>{0, 8, 20, 700, -10});
            fields.restoreWindowSizeOnUnsnap = random_.coin();
            fields.grids = {makeGrid("first", random_.splits(4), random_.splits(3))};
            fields.grids.push_back(makeGrid("second", random_.splits(3)));
            fields.defaultGridByDisplayId = {{"v4369-p13107-sno-serial", random_.coin() ? "second" : "gone"}};
            if (oneIn(8)) {
                fields.grids.clear();
            }
        });
    }

    static std::uint64_t flagsOf(std::uint32_t mask) {
        std::uint64_t flags = 0;
        for (const std::uint64_t flag : {command, shift, option, control}) {
            flags |= (ModifierMapper().toCarbonModifiers(flag) & mask) != 0 ? flag : 0;
        }
        return flags;
    }

    // Whether an event that comes now reaches the controller.
    bool isHeard() { return desktop_.input().listeningTaps() == 1 && !isPreferencesKey_; }

    bool isOnAScreen() {
        const Point point = desktop_.input().mouseLocation();
        const std::vector<Screen> screens = desktop_.displays().screens();
        return std::any_of(screens.begin(), screens.end(),
                           [&](const Screen& screen) { return screen.frame.contains(point); });
    }

    void press() {
        mustBeDragging_ = mustBeDragging_ || isHeard();
        if (!oneIn(4) && !desktop_.accessibility().windows().empty()) {
            desktop_.grabWindow(pick(desktop_.accessibility().windows()).number);
        } else {
            desktop_.pressButton();
        }
    }

    void release() {
        if (isHeard()) {
            mustBeDragging_ = false;
            mustBeSnapping_ = false;
        }
        desktop_.releaseButton();
    }

    void changeModifiers(std::uint64_t flags) {
        if (flags != desktop_.input().modifiers() && isHeard() && mustBeDragging_) {
            const std::uint32_t mask = ModifierMapper().toCarbonModifiers(flags);
            if (mask != single_ && mask != multi_) {
                mustBeSnapping_ = false;
            } else if (isOnAScreen()) {
                mustBeSnapping_ = true;
            }
        }
        desktop_.holdModifiers(flags);
    }

    void disturbWindows() {
        SimulatedAccessibility& windows = desktop_.accessibility();
        const auto& open = windows.windows();
        switch (random_.integer(0, 8)) {
        case 0:
            if (!open.empty()) {
                desktop_.closeWindow(pick(open).number);
            }
            break;
        case 1:
            if (const int held = SimulatedAccessibility::windowNumber(controller().activeWindow());
                held != 0) {
                desktop_.closeWindow(held);
            }
            break;
        case 2:
            windows.answerHitTest(oneIn(12) ? std::optional(AccessibilityElementResult{-25204, nullptr})
                                            : std::nullopt);
            break;
        case 3:
            windows.answerWrite("AXPosition", oneIn(4) ? ax_error::cannotComplete : 0);
            windows.answerWrite("AXSize", oneIn(4) ? ax_error::cannotComplete : 0);
            break;
        case 4:
            windows.setTrusted(!oneIn(12));
            break;
        default:
            if (open.size() < 6) {
                desktop_.openWindow({random_.between(0, 2500), random_.between(-200, 500), 400, 300},
                                    pick(std::vector<SimulatedWindowKind>{SimulatedWindowKind::application,
                                                                          SimulatedWindowKind::application,
                                                                          SimulatedWindowKind::menu}));
            }
            break;
        }
    }

    void disturbScreens() {
        auto& displays = desktop_.displays().all();
        if (oneIn(3) && !displays.empty()) {
            desktop_.unplugScreen(pick(displays).number);
        } else if (oneIn(2) && !displays.empty()) {
            displays[0].bottomPanel = pick(std::vector<double>{0, 25, 60});
        } else {
            displays.clear();
            desktop_.plugScreen({.number = 101, .frame = screenFrame, .bottomPanel = 25});
            plugSecondScreen();
        }
    }

    // The tap dies with or without notice, may be refused for a while, and comes back in the end.
    void disturbTap() {
        SimulatedInput& input = desktop_.input();
        switch (random_.integer(0, 19)) {
        case 0:
            input.killTaps();
            break;
        case 1:
            input.disableTapsByUserInput();
            desktop_.mainLoop().runPosted();
            break;
        case 2:
            input.setRefusesTaps(oneIn(3));
            input.disableTapsByTimeout();
            desktop_.mainLoop().runPosted();
            break;
        default:
            input.setRefusesTaps(false);
            controller().start();
            desktop_.wait(1);
            break;
        }
    }

    void sendStray() {
        const EventType type = pick(
            std::vector<EventType>{EventType::leftMouseDragged, EventType::leftMouseDown,
                                   EventType::leftMouseUp, EventType::flagsChanged, static_cast<EventType>(3),
                                   static_cast<EventType>(10), EventType::tapDisabledByUserInput});
        if (type == EventType::leftMouseDown) {
            press();
        } else if (type == EventType::leftMouseUp) {
            release();
        } else if (type == EventType::flagsChanged) {
            changeModifiers(desktop_.input().modifiers() ^ event_flag::capsLock);
        } else {
            desktop_.send(type);
        }
    }

    const char* happen() {
        breaksBetweenReadings_ = oneIn(100);
        const int what = random_.integer(0, 99);
        if (what < 35) {
            desktop_.moveTo(anyPlace());
            return "move";
        }
        if (what < 55) {
            changeModifiers(random_.coin() ? pick(flags_) : flagsOf(random_.coin() ? single_ : multi_));
            return "modifiers";
        }
        if (what < 67) {
            press();
            return "press";
        }
        if (what < 79) {
            release();
            return "release";
        }
        if (what < 83) {
            sendStray();
            return "stray";
        }
        breaksBetweenReadings_ = false;
        return disturb(what);
    }

    const char* disturb(int what) {
        if (what < 88) {
            disturbWindows();
            return "windows";
        }
        if (what < 90) {
            disturbScreens();
            return "screens";
        }
        if (what < 91) {
            breakFile();
            return "broken file";
        }
        if (what < 94) {
            writeFile();
            return "new file";
        }
        if (what < 96) {
            isPreferencesKey_ = oneIn(10);
            desktop_.keyWindow().setTitle(isPreferencesKey_ ? "Preferences" : "About Tarvex");
            return "key window";
        }
        if (what < 99) {
            disturbTap();
            return "tap";
        }
        desktop_.wait(1);
        return "second";
    }

    RandomSource random_{GetParam()};
    const std::vector<std::uint32_t> masks_ = {256, 256, 768, 2048, 4096, 0};
    const std::vector<std::uint64_t> flags_ = {0,      command, command | shift,           option,
                                               option, control, command | shift | control, command};
    std::uint32_t single_ = 256;
    std::uint32_t multi_ = 768;
    bool isPreferencesKey_ = false;
    bool breaksBetweenReadings_ = false;
    bool mustBeDragging_ = false;
    bool mustBeSnapping_ = false;
};

} // namespace tarvex
