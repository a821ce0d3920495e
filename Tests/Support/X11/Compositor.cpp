#include "Tests/Support/X11/Compositor.h"

#include "Tests/Support/X11/XClient.h"

#include <stdexcept>

namespace tarvex::test {
namespace {

constexpr const char* configuration = R"(backend = "xrender";
vsync = false;
shadow = false;
fading = false;
use-damage = true;
)";

Command makeCommand(const XServer& server) {
    Command command;
    command.environment = server.clientEnvironment("picom");
    const auto file = server.scratch().write("picom/picom.conf", configuration);
    command.arguments = {"picom", "--config", file.string()};
    return command;
}

bool hasCompositingOwner(XClient& client) {
    const Owned<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        client.connection(), xcb_get_selection_owner(client.connection(), client.atom("_NET_WM_CM_S0")),
        nullptr));
    return owner && owner->owner != XCB_NONE;
}

} // namespace

Compositor::Compositor(const XServer& server) : process_{makeCommand(server)} {
    XClient client(server.displayName());
    client.waitUntil([&] { return hasCompositingOwner(client) || !process_.isRunning(); }, "picom composes");
    if (!hasCompositingOwner(client)) {
        throw std::runtime_error("picom did not start: " + process_.standardOutput() +
                                 process_.standardError());
    }
}

} // namespace tarvex::test
