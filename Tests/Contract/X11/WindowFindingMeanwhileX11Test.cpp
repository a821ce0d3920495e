#include "Tests/Contract/X11/WindowFindingFixture.h"
#include "Tests/Support/X11/RequestGate.h"

#include <cstdint>
#include <memory>

namespace tarvex::contract {

namespace {

/// A part of a window closes while the window is being looked for.
class WindowFindingMeanwhileX11 : public WindowFindingTest {
protected:
    /// Closes it before the request of that kind with that number, counted from 0, reaches the server.
    void closeBefore(std::uint8_t opcode, int number, xcb_window_t window) {
        gate_.onRequest(opcode, [this, number, window, count = std::make_shared<int>(0)] {
            if ((*count)++ == number) {
                xcb_destroy_window(other_.connection(), window);
                other_.sync();
            }
        });
    }

    [[nodiscard]] bool exists(xcb_window_t window) { return other_.exists(window); }

    test::RequestGate gate_{server_};
    XInputAdapters watched_{gate_.displayName()};
};

TEST_F(WindowFindingMeanwhileX11, PartThatClosesOnTheWayDownDoesNotHideItsWindow) {
    const xcb_window_t window = tree_.add(other_.root(), home);
    setManaged(window);
    // Asked of the root, of the window, and then of its part.
    for (const int question : {1, 2}) {
        const xcb_window_t part = tree_.add(window, {10, 10, 300, 200});
        other_.sync();
        closeBefore(XCB_TRANSLATE_COORDINATES, question, part);
        const AccessibilityElementRef found = watched_.windowAt({home.x + 50, home.y + 50});
        EXPECT_FALSE(exists(part));
        ASSERT_NE(found, nullptr) << "question " << question;
        EXPECT_EQ(watched_.frameOf(found), home);
    }
}

TEST_F(WindowFindingMeanwhileX11, WindowThatClosesUnderThePointerUncoversTheOneBelow) {
    setManaged(tree_.add(other_.root(), home));
    const xcb_window_t above = tree_.add(other_.root(), {300, 200, 400, 300});
    setManaged(above);
    closeBefore(XCB_TRANSLATE_COORDINATES, 1, above);
    const AccessibilityElementRef found = watched_.windowAt({350, 250});
    EXPECT_FALSE(exists(above));
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(watched_.frameOf(found), home);
}

TEST_F(WindowFindingMeanwhileX11, PartThatClosesOnceItWasFoundStillLeadsToItsWindow) {
    const xcb_window_t window = tree_.add(other_.root(), home);
    setManaged(window);
    const xcb_window_t part = tree_.add(window, {10, 10, 300, 200});
    tree_.add(part, {10, 10, 200, 100});
    other_.sync();
    closeBefore(XCB_QUERY_TREE, 0, part);
    const AccessibilityElementRef found = watched_.windowAt({home.x + 50, home.y + 50});
    EXPECT_FALSE(exists(part));
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(watched_.frameOf(found), home);
}

TEST_F(WindowFindingMeanwhileX11, WindowsThatKeepClosingAreAnErrorInTheEnd) {
    xcb_window_t next = tree_.add(other_.root(), home);
    other_.sync();
    int questions = 0;
    gate_.onRequest(XCB_TRANSLATE_COORDINATES, [&] {
        // Each second question is about a window that the first one found.
        if (++questions % 2 == 0) {
            xcb_destroy_window(other_.connection(), next);
            next = tree_.add(other_.root(), home);
            other_.sync();
        }
    });
    const auto found = watched_.accessibility.copyElementAtPosition(400.5F, 300.5F);
    EXPECT_EQ(found.error, XCB_WINDOW);
    EXPECT_EQ(found.element, nullptr);
    EXPECT_LT(questions, 20);
    gate_.onRequest(XCB_TRANSLATE_COORDINATES, nullptr);
    EXPECT_NE(watched_.accessibility.copyElementAtPosition(400.5F, 300.5F).element, nullptr);
}

} // namespace

} // namespace tarvex::contract
