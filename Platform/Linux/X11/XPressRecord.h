#pragma once

#include "Platform/Linux/X11/PixelPlace.h"
#include "Platform/Linux/X11/XConnection.h"

#include <xcb/record.h>

#include <deque>
#include <memory>
#include <optional>
#include <string>

namespace tarvex {

/// Where the pointer was when its buttons were pressed. Raw events do not say, and by the time that one of
/// them is read the pointer may have gone on. The server keeps a record of presses for this program (RECORD
/// extension): their places, and nothing else that users do. Nobody is woken for what is put down there.
class XPressRecord {
public:
    /// Not yet begun.
    /// @param displayName as XConnection::open() takes it
    explicit XPressRecord(std::string displayName = {});

    /// Begins the record if it has not begun, over a connection of its own, and waits for the server. Where
    /// the server keeps none, or has several screens, of which the record would not say which, it stays
    /// empty. All presses are to be asked for or passed over from then on: what nobody reads piles up.
    void begin();

    /// Ends the record and forgets all of it.
    void end();

    /// The pixel of the root window where a button was pressed at the time that the server gave the press.
    /// That is told no later than whatever answers a request made after the press was heard of. To be asked
    /// in the order of the presses, and once of each; of two at one time the first comes first. None for a
    /// press that is older than the last few.
    [[nodiscard]] std::optional<PixelPlace> placeOfPress(xcb_timestamp_t time);

    /// In place of asking, for a press that nobody will ask for. Does not wait.
    void passOver(xcb_timestamp_t time) { static_cast<void>(placeOfPress(time)); }

private:
    struct Press {
        xcb_timestamp_t time;
        PixelPlace place;
    };

    [[nodiscard]] bool enable();
    void read();
    void keep(const xcb_record_enable_context_reply_t& reply);

    std::string displayName_;
    std::unique_ptr<XConnection> connection_;
    /// The number of the request that all replies answer.
    unsigned sequence_ = 0;
    std::deque<Press> presses_;
};

} // namespace tarvex
