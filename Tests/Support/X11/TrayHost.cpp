#include "Tests/Support/X11/TrayHost.h"

#include <stdexcept>
#include <string>

namespace tarvex::test {

TrayHost::TrayHost(const XServer& server) : server_{&server}, client_{server.displayName()} {
    start();
}

void TrayHost::start() {
    process_ = std::make_unique<ChildProcess>(
        Command{{"trayer", "--edge", "top", "--align", "left", "--widthtype", "request", "--heighttype",
                 "pixel", "--height", "24", "--SetDockType", "true", "--SetPartialStrut", "false"},
                server_->clientEnvironment("trayer"),
                std::nullopt});
    client_.waitUntil([this] { return hasSelection() || !process_->isRunning(); }, "the tray takes icons");
    if (!process_->isRunning()) {
        throw std::runtime_error("the tray did not start: " + process_->standardError());
    }
}

void TrayHost::end() {
    process_.reset();
    client_.waitUntil([this] { return !hasSelection(); }, "the tray is gone");
}

bool TrayHost::hasSelection() {
    const xcb_atom_t selection = client_.atom("_NET_SYSTEM_TRAY_S0");
    const Owned<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        client_.connection(), xcb_get_selection_owner(client_.connection(), selection), nullptr));
    return owner && owner->owner != XCB_NONE;
}

std::vector<PixelRect> TrayHost::icons() {
    std::vector<PixelRect> found;
    collectIcons(client_.root(), false, found);
    return found;
}

// Toolkits mark every window of theirs as one that may be embedded; those inside the tray's are.
void TrayHost::collectIcons(xcb_window_t window, bool isInTray, std::vector<PixelRect>& found) {
    if (isInTray && client_.hasProperty(window, "_XEMBED_INFO") && client_.isViewable(window)) {
        const auto geometry = client_.geometryInRoot(window);
        // A place of no width is one of an icon that the tray believes to be hidden.
        if (geometry && geometry->width == geometry->height) {
            found.push_back(*geometry);
        }
        return;
    }
    const bool isTray = isInTray || client_.text(window, "WM_CLASS").find("trayer") != std::string::npos;
    for (const xcb_window_t child : client_.children(window)) {
        collectIcons(child, isTray, found);
    }
}

} // namespace tarvex::test
