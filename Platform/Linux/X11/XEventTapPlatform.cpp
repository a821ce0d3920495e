#include "Platform/Linux/X11/XEventTapPlatform.h"

#include "Platform/Linux/X11/XkbProtocol.h"

#include <xcb/xinput.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace tarvex {

namespace {

constexpr std::uint16_t inputMajor = 2;
constexpr std::uint16_t inputMinor = 2;

// Of Xwayland, though not of its older releases; and what all of them call the devices that the compositor
// lends them.
constexpr std::string_view guestExtension = "XWAYLAND";
constexpr std::string_view guestDevicePrefix = "xwayland-";
/// A part of the names of the devices that every server has for the input that clients make up.
constexpr std::string_view syntheticDevice = " XTEST ";

/// Where a server gets its input from.
enum class InputSource {
    /// No device says so.
    unknown,
    /// A mouse or a keyboard of its own, if only that of the window that it draws its screen in.
    hardware,
    compositor,
};

InputSource sourceOf(const xcb_input_xi_query_device_reply_t& devices) {
    InputSource source = InputSource::unknown;
    for (auto each = xcb_input_xi_query_device_infos_iterator(&devices); each.rem > 0;
         xcb_input_xi_device_info_next(&each)) {
        const std::string_view name(
            xcb_input_xi_device_info_name(each.data),
            static_cast<std::size_t>(xcb_input_xi_device_info_name_length(each.data)));
        if (name.starts_with(guestDevicePrefix)) {
            return InputSource::compositor;
        }
        const bool isDevice = each.data->type == XCB_INPUT_DEVICE_TYPE_SLAVE_POINTER ||
                              each.data->type == XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD;
        if (isDevice && each.data->enabled != 0 && name.find(syntheticDevice) == std::string_view::npos) {
            source = InputSource::hardware;
        }
    }
    return source;
}

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

// No server disables one.
void XEventTapPlatform::enableTap(EventTap& /*tap*/) {}

bool XEventTapPlatform::canListen() {
    if (connection_->isBroken()) {
        return false;
    }
    serverShowsInput_ = serverShowsInput_ || askServer();
    return serverShowsInput_;
}

bool XEventTapPlatform::askServer() const {
    if (connection_->extension(xcb_input_id) == nullptr || connection_->extension(xcb_xkb_id) == nullptr) {
        return false;
    }
    xcb_connection_t* const server = connection_->get();
    const auto inputCookie = xcb_input_xi_query_version(server, inputMajor, inputMinor);
    const auto keyboardCookie = xcb_xkb_use_extension(server, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION);
    const auto guestCookie =
        xcb_query_extension(server, static_cast<std::uint16_t>(guestExtension.size()), guestExtension.data());
    const auto devicesCookie = xcb_input_xi_query_device(server, XCB_INPUT_DEVICE_ALL);
    const auto input = connection_->take(xcb_input_xi_query_version_reply, inputCookie);
    const auto keyboard = connection_->take(xcb_xkb_use_extension_reply, keyboardCookie);
    const auto guest = connection_->take(xcb_query_extension_reply, guestCookie);
    const auto devices = connection_->take(xcb_input_xi_query_device_reply, devicesCookie);

    const bool hasRawInput =
        input && (input->major_version > inputMajor ||
                  (input->major_version == inputMajor && input->minor_version >= inputMinor));
    if (!hasRawInput || !keyboard || keyboard->supported == 0 || (guest && guest->present != 0)) {
        return false;
    }
    const InputSource source = devices ? sourceOf(*devices) : InputSource::unknown;
    return source == InputSource::hardware || (source == InputSource::unknown && !session_.isWayland);
}

} // namespace tarvex
