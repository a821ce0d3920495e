#include "Tests/EndToEnd/ShellFixture.h"
#include "Tests/Support/X11/TrayHost.h"

#include <algorithm>
#include <string>

namespace tarvex::test {
namespace {

/// What comes up while the editor is open.
class ZoneEditorLevel : public ShellTest {
protected:
    static xcb_window_t findTopLevel(Desktop& desktop, const std::function<bool(xcb_window_t)>& isMeant) {
        for (const xcb_window_t child : desktop.client.children(desktop.client.root())) {
            if (desktop.client.isViewable(child) && isMeant(child)) {
                return child;
            }
        }
        return XCB_NONE;
    }

    /// The only window of a menu's size that no window manager cares for.
    static xcb_window_t findMenu(Desktop& desktop) {
        return findTopLevel(desktop, [&](xcb_window_t window) {
            const auto attributes = desktop.client.attributes(window);
            const auto geometry = desktop.client.geometryInRoot(window);
            return attributes && attributes->override_redirect != 0 && geometry && geometry->width > 60 &&
                   geometry->height > 60 && geometry->width < 500;
        });
    }

    static xcb_window_t findEditor(Desktop& desktop) {
        return findTopLevel(desktop, [&](xcb_window_t window) {
            return desktop.client.text(window, "_NET_WM_NAME") == "Tarvex Zones Editor";
        });
    }
};

INSTANTIATE_TEST_SUITE_P(Sessions, ZoneEditorLevel, plainSessions(), sessionName);

TEST_P(ZoneEditorLevel, StatusMenuOpensAboveIt) {
    DesktopOptions options;
    options.settings = Settings{};
    options.startsTarvex = false;
    Desktop& desktop = start(options);
    TrayHost tray(desktop.server);
    open(desktop);
    desktop.client.waitUntil([&] { return tray.icons().size() == 1; }, "the icon is in the tray");
    click(desktop, tray.icons().front().center());
    desktop.client.waitUntil([&] { return findMenu(desktop) != XCB_NONE; }, "the menu is open");
    const auto place = desktop.client.geometryInRoot(findMenu(desktop));
    ASSERT_TRUE(place.has_value());
    // The entry that the key marks is seen to be marked.
    const Screenshot before = desktop.steadyScreen();
    desktop.keyboard.tap(key::down);
    const auto isMarked = [&] {
        return Screenshot(desktop.client).countDifferences(before, *place) > place->width;
    };
    EXPECT_TRUE(desktop.client.waitFor(isMarked));
    const auto children = desktop.client.children(desktop.client.root());
    EXPECT_GT(std::find(children.begin(), children.end(), findMenu(desktop)),
              std::find(children.begin(), children.end(), findEditor(desktop)));
    desktop.keyboard.tap(key::escape);
    desktop.client.waitUntil([&] { return findMenu(desktop) == XCB_NONE; }, "the menu is closed");
    EXPECT_TRUE(isDarkened(desktop));
    desktop.keyboard.tap(key::escape);
    awaitClosed(desktop);
}

} // namespace
} // namespace tarvex::test
