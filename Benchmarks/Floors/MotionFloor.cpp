// The least that any program must do to follow the pointer during a drag: it takes the raw motion events that
// have arrived and asks once where the pointer is.
// A command of one wakes it, a command of zero lets it sleep.

#include "Benchmarks/Floors/FloorConnection.h"

#include <xcb/xinput.h>

#include <cstdio>
#include <exception>

int main() {
    using namespace tarvex::benchmark;
    try {
        FloorConnection connection;
        connection.run(
            [&](const FloorCommand& command) {
                connection.watchRawInput(command[0] != 0 ? XCB_INPUT_XI_EVENT_MASK_RAW_MOTION : 0);
            },
            [&](std::uint16_t eventType) {
                if (eventType == XCB_INPUT_RAW_MOTION) {
                    const XcbOwned<xcb_query_pointer_reply_t> position(xcb_query_pointer_reply(
                        connection.get(), xcb_query_pointer(connection.get(), connection.screen().root),
                        nullptr));
                }
            });
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
