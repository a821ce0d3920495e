#include "Tests/Support/RandomSource.h"
#include "Tests/Unit/SnapControllerFixture.h"

#include <deque>

namespace tarvex {
namespace {

constexpr int eventsPerSeed = 25000;

/// A desktop on which everything happens that can happen, at random, and what the controller must be doing.
class SnapControllerRandomTest : public SnapControllerTest,
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
        if (oneIn(2) && !desktop_.accessibility().windows().empty()) {
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
        switch (random_.integer(0, 5)) {
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
            windows.answerHitTest(random_.coin() ? std::optional(AccessibilityElementResult{-25204, nullptr})
                                                 : std::nullopt);
            break;
        case 3:
            windows.answerWrite("AXPosition", random_.coin() ? ax_error::cannotComplete : 0);
            windows.answerWrite("AXSize", random_.coin() ? ax_error::cannotComplete : 0);
            break;
        case 4:
            windows.setTrusted(oneIn(4) ? false : true);
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
        switch (random_.integer(0, 5)) {
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
        breaksBetweenReadings_ = oneIn(40);
        const int what = random_.integer(0, 99);
        if (what < 35) {
            desktop_.moveTo(anyPlace());
            return "move";
        }
        if (what < 55) {
            changeModifiers(pick(flags_));
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
        if (what < 92) {
            breakFile();
            return "broken file";
        }
        if (what < 95) {
            writeFile();
            return "new file";
        }
        if (what < 97) {
            isPreferencesKey_ = oneIn(4);
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

    // What must hold between any two events; empty when it does.
    std::string violation() {
        const SnapController& snap = controller();
        const auto shown = desktop_.windows().shown().size();
        const bool isSelected = !snap.selectionState().selectedKeys().empty();
        const int elements = desktop_.accessibility().liveElements();
        const std::vector<std::pair<bool, const char*>> rules = {
            {snap.isDragging() == mustBeDragging_, "dragging from press to release"},
            {snap.isOverlayActive() == mustBeSnapping_, "snapping while the modifiers match"},
            {!snap.isOverlayActive() || snap.isDragging(), "no snapping outside a drag"},
            {shown == (snap.isOverlayActive() ? 1U : 0U), "the overlay is shown exactly while snapping"},
            {desktop_.windows().open().size() <= 1, "one overlay at most"},
            {!isSelected || snap.isOverlayActive(), "no selection without an overlay"},
            {snap.isDragging() || isAtRest(), "nothing is left of a drag after its reset"},
            {elements == (snap.activeWindow() ? 1 : 0), "only the dragged window is held"},
            {desktop_.input().alteredEvents() == 0, "events pass unchanged"},
            {desktop_.input().misuses().empty(), "taps are dropped in order"},
            {desktop_.input().liveTaps() <= 1, "one tap at most"},
            {snapping_.taps().isInstalled() != snapping_.taps().isWaiting(), "the tap is there or awaited"},
            {writesAreWhole(), "a window's position is written with its size, once"},
        };
        for (const auto& [holds, rule] : rules) {
            if (!holds) {
                return rule;
            }
        }
        return {};
    }

    bool isAtRest() {
        const SnapController& snap = controller();
        return snap.activeWindow() == nullptr && snap.activeCells().empty() && snap.activeGrid() == nullptr &&
               snap.activeModifiers() == 0 && !snap.originalWindowFrame();
    }

    bool writesAreWhole() {
        int positions = 0;
        int sizes = 0;
        for (const std::string& entry : desktop_.journal().entries()) {
            positions += entry.find("write AXPosition") != std::string::npos ? 1 : 0;
            sizes += entry.find("write AXSize") != std::string::npos ? 1 : 0;
        }
        return positions == sizes && positions <= 1;
    }

    void count() {
        for (const std::string& line : desktop_.fileLog().lines()) {
            snaps_ += line.starts_with("SnapController.snapAndHide success") ? 1 : 0;
            drags_ += line.starts_with("SnapController.snapDragStart") ? 1 : 0;
        }
        abandoned_ += static_cast<int>(desktop_.log().lines().size());
    }

    std::string lastSteps() const {
        std::string text;
        for (const std::string& step : steps_) {
            text.append(" ").append(step);
        }
        return text;
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
    int snaps_ = 0;
    int drags_ = 0;
    int abandoned_ = 0;
    std::deque<std::string> steps_;
};

TEST_P(SnapControllerRandomTest, InvariantsHoldAfterEveryEvent) {
    for (int step = 0; step < eventsPerSeed; ++step) {
        forgetHistory();
        steps_.emplace_back(happen());
        if (steps_.size() > 20) {
            steps_.pop_front();
        }
        count();
        desktop_.windows().forgetClosed();
        ASSERT_EQ(violation(), "") << "seed " << GetParam() << ", event " << step
                                   << ", the last ones:" << lastSteps();
    }
    // Enough happened for the rules to mean something.
    EXPECT_GT(snaps_, 200);
    EXPECT_GT(drags_, 200);
    EXPECT_GT(abandoned_, 200);
}

INSTANTIATE_TEST_SUITE_P(Seeds, SnapControllerRandomTest, ::testing::Values(1U, 20U, 300U, 4000U),
                         [](const auto& info) { return "Seed" + std::to_string(info.param); });

} // namespace
} // namespace tarvex
