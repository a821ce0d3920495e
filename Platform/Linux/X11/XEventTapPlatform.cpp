#include "Platform/Linux/X11/XEventTapPlatform.h"

#include "Platform/Linux/X11/XkbProtocol.h"

#include <xcb/xinput.h>

#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace tarvex {

namespace {

constexpr std::uint16_t inputMajor = 2;
constexpr std::uint16_t inputMinor = 2;

class XRunLoopSource final : public RunLoopSource {
public:
    explicit XRunLoopSource(XEventTap& tap) : tap_(&tap) {}

    XRunLoopSource(const XRunLoopSource&) = delete;
    XRunLoopSource& operator=(const XRunLoopSource&) = delete;
    XRunLoopSource(XRunLoopSource&&) = delete;
    XRunLoopSource& operator=(XRunLoopSource&&) = delete;

    ~XRunLoopSource() override { tap_->setOnRunLoop(false); }

    void setOnRunLoop(bool isOnRunLoop) { tap_->setOnRunLoop(isOnRunLoop); }

private:
    XEventTap* tap_;
};

} // namespace

SessionKind SessionKind::fromEnvironment() {
    const char* type = std::getenv("XDG_SESSION_TYPE");
    const char* socket = std::getenv("WAYLAND_DISPLAY");
    const bool isNamedWayland = type != nullptr && std::string_view(type) == "wayland";
    const bool hasSocket = socket != nullptr && *socket != '\0';
    return {isNamedWayland || hasSocket};
}

XEventTapPlatform::XEventTapPlatform(XConnection& connection, XEventPump& pump, XPointer& pointer,
                                     SessionKind session, MotionPace pace)
    : connection_(&connection), pump_(&pump), pointer_(&pointer), session_(session), pace_(pace) {}

bool XEventTapPlatform::preflightListenEventAccess() {
    return canListen();
}

bool XEventTapPlatform::requestListenEventAccess() {
    return canListen();
}

std::unique_ptr<EventTap> XEventTapPlatform::createTap(const EventTapRequest& request) {
    if (!canListen()) {
        return nullptr;
    }
    return std::make_unique<XEventTap>(*connection_, *pump_, *pointer_, pace_, request);
}

std::unique_ptr<RunLoopSource> XEventTapPlatform::createRunLoopSource(EventTap& tap) {
    auto* listener = dynamic_cast<XEventTap*>(&tap);
    return listener == nullptr ? nullptr : std::make_unique<XRunLoopSource>(*listener);
}

void XEventTapPlatform::addSource(RunLoopSource& source) {
    if (auto* listening = dynamic_cast<XRunLoopSource*>(&source)) {
        listening->setOnRunLoop(true);
    }
}

void XEventTapPlatform::removeSource(RunLoopSource& source) {
    if (auto* listening = dynamic_cast<XRunLoopSource*>(&source)) {
        listening->setOnRunLoop(false);
    }
}

void XEventTapPlatform::enableTap(EventTap& tap) {
    if (auto* listener = dynamic_cast<XEventTap*>(&tap)) {
        listener->enable();
    }
}

bool XEventTapPlatform::canListen() {
    if (session_.isWayland || connection_->isBroken()) {
        return false;
    }
    if (!serverShowsInput_) {
        serverShowsInput_ = askServer();
    }
    return *serverShowsInput_;
}

bool XEventTapPlatform::askServer() {
    if (connection_->extension(xcb_input_id) == nullptr || connection_->extension(xcb_xkb_id) == nullptr) {
        return false;
    }
    xcb_connection_t* const server = connection_->get();
    constexpr std::string_view guestExtension = "XWAYLAND";
    const auto inputCookie = xcb_input_xi_query_version(server, inputMajor, inputMinor);
    const auto keyboardCookie = xcb_xkb_use_extension(server, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
    const auto guestCookie =
        xcb_query_extension(server, static_cast<std::uint16_t>(guestExtension.size()), guestExtension.data());
    const auto input = connection_->take(xcb_input_xi_query_version_reply, inputCookie);
    const auto keyboard = connection_->take(xcb_xkb_use_extension_reply, keyboardCookie);
    const auto guest = connection_->take(xcb_query_extension_reply, guestCookie);

    const bool hasRawInput =
        input && (input->major_version > inputMajor ||
                  (input->major_version == inputMajor && input->minor_version >= inputMinor));
    const bool isGuest = guest && guest->present != 0;
    return hasRawInput && keyboard && keyboard->supported != 0 && !isGuest;
}

} // namespace tarvex
