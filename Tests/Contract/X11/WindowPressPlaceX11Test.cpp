#include "Platform/Linux/X11/XPressRecord.h"
#include "Tests/Contract/X11/WindowFindingFixture.h"
#include "Tests/Support/X11/Pointer.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace tarvex::contract {

namespace {

/// The adapters as the program has them, with a record of presses, and a tap on the presses.
class PressListener {
public:
    explicit PressListener(XInputAdapters& adapters, const std::string& displayName)
        : adapters_(&adapters), presses_(displayName) {
        EventTapRequest request;
        request.eventMask = 1U << static_cast<std::uint32_t>(EventType::leftMouseDown) |
                            1U << static_cast<std::uint32_t>(EventType::leftMouseDragged);
        request.refcon = this;
        request.callback = [](EventTap*, EventType type, const TapEvent* event, void* refcon) {
            auto& listener = *static_cast<PressListener*>(refcon);
            if (type == EventType::leftMouseDown) {
                listener.take();
            } else {
                ++listener.dragged_;
            }
            return event;
        };
        tap_ = taps_.createTap(request);
        source_ = taps_.createRunLoopSource(*tap_);
        taps_.addSource(*source_);
        taps_.enableTap(*tap_);
        adapters.catchUp();
    }

    /// The visible frames of the windows that were pressed, none for no window, once that many presses were
    /// heard of.
    const std::vector<std::optional<PixelRect>>& await(std::size_t count) {
        EXPECT_TRUE(adapters_->waitUntil([&] { return frames_.size() >= count; }));
        return frames_;
    }

    /// The same of the first.
    std::optional<PixelRect> awaitFrame() {
        await(1);
        return frames_.empty() ? std::nullopt : frames_.front();
    }

    /// How many times motion was heard of before the last press.
    [[nodiscard]] int draggedBefore() const { return draggedBefore_; }

    [[nodiscard]] XPressRecord& record() { return presses_; }

    void stop() {
        taps_.removeSource(*source_);
        adapters_->catchUp();
    }

    /// Where the pointer was said to be then.
    [[nodiscard]] const std::vector<Point>& places() const { return places_; }

private:
    void take() {
        draggedBefore_ = dragged_;
        const Point place = pointer_.mouseLocation();
        places_.push_back(place);
        // The desktop is one monitor, so that only the direction of y differs.
        const auto found = platform_.copyElementAtPosition(
            static_cast<float>(place.x), static_cast<float>(adapters_->layout.value.primaryBottom - place.y));
        const auto window = platform_.copyAttributeValue(found.element, "AXWindow");
        const auto* element = window.value ? std::get_if<AccessibilityElementRef>(&*window.value) : nullptr;
        if (element == nullptr) {
            frames_.emplace_back();
            return;
        }
        const auto position = platform_.copyAttributeValue(*element, "AXPosition");
        const auto size = platform_.copyAttributeValue(*element, "AXSize");
        const auto& origin = std::get<Point>(position.value.value());
        const auto& extent = std::get<Size>(size.value.value());
        frames_.push_back(PixelRect{static_cast<int>(origin.x), static_cast<int>(origin.y),
                                    static_cast<int>(extent.width), static_cast<int>(extent.height)});
    }

    XInputAdapters* adapters_;
    XPressRecord presses_;
    XPointer pointer_{*adapters_->connection, adapters_->layout, &presses_};
    XEventTapPlatform taps_{*adapters_->connection, adapters_->pump, pointer_, SessionKind{}};
    XAccessibilityPlatform platform_{
        *adapters_->connection, adapters_->pump, adapters_->layout, {}, nullptr, &pointer_};
    std::vector<std::optional<PixelRect>> frames_;
    std::vector<Point> places_;
    int dragged_ = 0;
    int draggedBefore_ = 0;
    std::unique_ptr<EventTap> tap_;
    std::unique_ptr<RunLoopSource> source_;
};

/// Presses that are heard of when the pointer has gone on already. The window manager is played by the test.
class WindowPressPlaceX11 : public WindowFindingTest {
protected:
    xcb_window_t addManaged(const PixelRect& frame) {
        const xcb_window_t window = tree_.add(other_.root(), frame);
        setManaged(window);
        return window;
    }

    /// What a window manager does at a press.
    void activate(xcb_window_t window) {
        xcb_set_input_focus(other_.connection(), XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
        other_.sync();
    }

    /// What it does as the pointer moves.
    void configure(xcb_window_t window, const PixelRect& frame) {
        const std::array<std::uint32_t, 4> values{
            static_cast<std::uint32_t>(frame.x), static_cast<std::uint32_t>(frame.y),
            static_cast<std::uint32_t>(frame.width), static_cast<std::uint32_t>(frame.height)};
        xcb_configure_window(other_.connection(), window,
                             XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                                 XCB_CONFIG_WINDOW_HEIGHT,
                             values.data());
        other_.sync();
    }

    void pressAt(PixelPoint point) {
        mouse_.moveTo(point);
        mouse_.press();
    }

    /// Those that the program has not dealt with yet.
    void loseEvents() {
        adapters_.awaitServer();
        EXPECT_NE(XcbOwned<xcb_generic_event_t>(xcb_poll_for_event(adapters_.connection->get())), nullptr);
        while (const XcbOwned<xcb_generic_event_t> event{xcb_poll_for_event(adapters_.connection->get())}) {
        }
    }

    /// The middle of the window's lowest row of pixels.
    static constexpr PixelPoint lowerEdge_{home.x + home.width / 2, home.y + home.height - 1};
    static constexpr PixelPoint corner_{home.x + home.width - 1, home.y + home.height - 1};
    static constexpr PixelPoint bare_{1000, 800};

    test::Pointer mouse_{server_.displayName()};
    PressListener listener_{adapters_, server_.displayName()};
};

TEST_F(WindowPressPlaceX11, WindowIsFoundThoughThePointerHasGoneOnToTheBareDesktop) {
    addManaged(home);
    pressAt(lowerEdge_);
    mouse_.moveTo(bare_);
    EXPECT_EQ(listener_.awaitFrame(), home);
    EXPECT_EQ(listener_.places().front(), (Point{lowerEdge_.x + 0.5, 1024 - (lowerEdge_.y + 0.5)}));
}

TEST_F(WindowPressPlaceX11, WindowIsFoundThoughThePointerHasGoneOnToAnother) {
    addManaged(home);
    addManaged({900, 700, 200, 200});
    pressAt(lowerEdge_);
    mouse_.moveTo(bare_);
    EXPECT_EQ(listener_.awaitFrame(), home);
}

TEST_F(WindowPressPlaceX11, BareDesktopIsNoWindowThoughThePointerHasGoneOnToOne) {
    addManaged(home);
    pressAt(bare_);
    mouse_.moveTo(home.center());
    EXPECT_EQ(listener_.awaitFrame(), std::nullopt);
}

TEST_F(WindowPressPlaceX11, EveryPressHasItsPlaceThoughSeveralAreHeardOfAtOnce) {
    const PixelRect second{900, 700, 200, 200};
    addManaged(home);
    addManaged(second);
    pressAt(lowerEdge_);
    mouse_.release();
    pressAt({second.x, second.y});
    mouse_.release();
    mouse_.moveTo({700, 100});
    EXPECT_EQ(listener_.await(2), (std::vector<std::optional<PixelRect>>{home, second}));
}

TEST_F(WindowPressPlaceX11, WindowIsFoundThoughMotionFromBeforeThePressIsDueFirst) {
    const xcb_window_t dragged = addManaged(home);
    pressAt(bare_);
    listener_.await(1);
    mouse_.release();
    loseEvents();
    mouse_.moveTo({home.x + 5, home.y + 5});
    mouse_.press();
    activate(dragged);
    const PixelRect pulled{home.x + 600, home.y + 400, home.width, home.height};
    mouse_.moveTo({pulled.x + 5, pulled.y + 5});
    configure(dragged, pulled);
    EXPECT_EQ(listener_.await(2).back(), pulled);
    EXPECT_EQ(listener_.draggedBefore(), 1);
}

TEST_F(WindowPressPlaceX11, WindowThatFollowedThePointerIsFoundThoughAnotherCameToLight) {
    addManaged({100, 100, 600, 500});
    const xcb_window_t dragged = addManaged(home);
    const PixelRect pulled{home.x + 600, home.y + 400, home.width, home.height};
    pressAt({home.x + 5, home.y + 5});
    activate(dragged);
    mouse_.moveTo({pulled.x + 5, pulled.y + 5});
    configure(dragged, pulled);
    EXPECT_EQ(listener_.awaitFrame(), pulled);
}

TEST_F(WindowPressPlaceX11, WindowThatIsAnnouncedAsActiveIsKnownToFollowThePointerAsWell) {
    addManaged({100, 100, 600, 500});
    // In a frame, as the windows of most window managers are.
    const xcb_window_t frame = tree_.add(other_.root(), home, true);
    const xcb_window_t dragged = tree_.add(frame, {0, 0, home.width, home.height});
    setManaged(dragged);
    const PixelRect pulled{home.x + 600, home.y + 400, home.width, home.height};
    pressAt({home.x + 5, home.y + 5});
    other_.setWords(other_.root(), "_NET_ACTIVE_WINDOW", "WINDOW", {dragged});
    mouse_.moveTo({pulled.x + 5, pulled.y + 5});
    configure(frame, pulled);
    EXPECT_EQ(listener_.awaitFrame(), pulled);
}

TEST_F(WindowPressPlaceX11, WindowThatShrankAwayFromThePressIsFoundByItsCorner) {
    const xcb_window_t dragged = addManaged(home);
    pressAt(corner_);
    activate(dragged);
    // The window manager is behind: the corner is on its way from the press to the pointer.
    const PixelRect resized{home.x, home.y, home.width + 50, home.height - 50};
    mouse_.moveTo({corner_.x + 100, corner_.y - 100});
    configure(dragged, resized);
    EXPECT_EQ(listener_.awaitFrame(), resized);
}

TEST_F(WindowPressPlaceX11, ActiveWindowElsewhereIsNotTakenForTheBareDesktop) {
    activate(addManaged(home));
    pressAt(bare_);
    mouse_.moveTo({bare_.x, bare_.y - 100});
    EXPECT_EQ(listener_.awaitFrame(), std::nullopt);
}

TEST_F(WindowPressPlaceX11, WithoutARecordAPressIsWhereThePointerIsByThen) {
    XInputAdapters adapters(server_.displayName());
    PressListener listener(adapters, "no such display");
    const PixelRect second{900, 700, 200, 200};
    addManaged(home);
    addManaged(second);
    pressAt(lowerEdge_);
    mouse_.moveTo(bare_);
    EXPECT_EQ(listener.awaitFrame(), second);
}

/// Presses whose times are known.
class PressRecordX11 : public WindowPressPlaceX11 {
protected:
    void SetUp() override {
        other_.setEventHandler([&](const xcb_generic_event_t& event) {
            if ((event.response_type & 0x7F) == XCB_BUTTON_PRESS) {
                time_ = reinterpret_cast<const xcb_button_press_event_t&>(event).time;
            }
        });
        other_.selectEvents(other_.root(), XCB_EVENT_MASK_BUTTON_PRESS);
        other_.sync();
    }

    /// When the record has the press, too.
    xcb_timestamp_t press(PixelPoint point, std::uint8_t button = 1) {
        mouse_.moveTo(point);
        mouse_.press(button);
        mouse_.release(button);
        other_.sync();
        other_.handleEvents();
        EXPECT_NE(time_, XCB_CURRENT_TIME);
        return time_;
    }

    xcb_timestamp_t time_ = XCB_CURRENT_TIME;
};

TEST_F(PressRecordX11, TellsOfEveryPressOnceAndKeepsTheLastOnesAlone) {
    XPressRecord record(server_.displayName());
    record.begin();
    EXPECT_EQ(record.placeOfPress(1), std::nullopt);
    const xcb_timestamp_t first = press({5, 6});
    EXPECT_EQ(record.placeOfPress(first - 1), std::nullopt);
    EXPECT_EQ(record.placeOfPress(first), (PixelPlace{5, 6}));
    EXPECT_EQ(record.placeOfPress(first), std::nullopt);
    // The server counts in milliseconds.
    const xcb_timestamp_t lost = press({7, 8});
    other_.waitUntil([&] { return press({9, 10}) != lost; }, "a press has another time");
    for (int count = 0; count < 64; ++count) {
        press({11, 12});
    }
    EXPECT_EQ(record.placeOfPress(lost), std::nullopt);
    EXPECT_EQ(record.placeOfPress(time_), (PixelPlace{11, 12}));
}

TEST_F(PressRecordX11, IsKeptFromItsBeginningToItsEnd) {
    XPressRecord record(server_.displayName());
    const xcb_timestamp_t before = press({5, 6});
    record.begin();
    EXPECT_EQ(record.placeOfPress(before), std::nullopt);
    press({7, 8});
    // A second beginning loses nothing.
    record.begin();
    EXPECT_EQ(record.placeOfPress(time_), (PixelPlace{7, 8}));
    press({9, 10});
    EXPECT_EQ(record.placeOfPress(1), std::nullopt);
    record.end();
    EXPECT_EQ(record.placeOfPress(time_), std::nullopt);
    record.begin();
    EXPECT_EQ(record.placeOfPress(time_), std::nullopt);
    EXPECT_EQ(record.placeOfPress(press({11, 12})), (PixelPlace{11, 12}));
}

TEST_F(PressRecordX11, ForgetsWhatTheTapHasNoUseFor) {
    constexpr std::uint8_t wheelUp = 4;
    press({5, 6}, wheelUp);
    adapters_.catchUp();
    EXPECT_EQ(listener_.record().placeOfPress(time_), std::nullopt);
    press({7, 8});
    EXPECT_EQ(listener_.await(1).size(), 1U);
    EXPECT_EQ(listener_.places().front(), (Point{7.5, 1024 - 8.5}));
}

TEST_F(PressRecordX11, EndsWithTheTap) {
    listener_.stop();
    press({5, 6});
    EXPECT_EQ(listener_.record().placeOfPress(time_), std::nullopt);
}

} // namespace

} // namespace tarvex::contract
