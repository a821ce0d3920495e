#include "Platform/Linux/X11/KeyboardLoan.h"
#include "Tests/Contract/X11/WindowFindingFixture.h"

#include <array>
#include <cstdint>
#include <memory>

namespace tarvex::contract {

namespace {

constexpr std::uint32_t iconic = 3;

/// Programs with a window each, among them the borrower. The window manager is played by the test.
class KeyboardLoanX11 : public WindowFindingTest {
protected:
    void SetUp() override {
        announce(other_.root(), managersOwn_);
        announce(managersOwn_, managersOwn_);
        hold(first_);
        loan_ = std::make_unique<KeyboardLoan>(*adapters_.connection);
    }

    void announce(xcb_window_t window, xcb_window_t managersOwn) {
        other_.setWords(window, "_NET_SUPPORTING_WM_CHECK", "WINDOW", {managersOwn});
        other_.sync();
    }

    void hold(xcb_window_t window) {
        xcb_set_input_focus(other_.connection(), XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
        other_.sync();
    }

    /// Has the keyboard while it is lent, and loses it.
    void seize(xcb_window_t window) {
        hold(window);
        ASSERT_EQ(loan_->holder(), window);
        loan_->borrowFrom(window);
    }

    std::uint32_t holderAfterwards() {
        loan_->give(borrower_);
        loan_->giveBack(borrower_);
        return loan_->holder().value_or(0);
    }

    void setShaded(xcb_window_t window) {
        other_.setWords(window, "_NET_WM_STATE", "ATOM", {other_.atom("_NET_WM_STATE_SHADED")});
        other_.sync();
    }

    xcb_window_t addProgramsWindow(xcb_window_t parent, const PixelRect& frame) {
        const xcb_window_t window = Tree(program_.connection()).add(parent, frame);
        program_.sync();
        return window;
    }

    xcb_window_t addManagersWindow(xcb_window_t parent, const PixelRect& frame) {
        const xcb_window_t window = tree_.add(parent, frame, true);
        other_.sync();
        return window;
    }

    test::XClient program_{server_.displayName()};
    xcb_window_t managersOwn_ = addManagersWindow(other_.root(), {-100, -100, 1, 1});
    xcb_window_t first_ = addProgramsWindow(other_.root(), home);
    xcb_window_t second_ = addProgramsWindow(other_.root(), home);
    xcb_window_t borrower_ = addProgramsWindow(other_.root(), home);
    std::unique_ptr<KeyboardLoan> loan_;
};

TEST_F(KeyboardLoanX11, GoesBackToTheLatestHolder) {
    seize(second_);
    EXPECT_EQ(holderAfterwards(), second_);
}

TEST_F(KeyboardLoanX11, GoesBackToAProgramsWindowBeforeTheWindowManagersOwn) {
    seize(second_);
    seize(managersOwn_);
    EXPECT_EQ(holderAfterwards(), second_);
}

TEST_F(KeyboardLoanX11, GoesBackToTheWindowManagersOwnWhenNothingElseIsLeft) {
    seize(managersOwn_);
    xcb_destroy_window(program_.connection(), first_);
    program_.sync();
    EXPECT_EQ(holderAfterwards(), managersOwn_);
}

TEST_F(KeyboardLoanX11, GoesBackToTheWindowManagersOwnBeforeTheRootWindow) {
    hold(XCB_INPUT_FOCUS_POINTER_ROOT);
    loan_ = std::make_unique<KeyboardLoan>(*adapters_.connection);
    seize(managersOwn_);
    EXPECT_EQ(holderAfterwards(), managersOwn_);
}

TEST_F(KeyboardLoanX11, GoesBackToNothingThatHadIt) {
    hold(XCB_INPUT_FOCUS_POINTER_ROOT);
    loan_ = std::make_unique<KeyboardLoan>(*adapters_.connection);
    EXPECT_EQ(holderAfterwards(), std::uint32_t{XCB_INPUT_FOCUS_POINTER_ROOT});
}

TEST_F(KeyboardLoanX11, FrameOfAWindowIsAsGoodAsTheWindow) {
    const xcb_window_t frame = addManagersWindow(other_.root(), home);
    const xcb_window_t wrapped = addManagersWindow(other_.root(), home);
    const xcb_window_t wrapper = addManagersWindow(wrapped, {0, 20, 400, 280});
    addProgramsWindow(frame, {0, 20, 400, 280});
    addProgramsWindow(wrapper, {0, 0, 400, 280});
    for (const xcb_window_t holder : {frame, wrapped}) {
        seize(holder);
        EXPECT_EQ(holderAfterwards(), holder);
    }
}

TEST_F(KeyboardLoanX11, WindowOutOfSightIsPassedOverThoughItIsMapped) {
    const xcb_window_t part = addProgramsWindow(second_, {10, 10, 100, 100});
    for (const xcb_window_t holder : {second_, part}) {
        setManaged(second_);
        seize(holder);
        setManaged(second_, iconic);
        EXPECT_EQ(holderAfterwards(), first_);
        setManaged(second_);
        loan_->give(borrower_);
        EXPECT_EQ(holderAfterwards(), holder);
    }
}

TEST_F(KeyboardLoanX11, ShadedWindowIsInSight) {
    setManaged(second_, iconic);
    setShaded(second_);
    seize(second_);
    EXPECT_EQ(holderAfterwards(), second_);
}

TEST_F(KeyboardLoanX11, NumbersOfAWindowManagerThatDiedSayNothing) {
    test::XClient reused(server_.displayName());
    const xcb_window_t window = Tree(reused.connection()).add(other_.root(), home);
    reused.sync();
    // The announced window has gone with the one that announced it.
    announce(other_.root(), window + 100);
    seize(window);
    EXPECT_EQ(holderAfterwards(), window);
}

} // namespace

} // namespace tarvex::contract
