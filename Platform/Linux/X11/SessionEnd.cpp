#include "Platform/Linux/X11/SessionEnd.h"

#include <cstdio>
#include <cstdlib>

namespace tarvex {

namespace {

/// All that the handler at the exit can reach. Null while the program winds up by itself.
XConnection* watched = nullptr;

bool hasServerGone(XConnection& connection) {
    // A broken connection shows only in reading. What is read is of no interest any more.
    while (const XcbOwned<xcb_generic_event_t> event{xcb_poll_for_event(connection.get())}) {
    }
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
