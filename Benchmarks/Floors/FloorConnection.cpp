#include "Benchmarks/Floors/FloorConnection.h"

#include <xcb/xinput.h>

#include <algorithm>
#include <cstdio>
#include <stdexcept>

namespace tarvex::benchmark {

namespace {

constexpr std::uint8_t eventTypeMask = 0x7F;

} // namespace

FloorConnection::FloorConnection() : connection_(xcb_connect(nullptr, nullptr)) {
    const xcb_query_extension_reply_t* input = xcb_get_extension_data(connection_, &xcb_input_id);
    if (xcb_connection_has_error(connection_) != 0 || input == nullptr || input->present == 0) {
        xcb_disconnect(connection_);
        throw std::runtime_error("no X server with XInput");
    }
    inputOpcode_ = input->major_opcode;
    screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    const XcbOwned<xcb_input_xi_query_version_reply_t> version(xcb_input_xi_query_version_reply(
        connection_, xcb_input_xi_query_version(connection_, 2, 2), nullptr));
    commandType_ = atom(commandAtom);
    doneProperty_ = atom(doneAtom);
    window_ = xcb_generate_id(connection_);
    xcb_create_window(connection_, 0, window_, screen_->root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    acknowledge();
    std::printf("%u\n", window_);
    std::fflush(stdout);
}

FloorConnection::~FloorConnection() {
    xcb_disconnect(connection_);
}

xcb_atom_t FloorConnection::atom(std::string_view name) const {
    const XcbOwned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection_, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    if (!reply) {
        throw std::runtime_error("cannot intern an atom");
    }
    return reply->atom;
}

void FloorConnection::watchRawInput(std::uint32_t eventMask) const {
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } const selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, eventMask};

    xcb_input_xi_select_events(connection_, screen_->root, 1, &selection.head);
}

void FloorConnection::run(const std::function<void(const FloorCommand&)>& handleCommand,
                          const std::function<void(std::uint16_t)>& handleRawInput) {
    while (const XcbOwned<xcb_generic_event_t> event{xcb_wait_for_event(connection_)}) {
        const auto type = static_cast<std::uint8_t>(event->response_type & eventTypeMask);
        if (type == XCB_GE_GENERIC) {
            const auto* generic = reinterpret_cast<const xcb_ge_generic_event_t*>(event.get());
            if (generic->extension == inputOpcode_) {
                handleRawInput(generic->event_type);
            }
        } else if (type == XCB_CLIENT_MESSAGE) {
            const auto* message = reinterpret_cast<const xcb_client_message_event_t*>(event.get());
            if (message->type == commandType_) {
                FloorCommand command{};
                std::copy_n(std::begin(message->data.data32), command.size(), command.begin());
                handleCommand(command);
                acknowledge();
            }
        }
    }
}

void FloorConnection::acknowledge() {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, doneProperty_, XCB_ATOM_CARDINAL, 32, 1,
                        &doneCount_);
    ++doneCount_;
    xcb_flush(connection_);
}

} // namespace tarvex::benchmark
