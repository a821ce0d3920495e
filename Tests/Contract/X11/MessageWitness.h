#pragma once

#include "Tests/Support/X11/XClient.h"

#include <string>
#include <string_view>
#include <vector>

namespace tarvex::contract {

/// Collects the messages of one type that reach the window manager.
class MessageWitness {
public:
    MessageWitness(const std::string& displayName, std::string_view type)
        : client_(displayName), type_(client_.atom(type)) {
        client_.selectEvents(client_.root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
        client_.setEventHandler([this](const xcb_generic_event_t& event) {
            const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
            if ((event.response_type & 0x7F) == XCB_CLIENT_MESSAGE && message.type == type_) {
                messages_.push_back(message);
            }
        });
        client_.sync();
    }

    /// Those up to now.
    [[nodiscard]] const std::vector<xcb_client_message_event_t>& messages() {
        client_.sync();
        client_.handleEvents();
        return messages_;
    }

private:
    test::XClient client_;
    xcb_atom_t type_;
    std::vector<xcb_client_message_event_t> messages_;
};

} // namespace tarvex::contract
