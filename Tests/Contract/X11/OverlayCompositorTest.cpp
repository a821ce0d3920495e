#include "Tests/Contract/X11/OverlayFixture.h"

#include <atomic>
#include <future>

namespace tarvex::contract {

namespace {

TEST(OverlayCompositorStart, OverlaysMadeBeforeAreDrawnByXfwm4) {
    // It never draws anew the unmanaged windows that were there before it.
    const test::XServer server;
    test::XClient client(server.displayName());
    XOverlayAdapters adapters(server.displayName());
    WindowAttributes attributes;
    attributes.contentRect = {100, 100, 200, 100};
    const auto window = adapters.windows.makeWindow(attributes);
    adapters.catchUp();
    const auto xfwm4 = startComposingXfwm4(server, client);
    const auto isWhite = [&](int x) { return test::Screenshot(client).pixel({x, 900}) == 0xFFFFFF; };
    window->setScene({{FillRect{{0, 0, 100, 100}, {ColorName::white, 1}}}});
    window->orderFront();
    EXPECT_TRUE(adapters.waitUntil([&] { return isWhite(150) && !isWhite(250); }));
    window->setScene({{FillRect{{100, 0, 100, 100}, {ColorName::white, 1}}}});
    EXPECT_TRUE(adapters.waitUntil([&] { return !isWhite(150) && isWhite(250); }));
    window->orderOut();
    EXPECT_TRUE(adapters.waitUntil([&] { return !isWhite(150) && !isWhite(250); }));
}

class OverlayCompositorChange : public OverlayTest {};

TEST(OverlayCompositorStart, DesktopShinesThroughAllTheWhile) {
    OverlayDesktop desktop(Composition::none);
    WindowAttributes attributes;
    attributes.contentRect = {100, 100, 600, 400};
    const auto window = desktop.adapters.windows.makeWindow(attributes);
    window->setScene({{FillRect{{0, 0, 50, 400}, accent}}});
    window->orderFront();
    desktop.settle();
    // A compositor takes its time between announcing itself and taking the windows over. Meanwhile the
    // adapter and the eyes on the screen are another thread's.
    std::atomic<bool> isStarted = false;
    auto watched = std::async(std::launch::async, [&] {
        const std::uint32_t selected = blend(accentColor, 0.5, OverlayDesktop::backgroundColor);
        int obscured = 0;
        const bool isBlended = desktop.adapters.waitUntil([&] {
            obscured += desktop.pixel({500, 700}) == OverlayDesktop::backgroundColor ? 0 : 1;
            return isStarted && distance(desktop.pixel({125, 700}), selected) <= 2;
        });
        return std::pair(isBlended, obscured);
    });
    const test::Compositor compositor(desktop.server);
    isStarted = true;
    const auto [isBlended, obscured] = watched.get();
    EXPECT_TRUE(isBlended);
    EXPECT_EQ(obscured, 0);
}

TEST_P(OverlayCompositorChange, PictureSuitsWhoeverComposesTheScreen) {
    const std::uint32_t selected = blend(accentColor, 0.5, OverlayDesktop::backgroundColor);
    const auto isBlended = [&] { return distance(pixel(300, 200), selected) <= 2; };
    const auto isShaped = [&] {
        return pixel(0, 200) == accentColor && pixel(9, 200) == accentColor &&
               pixel(10, 200) == OverlayDesktop::backgroundColor;
    };
    const auto isSuitable = [&](bool isRunning) { return isRunning ? isBlended() : isShaped(); };
    show(filled(whole_, accent));
    EXPECT_TRUE(isSuitable(isComposited()));
    for (const bool isRunning : {!isComposited(), isComposited()}) {
        if (isRunning) {
            desktop_->startCompositor();
        } else {
            desktop_->stopCompositor();
        }
        EXPECT_TRUE(desktop_->adapters.waitUntil([&] { return isSuitable(isRunning); }));
        desktop_->settle();
        EXPECT_TRUE(isSuitable(isRunning));
    }
}

TEST_P(OverlayCompositorChange, ChangeWhileHiddenShowsNothingAndCountsTheNextTime) {
    show(filled(whole_, accent));
    window_->orderOut();
    desktop_->settle();
    if (isComposited()) {
        desktop_->stopCompositor();
    } else {
        desktop_->startCompositor();
    }
    desktop_->settle();
    EXPECT_EQ(pixel(5, 200), OverlayDesktop::backgroundColor);
    window_->orderFront();
    desktop_->settle();
    const std::uint32_t expected =
        isComposited() ? accentColor : blend(accentColor, 0.5, OverlayDesktop::backgroundColor);
    EXPECT_LE(distance(pixel(5, 200), expected), 2);
}

INSTANTIATE_TEST_SUITE_P(From, OverlayCompositorChange,
                         ::testing::Values(Composition::none, Composition::picom), compositionName);

} // namespace

} // namespace tarvex::contract
