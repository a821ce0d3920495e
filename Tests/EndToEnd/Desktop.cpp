#include "Tests/EndToEnd/Desktop.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace tarvex::test {

Desktop::Desktop(const SessionKind& kind, const DesktopOptions& options)
    : server{options.width, options.height},
      client{server.displayName()},
      pointer{server.displayName()},
      keyboard{server.displayName()},
      monitors{server.displayName()},
      tarvex{server, TARVEX_PROGRAM} {
    if (!options.monitors.empty()) {
        monitors.set(options.monitors);
    }
    if (options.identity) {
        monitors.setIdentity(*options.identity);
    }
    if (options.settings) {
        tarvex.writeConfig(options.settings->json());
    }
    if (options.startsWindowManager) {
        windowManager = std::make_unique<WindowManager>(server, kind.windowManager);
    }
    if (kind.isComposited) {
        compositor = std::make_unique<Compositor>(server);
    }
    if (options.startsTarvex) {
        startTarvex();
    }
}

// It announces itself a moment before it observes events, so a key is tried until it answers.
void Desktop::startTarvex() {
    tarvex.start();
    const auto hasAnswered = [this] { return tarvex.countInLog("updateOverlayState") > 0; };
    bool isObserving = false;
    const auto tryKey = [&] {
        pointer.press();
        keyboard.press(key::alt);
        isObserving = client.waitFor(hasAnswered, Deadline(std::chrono::milliseconds(200)));
        keyboard.release(key::alt);
        pointer.release();
        return isObserving;
    };
    client.waitUntil(tryKey, "tarvex observes events");
}

PixelRect Desktop::screenArea() const {
    return {0, 0, client.screen().width_in_pixels, client.screen().height_in_pixels};
}

void Desktop::awaitLog(const std::string& text, int count) {
    client.waitUntil([&] { return tarvex.countInLog(text) >= count; },
                     "tarvex logs \"" + text + "\" for the " + std::to_string(count) + ". time");
}

void Desktop::settle() {
    const std::string matchLine = "updateOverlayState match";
    const std::string noMatchLine = "updateOverlayState noMatch";
    pointer.moveTo(idlePoint);
    // Events are handled in order, so the answers to these come after those to all earlier ones.
    pointer.press(primaryButton);
    const int matches = tarvex.countInLog(matchLine);
    keyboard.press(key::super);
    awaitLog(matchLine, matches + 1);
    const int noMatches = tarvex.countInLog(noMatchLine);
    keyboard.release(key::super);
    awaitLog(noMatchLine, noMatches + 1);
    pointer.release(primaryButton);
    if (windowManager) {
        windowManager->barrier();
        windowManager->barrier();
    }
}

void Desktop::expectFrame(const ManagedWindow& window, const PixelRect& expected) {
    const bool arrived = client.waitFor([&] { return window.visibleFrame() == expected; });
    EXPECT_TRUE(arrived) << "the window never came to " << describe(expected);
}

void Desktop::expectFrameUnchanged(const ManagedWindow& window, const PixelRect& expected) {
    settle();
    EXPECT_EQ(window.visibleFrame(), expected);
    // The server's own idea of the frame, which no property can get wrong.
    EXPECT_EQ(window.frameWindowGeometry(), grown(expected, window.invisibleExtents()));
}

void Desktop::awaitCentered(xcb_window_t window) {
    const ManagedWindow managed(client, window);
    const auto isCentered = [&] {
        const auto frame = managed.visibleFrame();
        std::vector<std::uint32_t> area = client.words(client.root(), "_NET_WORKAREA");
        if (area.size() < 4) {
            // A window manager need not say so while there are no panels.
            area = {0, 0, client.screen().width_in_pixels, client.screen().height_in_pixels};
        }
        if (!frame) {
            return false;
        }
        // Twice the distance between the two middles, which may be half a pixel.
        const auto isNear = [](int begin, int length, std::uint32_t areaBegin, std::uint32_t areaLength) {
            return std::abs(2 * begin + length - static_cast<int>(2 * areaBegin + areaLength)) <= 1;
        };
        return isNear(frame->x, frame->width, area[0], area[2]) &&
               isNear(frame->y, frame->height, area[1], area[3]);
    };
    client.waitUntil(isCentered, "the window is in the middle");
}

Screenshot Desktop::steadyScreen() {
    if (windowManager) {
        windowManager->barrier();
    }
    if (compositor) {
        compositor->barrier();
    }
    return Screenshot(client);
}

} // namespace tarvex::test
