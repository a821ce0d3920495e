#pragma once

#include "Platform/Linux/X11/XConnection.h"

namespace tarvex {

/// Has the end of the X session count as a proper end of the program. The toolkit ends the process by itself,
/// as a failure, when it finds its connection to the server broken; a session manager would then report a
/// crash. At most one object at a time.
class SessionEnd {
public:
    /// Make it before whatever must be wound up in any case, as static objects are, in reverse order.
    /// @param connection to the same server as the toolkit's; must outlive the object
    explicit SessionEnd(XConnection& connection);

    SessionEnd(const SessionEnd&) = delete;
    SessionEnd& operator=(const SessionEnd&) = delete;
    SessionEnd(SessionEnd&&) = delete;
    SessionEnd& operator=(SessionEnd&&) = delete;
    ~SessionEnd();
};

} // namespace tarvex
