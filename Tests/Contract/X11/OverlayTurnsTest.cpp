#include "Tests/Contract/X11/OverlayFixture.h"
#include "Tests/Support/X11/Monitors.h"

#include <cstddef>
#include <vector>

namespace tarvex::contract {

namespace {

/// What several calls come to, and what they cost.
class OverlayTurns : public OverlayTest {};

TEST_P(OverlayTurns, EqualSceneCostsNoRequest) {
    show(filled(whole_, accent));
    XOverlayAdapters& adapters = desktop_->adapters;
    EXPECT_EQ(adapters.requestsDuring([&] {
        window_->setScene(filled(whole_, accent));
        adapters.pump.processPending();
    }),
              0U);
}

TEST_P(OverlayTurns, HiddenWindowCostsNoRequest) {
    show(filled(whole_, accent));
    window_->orderOut();
    desktop_->settle();
    XOverlayAdapters& adapters = desktop_->adapters;
    EXPECT_EQ(adapters.requestsDuring([&] {
        window_->setScene(filled({0, 0, 10, 10}));
        window_->orderOut();
        adapters.pump.processPending();
    }),
              0U);
}

TEST_P(OverlayTurns, CallsOfOneTurnReachTheServerAtItsEnd) {
    window_ = makeWindow(frame_);
    desktop_->settle();
    XOverlayAdapters& adapters = desktop_->adapters;
    EXPECT_EQ(adapters.requestsDuring([&] {
        window_->orderFront();
        window_->setScene(filled(whole_));
        window_->setScene(filled({0, 0, 20, 20}));
        window_->orderOut();
        window_->orderFront();
    }),
              0U);
    desktop_->settle();
    EXPECT_EQ(pixel(10, 390), 0xFFFFFFU);
    EXPECT_EQ(pixel(300, 200), OverlayDesktop::backgroundColor);
}

TEST_P(OverlayTurns, WindowOfAnotherFrameTakesThePlaceOfAClosedOne) {
    show(filled(whole_));
    const auto natives = desktop_->nativeWindows();
    window_.reset();
    window_ = makeWindow({800, 300, 200, 200});
    show(filled({0, 0, 200, 200}));
    EXPECT_EQ(pixel(300, 200), OverlayDesktop::backgroundColor);
    EXPECT_EQ(desktop_->pixel({900, OverlayDesktop::height - 400}), 0xFFFFFFU);
    // The native window was handed on.
    auto now = desktop_->nativeWindows();
    EXPECT_EQ(now.size(), natives.size());
    EXPECT_TRUE(std::is_permutation(now.begin(), now.end(), natives.begin(), natives.end()));
}

TEST_P(OverlayTurns, LayoutThatChangesTakesTheShownWindowAlong) {
    test::Monitors monitors(desktop_->server.displayName());
    monitors.set({{"main", {0, 0, 1000, 1024}, true, true}});
    show(filled(whole_));
    ASSERT_EQ(pixel(10, 200), 0xFFFFFFU);
    ASSERT_EQ(pixel(700, 200), OverlayDesktop::backgroundColor);

    monitors.set({{"main", {200, 0, 1000, 1024}, true, true}, {"other", {0, 0, 200, 1024}}});
    desktop_->settle();
    EXPECT_EQ(pixel(10, 200), OverlayDesktop::backgroundColor);
    EXPECT_EQ(pixel(700, 200), 0xFFFFFFU);
    EXPECT_EQ(desktop_->client.geometryInRoot(shownNative()), (test::PixelRect{300, 200, 600, 400}));
    XOverlayAdapters& adapters = desktop_->adapters;
    EXPECT_EQ(adapters.requestsDuring([&] { adapters.pump.processPending(); }), 0U);
}

TEST_P(OverlayTurns, LayoutThatChangesIsNotAskedForWhileNothingIsShown) {
    show(filled(whole_));
    window_->orderOut();
    desktop_->settle();
    test::Monitors monitors(desktop_->server.displayName());
    monitors.set({{"main", {200, 0, 1000, 1024}, true, true}, {"other", {0, 0, 200, 1024}}});
    // The notices of it have arrived.
    desktop_->client.sync();
    XOverlayAdapters& adapters = desktop_->adapters;
    EXPECT_EQ(adapters.requestsDuring([&] { adapters.pump.processPending(); }), 0U);
    window_->orderFront();
    desktop_->settle();
    EXPECT_EQ(pixel(10, 200), OverlayDesktop::backgroundColor);
    EXPECT_EQ(pixel(700, 200), 0xFFFFFFU);
}

TEST_P(OverlayTurns, HandedOnWindowStaysHiddenUntilItIsShown) {
    show(filled(whole_));
    window_.reset();
    window_ = makeWindow(frame_);
    window_->setScene(filled(whole_));
    desktop_->settle();
    EXPECT_EQ(pixel(300, 200), OverlayDesktop::backgroundColor);
}

TEST_P(OverlayTurns, ManyWindowsMadeAndClosedLeaveNothing) {
    const std::size_t before = desktop_->nativeWindows().size();
    for (int round = 0; round < 100; ++round) {
        std::array<std::unique_ptr<Window>, 3> windows;
        for (auto& window : windows) {
            window = makeWindow(frame_);
            window->setScene(filled(whole_, accent));
            window->orderFront();
        }
        desktop_->adapters.pump.processPending();
    }
    desktop_->settle();
    EXPECT_EQ(desktop_->nativeWindows().size(), before);
    EXPECT_EQ(pixel(300, 200), OverlayDesktop::backgroundColor);
}

INSTANTIATE_TEST_SUITE_P(On, OverlayTurns,
                         ::testing::Values(Composition::none, Composition::picom, Composition::xfwm4),
                         compositionName);

} // namespace

} // namespace tarvex::contract
