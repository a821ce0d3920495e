#include "Tests/Unit/SnapControllerFixture.h"

#include <ostream>

namespace tarvex {
namespace {

enum class State : std::uint8_t { idle, dragging, snapping };

enum class Event : std::uint8_t {
    press,
    release,
    motion,
    motionWithoutScreen,
    singleModifiers,
    multiModifiers,
    otherModifiers,
    noModifiers,
    singleModifiersWithoutScreen,
    otherModifiersWithoutScreen,
    secondaryPress,
    keyPress,
    timeoutNotice,
    userInputNotice,
};

const char* nameOf(State state) {
    switch (state) {
    case State::idle:
        return "Idle";
    case State::dragging:
        return "Dragging";
    case State::snapping:
        return "Snapping";
    }
    return "";
}

const char* nameOf(Event event) {
    switch (event) {
    case Event::press:
        return "Press";
    case Event::release:
        return "Release";
    case Event::motion:
        return "Motion";
    case Event::motionWithoutScreen:
        return "MotionWithoutScreen";
    case Event::singleModifiers:
        return "SingleModifiers";
    case Event::multiModifiers:
        return "MultiModifiers";
    case Event::otherModifiers:
        return "OtherModifiers";
    case Event::noModifiers:
        return "NoModifiers";
    case Event::singleModifiersWithoutScreen:
        return "SingleModifiersWithoutScreen";
    case Event::otherModifiersWithoutScreen:
        return "OtherModifiersWithoutScreen";
    case Event::secondaryPress:
        return "SecondaryPress";
    case Event::keyPress:
        return "KeyPress";
    case Event::timeoutNotice:
        return "TimeoutNotice";
    case Event::userInputNotice:
        return "UserInputNotice";
    }
    return "";
}

/// From one state, with one event, to another state: what is selected then, and everything that happened.
struct Transition {
    State from;
    Event event;
    State to;
    Lines selected;
    Lines happenings;

    friend void PrintTo(const Transition& transition, std::ostream* stream) {
        *stream << nameOf(transition.from) << " + " << nameOf(transition.event) << " -> "
                << nameOf(transition.to);
    }
};

constexpr const char* load = "config load";
constexpr const char* matchSingle =
    "file log: SnapController.updateOverlayState match modifiers=256 mode=single";
constexpr const char* matchMulti =
    "file log: SnapController.updateOverlayState match modifiers=768 mode=multi";
constexpr const char* noMatchOption = "file log: SnapController.updateOverlayState noMatch modifiers=2048";
constexpr const char* noMatchNone = "file log: SnapController.updateOverlayState noMatch modifiers=0";
constexpr const char* dragStart = "file log: SnapController.snapDragStart modifiers=256 mode=single";
constexpr const char* success = "file log: SnapController.snapAndHide success cells=1 modifiers=256 "
                                "frame=(8.0, 33.0, 708.0, 859.0)";
constexpr const char* restorePosition = "window 1 write AXPosition 200,200";
constexpr const char* restoreSize = "window 1 write AXSize 500x400";
constexpr const char* front = "overlay 1 front";
constexpr const char* out = "overlay 1 out";

Lines reinstallation() {
    return {"remove source",
            "preflight listening",
            "log: EventTapManager.start: creating event tap",
            "create tap",
            "create source",
            "add source",
            "log: EventTapManager.start: event tap installed on current run loop",
            "enable tap"};
}

Lines windowLookUp() {
    return {"hit test 300,450", "window 1 read AXWindow", "window 1 read AXPosition", "window 1 read AXSize"};
}

/// The table. The pointer rests over the left zone, on the window, but for the events without a screen.
std::vector<Transition> transitions() {
    const Lines none;
    const Lines left = {"r0-c0"};
    using enum State;
    std::vector<Transition> table = {
        {idle, Event::press, dragging, none, windowLookUp()},
        {idle, Event::release, idle, none, none},
        {idle, Event::motion, idle, none, none},
        {idle, Event::motionWithoutScreen, idle, none, none},
        {idle, Event::singleModifiers, idle, none, none},
        {idle, Event::multiModifiers, idle, none, none},
        {idle, Event::otherModifiers, idle, none, none},
        {idle, Event::noModifiers, idle, none, none},
        {idle, Event::singleModifiersWithoutScreen, idle, none, none},
        {idle, Event::otherModifiersWithoutScreen, idle, none, none},

        {dragging, Event::press, dragging, none, windowLookUp()},
        {dragging, Event::release, idle, none, none},
        {dragging, Event::motion, dragging, none, none},
        {dragging, Event::motionWithoutScreen, dragging, none, none},
        {dragging,
         Event::singleModifiers,
         snapping,
         left,
         {load, matchSingle, front, load, "overlay 1 picture"}},
        {dragging,
         Event::multiModifiers,
         snapping,
         left,
         {load, matchMulti, front, load, "overlay 1 picture"}},
        {dragging, Event::otherModifiers, dragging, none, {load, noMatchOption, out}},
        {dragging, Event::noModifiers, dragging, none, {load, noMatchNone, out}},
        {dragging, Event::singleModifiersWithoutScreen, dragging, none, {load, matchSingle}},
        {dragging, Event::otherModifiersWithoutScreen, dragging, none, {load, noMatchOption, out}},

        {snapping, Event::press, snapping, none, windowLookUp()},
        {snapping,
         Event::release,
         idle,
         none,
         {load, success, "window 1 write AXPosition 8,8", "window 1 write AXSize 708x859", out}},
        {snapping, Event::motion, snapping, left, {load, dragStart, load}},
        {snapping, Event::motionWithoutScreen, snapping, left, {load, dragStart, load}},
        {snapping, Event::singleModifiers, snapping, left, {load, matchSingle, front, load}},
        {snapping, Event::multiModifiers, snapping, left, {load, matchMulti, front, load}},
        {snapping,
         Event::otherModifiers,
         dragging,
         none,
         {load, noMatchOption, restorePosition, restoreSize, out}},
        {snapping,
         Event::noModifiers,
         dragging,
         none,
         {load, noMatchNone, restorePosition, restoreSize, out}},
        {snapping, Event::singleModifiersWithoutScreen, snapping, left, {load, matchSingle}},
        {snapping,
         Event::otherModifiersWithoutScreen,
         dragging,
         none,
         {load, noMatchOption, restorePosition, restoreSize, out}},
    };
    for (const State state : {idle, dragging, snapping}) {
        const Lines& selected = state == snapping ? left : none;
        for (const Event event : {Event::secondaryPress, Event::keyPress, Event::userInputNotice}) {
            table.push_back({state, event, state, selected, none});
        }
        table.push_back({state, Event::timeoutNotice, state, selected, reinstallation()});
    }
    return table;
}

class SnapControllerStateTableTest : public SnapControllerTest,
                                     public ::testing::WithParamInterface<Transition> {
protected:
    static constexpr Point onWindow{300, 450};

    // An overlay of earlier drags is there, hidden: a drag never starts from a blank slate but the first
    // time.
    void SetUp() override {
        SnapControllerTest::SetUp();
        desktop_.moveTo(onWindow);
        desktop_.pressButton();
        desktop_.moveTo(onPanel);
        desktop_.holdModifiers(command);
        desktop_.releaseButton();
        desktop_.releaseModifiers();
        desktop_.moveTo(onWindow);
    }

    void enter(State state) {
        if (state != State::idle) {
            desktop_.pressButton();
        }
        if (state == State::snapping) {
            desktop_.holdModifiers(command);
        }
        forgetHistory();
    }

    // The event alone, as the tap hands it over; what leads up to it does not reach the controller.
    void happen(Event event) {
        SimulatedInput& input = desktop_.input();
        switch (event) {
        case Event::press:
            return hand(EventType::leftMouseDown, input.modifiers());
        case Event::release:
            return hand(EventType::leftMouseUp, input.modifiers());
        case Event::motion:
            return hand(EventType::leftMouseDragged, command);
        case Event::motionWithoutScreen:
            desktop_.displays().at(101).frame.x = 100000;
            return hand(EventType::leftMouseDragged, command);
        case Event::singleModifiers:
            return hand(EventType::flagsChanged, command);
        case Event::multiModifiers:
            return hand(EventType::flagsChanged, command | shift);
        case Event::otherModifiers:
            return hand(EventType::flagsChanged, option);
        case Event::noModifiers:
            return hand(EventType::flagsChanged, 0);
        case Event::singleModifiersWithoutScreen:
            desktop_.displays().at(101).frame.x = 100000;
            return hand(EventType::flagsChanged, command);
        case Event::otherModifiersWithoutScreen:
            desktop_.displays().at(101).frame.x = 100000;
            return hand(EventType::flagsChanged, option);
        case Event::secondaryPress:
            return hand(static_cast<EventType>(3), 0);
        case Event::keyPress:
            return hand(static_cast<EventType>(10), command);
        case Event::timeoutNotice:
            return hand(EventType::tapDisabledByTimeout, 0);
        case Event::userInputNotice:
            return hand(EventType::tapDisabledByUserInput, 0);
        }
    }

    void hand(EventType type, std::uint64_t flags) {
        const TapEvent event{type, flags};
        EXPECT_EQ(snapEventTapCallback(nullptr, type, &event, &controller()), &event);
    }

    void expectState(State state, const Lines& selected) {
        EXPECT_EQ(controller().isDragging(), state != State::idle);
        EXPECT_EQ(controller().isOverlayActive(), state == State::snapping);
        EXPECT_EQ(isOverlayShown(), state == State::snapping);
        EXPECT_EQ(selectedKeys(), selected);
        EXPECT_EQ(SimulatedAccessibility::windowNumber(controller().activeWindow()),
                  state == State::idle ? 0 : window_);
        if (state == State::idle) {
            expectAtRest();
        }
    }
};

TEST_P(SnapControllerStateTableTest, EventLeadsWhereTheTableSays) {
    const Transition& transition = GetParam();
    enter(transition.from);
    happen(transition.event);
    EXPECT_EQ(happened(), transition.happenings);
    expectState(transition.to, transition.selected);
}

TEST_P(SnapControllerStateTableTest, PreferencesWindowStopsEveryEventButTheTimeoutNotice) {
    const Transition& transition = GetParam();
    enter(transition.from);
    desktop_.keyWindow().setTitle("Preferences");
    happen(transition.event);
    EXPECT_EQ(happened(), transition.event == Event::timeoutNotice ? reinstallation() : Lines());
    expectState(transition.from, transition.from == State::snapping ? Lines{"r0-c0"} : Lines());
    desktop_.keyWindow().setTitle(std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Table, SnapControllerStateTableTest, ::testing::ValuesIn(transitions()),
                         [](const auto& info) {
                             return std::string(nameOf(info.param.from)) + nameOf(info.param.event);
                         });

TEST(SnapControllerStateTableSizeTest, TableNamesEveryStateWithEveryEventOnce) {
    std::vector<std::pair<int, int>> seen;
    for (const Transition& transition : transitions()) {
        seen.emplace_back(static_cast<int>(transition.from), static_cast<int>(transition.event));
    }
    std::vector<std::pair<int, int>> all;
    for (int state = 0; state <= static_cast<int>(State::snapping); ++state) {
        for (int event = 0; event <= static_cast<int>(Event::userInputNotice); ++event) {
            all.emplace_back(state, event);
        }
    }
    std::sort(seen.begin(), seen.end());
    EXPECT_EQ(seen, all);
}

} // namespace
} // namespace tarvex
