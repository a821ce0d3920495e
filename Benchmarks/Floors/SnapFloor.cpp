// The least that any program must do to put a window somewhere when a button is released: it waits for the
// raw release and sends the one request, worked out beforehand.
// A command arms it for one release: the window, then x, y, width and height as _NET_MOVERESIZE_WINDOW takes
// them. A command of zeros lets it sleep.

#include "Benchmarks/Floors/FloorConnection.h"

#include <xcb/xinput.h>

#include <cstdio>
#include <exception>

namespace tarvex::benchmark {

namespace {

constexpr std::uint32_t northWest = 1;
constexpr std::uint32_t allFour = 0xF00;
constexpr std::uint32_t fromPager = 0x2000;

class SnapFloor {
public:
    SnapFloor() : moveResize_(connection_.atom("_NET_MOVERESIZE_WINDOW")) {}

    void run() {
        connection_.run([this](const FloorCommand& command) { arm(command); },
                        [this](std::uint16_t eventType) { handle(eventType); });
    }

private:
    void arm(const FloorCommand& command) {
        message_.response_type = XCB_CLIENT_MESSAGE;
        message_.format = 32;
        message_.window = command[0];
        message_.type = moveResize_;
        message_.data.data32[0] = northWest | allFour | fromPager;
        for (std::size_t index = 1; index < command.size(); ++index) {
            message_.data.data32[index] = command[index];
        }
        connection_.watchRawInput(message_.window != XCB_NONE ? XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE
                                                              : 0);
    }

    void handle(std::uint16_t eventType) {
        if (eventType != XCB_INPUT_RAW_BUTTON_RELEASE || message_.window == XCB_NONE) {
            return;
        }
        xcb_send_event(connection_.get(), 0, connection_.screen().root,
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char*>(&message_));
        xcb_flush(connection_.get());
        message_.window = XCB_NONE;
    }

    FloorConnection connection_;
    xcb_atom_t moveResize_;
    xcb_client_message_event_t message_{};
};

} // namespace

} // namespace tarvex::benchmark

int main() {
    try {
        tarvex::benchmark::SnapFloor().run();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
