#include "Tests/Support/X11/Monitors.h"

#include <xcb/randr.h>
#include <xcb/xcbext.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <stdexcept>
#include <sys/uio.h>

namespace tarvex::test {
namespace {

constexpr std::size_t edidSize = 128;
constexpr std::size_t lastDescriptor = 108;

std::string nameOfAtom(XClient& client, xcb_atom_t atom) {
    const Owned<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(client.connection(), xcb_get_atom_name(client.connection(), atom), nullptr));
    return reply ? std::string(xcb_get_atom_name_name(reply.get()),
                               static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get())))
                 : std::string{};
}

void requireSuccess(XClient& client, xcb_void_cookie_t cookie, const std::string& what) {
    const Owned<xcb_generic_error_t> error(xcb_request_check(client.connection(), cookie));
    if (error) {
        throw std::runtime_error(what + ": error " + std::to_string(error->error_code));
    }
}

// xcb's own function closes the connection when outputs follow the fixed part.
xcb_void_cookie_t sendSetMonitor(XClient& client, xcb_randr_monitor_info_t info, xcb_randr_output_t output) {
    xcb_randr_set_monitor_request_t header{};
    header.window = client.root();
    const std::size_t outputBytes = info.nOutput * sizeof(output);
    // xcb wants two parts of room before the first one.
    std::array<iovec, 5> parts{};
    parts[2] = {&header, sizeof(header)};
    parts[3] = {&info, sizeof(info)};
    parts[4] = {&output, outputBytes};
    constexpr xcb_protocol_request_t request{3, &xcb_randr_id, XCB_RANDR_SET_MONITOR, 1};
    const unsigned int sequence =
        xcb_send_request(client.connection(), XCB_REQUEST_CHECKED, parts.data() + 2, &request);
    return {sequence};
}

} // namespace

Monitors::Monitors(const std::string& displayName) : client_{displayName} {
    // Monitors exist for clients that ask for version 1.5.
    const Owned<xcb_randr_query_version_reply_t> version(xcb_randr_query_version_reply(
        client_.connection(), xcb_randr_query_version(client_.connection(), 1, 5), nullptr));
    const Owned<xcb_randr_get_screen_resources_current_reply_t> resources(
        xcb_randr_get_screen_resources_current_reply(
            client_.connection(),
            xcb_randr_get_screen_resources_current(client_.connection(), client_.root()), nullptr));
    if (!version || !resources || resources->num_outputs == 0) {
        throw std::runtime_error("the X server has no output");
    }
    output_ = *xcb_randr_get_screen_resources_current_outputs(resources.get());
}

void Monitors::set(const std::vector<MonitorLayout>& layouts) {
    const std::vector<std::string> before = names();
    for (const MonitorLayout& layout : layouts) {
        // The server refuses a name that is in use.
        if (std::ranges::find(before, layout.name) != before.end()) {
            remove(layout.name);
        }
        add(layout);
    }
    // The server's automatic monitor goes by itself when another takes its output.
    const std::vector<std::string> after = names();
    for (const std::string& name : after) {
        const bool isWanted =
            std::ranges::any_of(layouts, [&](const auto& layout) { return layout.name == name; });
        if (!isWanted && std::ranges::find(before, name) != before.end()) {
            remove(name);
        }
    }
}

void Monitors::remove(const std::string& name) {
    requireSuccess(client_,
                   xcb_randr_delete_monitor_checked(client_.connection(), client_.root(), client_.atom(name)),
                   "removing monitor " + name);
}

void Monitors::add(const MonitorLayout& layout) {
    xcb_randr_monitor_info_t info{};
    info.name = client_.atom(layout.name);
    info.primary = layout.isPrimary ? 1 : 0;
    info.nOutput = layout.hasOutput ? 1 : 0;
    info.x = static_cast<std::int16_t>(layout.geometry.x);
    info.y = static_cast<std::int16_t>(layout.geometry.y);
    info.width = static_cast<std::uint16_t>(layout.geometry.width);
    info.height = static_cast<std::uint16_t>(layout.geometry.height);
    info.width_in_millimeters = info.width / 4U;
    info.height_in_millimeters = info.height / 4U;
    requireSuccess(client_, sendSetMonitor(client_, info, output_), "adding monitor " + layout.name);
}

void Monitors::setIdentity(const MonitorIdentity& identity) {
    const std::vector<std::uint8_t> block = edidBlock(identity);
    requireSuccess(client_,
                   xcb_randr_change_output_property_checked(
                       client_.connection(), output_, client_.atom("EDID"), XCB_ATOM_INTEGER, 8,
                       XCB_PROP_MODE_REPLACE, static_cast<std::uint32_t>(block.size()), block.data()),
                   "setting the identification data");
}

std::vector<std::string> Monitors::names() {
    const Owned<xcb_randr_get_monitors_reply_t> reply(xcb_randr_get_monitors_reply(
        client_.connection(), xcb_randr_get_monitors(client_.connection(), client_.root(), 1), nullptr));
    if (!reply) {
        throw std::runtime_error("the X server lists no monitors");
    }
    std::vector<std::string> result;
    for (auto monitor = xcb_randr_get_monitors_monitors_iterator(reply.get()); monitor.rem > 0;
         xcb_randr_monitor_info_next(&monitor)) {
        result.push_back(nameOfAtom(client_, monitor.data->name));
    }
    return result;
}

std::vector<std::uint8_t> edidBlock(const MonitorIdentity& identity) {
    std::vector<std::uint8_t> block(edidSize);
    std::fill(block.begin() + 1, block.begin() + 7, std::uint8_t{0xFF});
    const auto put = [&](std::size_t index, std::uint32_t value) {
        block[index] = static_cast<std::uint8_t>(value & 0xFFU);
    };
    put(8, identity.vendor / 256U);
    put(9, identity.vendor);
    put(10, identity.product);
    put(11, identity.product / 256U);
    for (std::size_t byte = 0; byte < 4; ++byte) {
        put(12 + byte, identity.serial >> (8 * byte));
    }
    put(18, 1);
    put(19, 4);
    // A digital input, gamma 2.2, and the primaries of sRGB: toolkits complain of a monitor without colours.
    put(20, 0x80);
    put(23, 120);
    constexpr std::array<std::uint8_t, 10> colors{0xEE, 0x91, 0xA3, 0x54, 0x4C, 0x99, 0x26, 0x0F, 0x50, 0x54};
    std::copy(colors.begin(), colors.end(), block.begin() + 25);
    if (!identity.name.empty()) {
        // The descriptor of a product name: its tag, then text that a line feed ends and blanks fill up.
        block[lastDescriptor + 3] = 0xFC;
        std::string text = identity.name + "\n";
        text.resize(13, ' ');
        std::copy(text.begin(), text.end(), block.begin() + lastDescriptor + 5);
    }
    const std::uint32_t sum = std::accumulate(block.begin(), block.end(), 0U);
    put(edidSize - 1, 256U - sum % 256U);
    return block;
}

} // namespace tarvex::test
