#include "Platform/Linux/X11/SessionEnd.h"

#include <cstdio>
#include <cstdlib>

namespace tarvex {

namespace {

/// All that the handler at the exit can reach. Null while the program winds up by itself.
XConnection* watched = nullptr;

bool hasServerGone(XConnection& connection) {
    // A server that ends takes leave of its clients one by one, and this connection may be the last. It
    // answers none of them any more, though; one that has dropped the toolkit alone still answers.
    const XcbOwned<xcb_get_input_focus_reply_t> answer(
        xcb_get_input_focus_reply(connection.get(), xcb_get_input_focus(connection.get()), nullptr));
    return connection.isBroken();
}

void finishAtExit() {
    if (watched != nullptr && hasServerGone(*watched)) {
        std::fflush(nullptr);
        std::_Exit(EXIT_SUCCESS);
    }
}

} // namespace

SessionEnd::SessionEnd(XConnection& connection) {
    watched = &connection;
    // Should it not be possible, the exit code is all that is lost.
    static_cast<void>(std::atexit(&finishAtExit));
}

SessionEnd::~SessionEnd() {
    watched = nullptr;
}

} // namespace tarvex
