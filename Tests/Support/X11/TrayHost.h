#pragma once

#include "Tests/Support/X11/ChildProcess.h"
#include "Tests/Support/X11/XClient.h"
#include "Tests/Support/X11/XServer.h"

#include <memory>
#include <vector>

namespace tarvex::test {

/// A tray that embeds icons (trayer), along the top edge of a private X server's screen. It takes icons when
/// the constructor returns; destroying it ends it. Throws std::runtime_error when it does not start.
class TrayHost {
public:
    explicit TrayHost(const XServer& server);

    /// Ends it as a crash does.
    void end();

    /// Starts it again after end() and waits until it takes icons.
    void start();

    /// Where the icons in it are that it has given their room, in root pixels.
    [[nodiscard]] std::vector<PixelRect> icons();

private:
    [[nodiscard]] bool hasSelection();
    void collectIcons(xcb_window_t window, bool isInTray, std::vector<PixelRect>& found);

    const XServer* server_;
    XClient client_;
    std::unique_ptr<ChildProcess> process_;
};

} // namespace tarvex::test
