#include "App/Input/EventTapPlatform.h"
#include "Tests/Contract/X11/ViewWindowFixture.h"

#include <array>

namespace tarvex::contract {

namespace {

class ViewWindowInput : public ViewWindowTest {
protected:
    void SetUp() override {
        ViewWindowTest::SetUp();
        pointer_ = std::make_unique<test::Pointer>(desktop_->server.displayName());
        keyboard_ = std::make_unique<test::Keyboard>(desktop_->server.displayName());
        pointer_->moveTo({20, 20});
        view_.controls = {{makeButton("first", {500, 20, 80, 30}), makeButton("second", {400, 20, 80, 30})}};
        view_.scene = {{FillRect{whole_, {ColorName::black, 0.45}}}};
        open();
    }

    void TearDown() override {
        pointer_.reset();
        keyboard_.reset();
        ViewWindowTest::TearDown();
    }

    void catchUp() { desktop_->adapters.catchUp(); }

    /// The event at the centre of a pixel of the view, counted from its top-left.
    static MouseEvent event(int x, int y, std::uint64_t flags = 0) {
        return {{x + 0.5, 400 - (y + 0.5)}, flags};
    }

    std::unique_ptr<test::Pointer> pointer_;
    std::unique_ptr<test::Keyboard> keyboard_;
};

TEST_P(ViewWindowInput, PressDragAndReleaseAreInViewCoordinates) {
    pointer_->moveTo(at(10, 20));
    catchUp();
    pointer_->press();
    pointer_->moveTo(at(300, 399));
    catchUp();
    pointer_->release();
    EXPECT_TRUE(waitUntil([&] { return !view_.up.empty(); }));
    EXPECT_EQ(view_.moved, std::vector{event(10, 20)});
    EXPECT_EQ(view_.down, std::vector{event(10, 20)});
    EXPECT_EQ(view_.dragged, std::vector{event(300, 399)});
    EXPECT_EQ(view_.up, std::vector{event(300, 399)});
}

TEST_P(ViewWindowInput, PressKeepsThePointerBeyondTheWindow) {
    pointer_->moveTo(at(10, 20));
    pointer_->press();
    pointer_->moveTo(at(-50, -30));
    catchUp();
    pointer_->release();
    EXPECT_TRUE(waitUntil([&] { return !view_.up.empty(); }));
    EXPECT_EQ(view_.dragged, std::vector{event(-50, -30)});
    EXPECT_EQ(view_.up, std::vector{event(-50, -30)});
}

TEST_P(ViewWindowInput, ShiftIsToldWithTheDrag) {
    pointer_->moveTo(at(10, 20));
    pointer_->press();
    keyboard_->press(test::key::shift);
    pointer_->moveTo(at(40, 40));
    catchUp();
    keyboard_->release(test::key::shift);
    pointer_->release();
    EXPECT_TRUE(waitUntil([&] { return !view_.up.empty(); }));
    EXPECT_EQ(view_.dragged, std::vector{event(40, 40, event_flag::shift)});
    EXPECT_EQ(view_.up, std::vector{event(40, 40)});
}

TEST_P(ViewWindowInput, RightButtonIsToldApart) {
    pointer_->moveTo(at(10, 20));
    pointer_->press(3);
    pointer_->release(3);
    EXPECT_TRUE(waitUntil([&] { return !view_.rightDown.empty(); }));
    EXPECT_EQ(view_.rightDown, std::vector{event(10, 20)});
    EXPECT_EQ(view_.pressCount(), 1U);
}

TEST_P(ViewWindowInput, OtherButtonsAndTheWheelAreNotToldAtAll) {
    pointer_->moveTo(at(10, 20));
    for (const std::uint8_t button : std::array<std::uint8_t, 3>{2, 4, 5}) {
        pointer_->press(button);
        pointer_->release(button);
    }
    pointer_->moveTo(at(11, 20));
    EXPECT_TRUE(waitUntil([&] { return !view_.moved.empty() && view_.moved.back() == event(11, 20); }));
    EXPECT_EQ(view_.pressCount(), 0U);
}

TEST_P(ViewWindowInput, LeavingIsAMoveToALocationOutside) {
    pointer_->moveTo(at(10, 20));
    catchUp();
    pointer_->moveTo(at(-5, 20));
    EXPECT_TRUE(waitUntil([&] { return view_.moved.size() == 2; }));
    EXPECT_EQ(view_.moved.back(), event(-5, 20));
}

TEST_P(ViewWindowInput, KeysHaveVirtualKeyCodes) {
    // Escape, Return, Enter of the keypad, A, Z, 1, the arrow to the left.
    for (const std::uint32_t keysym : {0xFF1B, 0xFF0D, 0xFF8D, 0x61, 0x7A, 0x31, 0xFF51}) {
        keyboard_->tap(keysym);
    }
    EXPECT_TRUE(waitUntil([&] { return view_.keys.size() == 7; }));
    std::vector<int> codes;
    for (const KeyEvent& key : view_.keys) {
        codes.push_back(key.keyCode);
    }
    EXPECT_EQ(codes, (std::vector<int>{53, 36, 76, 0, 6, 18, 123}));
}

TEST_P(ViewWindowInput, ModifiersAreToldWithOtherKeysAndNotByThemselves) {
    keyboard_->press(test::key::shift);
    keyboard_->press(test::key::control);
    keyboard_->tap(0x61);
    EXPECT_TRUE(waitUntil([&] { return !view_.keys.empty(); }));
    catchUp();
    EXPECT_EQ(view_.keys, (std::vector{KeyEvent{0, event_flag::shift | event_flag::control}}));
}

TEST_P(ViewWindowInput, PressOnAButtonUsesItAndDoesNotReachTheView) {
    pointer_->moveTo(at(540, 365));
    pointer_->press();
    pointer_->moveTo(at(545, 366));
    catchUp();
    EXPECT_TRUE(view_.activated.empty());
    pointer_->release();
    EXPECT_TRUE(waitUntil([&] { return !view_.activated.empty(); }));
    EXPECT_EQ(view_.activated, std::vector<std::string>{"first"});
    EXPECT_EQ(view_.pressCount(), 0U);
}

TEST_P(ViewWindowInput, ReleaseElsewhereDoesNotUseTheButton) {
    for (const test::PixelPoint release : {at(440, 365), at(300, 100)}) {
        pointer_->moveTo(at(540, 365));
        pointer_->press();
        pointer_->moveTo(release);
        catchUp();
        pointer_->release();
        catchUp();
    }
    pointer_->moveTo(at(20, 20));
    EXPECT_TRUE(waitUntil([&] { return !view_.moved.empty() && view_.moved.back() == event(20, 20); }));
    EXPECT_TRUE(view_.activated.empty());
    EXPECT_EQ(view_.pressCount(), 0U);
}

TEST_P(ViewWindowInput, PressOfTheViewEndsThereEvenOverAButton) {
    pointer_->moveTo(at(20, 20));
    pointer_->press();
    pointer_->moveTo(at(540, 365));
    catchUp();
    pointer_->release();
    EXPECT_TRUE(waitUntil([&] { return !view_.up.empty(); }));
    EXPECT_EQ(view_.up, std::vector{event(540, 365)});
    EXPECT_TRUE(view_.activated.empty());
}

TEST_P(ViewWindowInput, ButtonsThatAreOffOrHiddenAreNotUsed) {
    view_.controls.controls[0].isEnabled = false;
    view_.controls.controls[1].isHidden = true;
    for (const test::PixelPoint place : {at(540, 365), at(440, 365)}) {
        pointer_->moveTo(place);
        pointer_->press();
        pointer_->release();
    }
    EXPECT_TRUE(waitUntil([&] { return view_.up.size() == 2; }));
    EXPECT_TRUE(view_.activated.empty());
}

TEST_P(ViewWindowInput, ButtonShowsThePointerOverItAndThePress) {
    // Beside the title.
    const auto color = [this] { return pixel(505, 365); };
    desktop_->settle();
    const std::uint32_t plain = color();
    EXPECT_EQ(plain, 0x333333U);
    pointer_->moveTo(at(540, 365));
    EXPECT_TRUE(waitUntil([&] { return distance(color(), plain) > 10; }));
    desktop_->settle();
    const std::uint32_t hovered = color();
    pointer_->press();
    EXPECT_TRUE(waitUntil([&] { return color() != hovered && color() != plain; }));
    pointer_->moveTo(at(300, 100));
    EXPECT_TRUE(waitUntil([&] { return color() == plain; }));
    pointer_->release();
}

TEST_P(ViewWindowInput, ManyMovesInOneTurnAreOneMoveAndOneDrawing) {
    pointer_->moveTo(at(0, 50));
    desktop_->settle();
    view_.moved.clear();
    view_.reaction = [this] { window_->setNeedsDisplay(); };
    const int draws = view_.draws;
    for (int x = 1; x <= 500; ++x) {
        pointer_->moveTo(at(x, 50));
    }
    catchUp();
    EXPECT_TRUE(waitUntil([&] { return !view_.moved.empty() && view_.moved.back() == event(500, 50); }));
    desktop_->settle();
    EXPECT_LE(view_.moved.size(), 5U);
    EXPECT_LE(view_.draws - draws, 5);
    EXPECT_GE(view_.draws - draws, 1);
}

TEST_P(ViewWindowInput, NextPictureWaitsUntilTheServerHasTheLast) {
    desktop_->settle();
    const int draws = view_.draws;
    xcb_connection_t* blocker = desktop_->client.connection();
    xcb_grab_server(blocker);
    desktop_->client.sync();
    for (int turn = 1; turn <= 10; ++turn) {
        // Small enough to fit what the connection takes while nobody reads at the other end.
        view_.scene.primitives.resize(1);
        view_.scene.primitives.emplace_back(FillRect{{0, 0, 10.0 * turn, 10}, {ColorName::white, 1}});
        window_->setNeedsDisplay();
        desktop_->adapters.pump.processPending();
    }
    EXPECT_EQ(view_.draws - draws, 1);
    xcb_ungrab_server(blocker);
    desktop_->client.sync();
    EXPECT_TRUE(waitUntil([&] { return view_.draws - draws == 2; }));
    desktop_->settle();
    EXPECT_EQ(view_.draws - draws, 2);
    EXPECT_EQ(pixel(99, 395), 0xFFFFFFU);
}

TEST_P(ViewWindowInput, WindowMayCloseWithinAnyEvent) {
    const std::vector<std::function<void()>> causes{[this] { pointer_->moveTo(at(50, 50)); },
                                                    [this] {
                                                        pointer_->press();
                                                        pointer_->release();
                                                    },
                                                    [this] {
                                                        pointer_->press(3);
                                                        pointer_->release(3);
                                                    },
                                                    [this] { keyboard_->tap(0xFF1B); },
                                                    [this] {
                                                        pointer_->moveTo(at(540, 365));
                                                        pointer_->press();
                                                        pointer_->release();
                                                    }};
    for (std::size_t index = 0; index < causes.size(); ++index) {
        view_.reaction = [] {};
        window_.reset();
        pointer_->moveTo(at(20, 20));
        open();
        int events = 0;
        view_.reaction = [&] {
            ++events;
            // The last one is about the button alone.
            if (index + 1 < causes.size() || !view_.activated.empty()) {
                window_.reset();
            }
        };
        causes[index]();
        EXPECT_TRUE(waitUntil([&] { return window_ == nullptr; })) << index;
        const int eventsUntilThen = events;
        catchUp();
        EXPECT_EQ(events, eventsUntilThen) << index;
        EXPECT_EQ(native(), XCB_WINDOW_NONE) << index;
    }
}

INSTANTIATE_TEST_SUITE_P(Desktops, ViewWindowInput, ::testing::Values(Composition::none), compositionName);

} // namespace

} // namespace tarvex::contract
