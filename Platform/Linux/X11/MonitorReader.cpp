#include "Platform/Linux/X11/MonitorReader.h"

#include <xcb/randr.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace tarvex {

namespace {

// Where the connector's kind is not told as a property, the drivers' names for panel connectors tell it.
constexpr std::array<std::string_view, 4> panelNames{"eDP", "LVDS", "DSI", "Embedded"};

struct OutputRequests {
    xcb_randr_get_output_info_cookie_t info;
    xcb_randr_get_output_property_cookie_t edid;
    xcb_randr_get_output_property_cookie_t connectorType;
};

struct Output {
    std::string name;
    std::optional<Edid> edid;
    bool isPanel = false;
};

struct MonitorRequests {
    Monitor monitor;
    bool isPrimary = false;
    xcb_get_atom_name_cookie_t name{};
    std::vector<OutputRequests> outputs;
};

xcb_randr_get_output_property_cookie_t requestProperty(XConnection& connection, xcb_randr_output_t output,
                                                       std::string_view name) {
    return xcb_randr_get_output_property(connection.get(), output, connection.atom(name),
                                         XCB_GET_PROPERTY_TYPE_ANY, 0, edidBlockSize / 4, 0, 0);
}

OutputRequests requestOutput(XConnection& connection, xcb_randr_output_t output) {
    return {xcb_randr_get_output_info(connection.get(), output, XCB_CURRENT_TIME),
            requestProperty(connection, output, "EDID"),
            requestProperty(connection, output, "ConnectorType")};
}

std::optional<Edid> takeEdid(XConnection& connection, xcb_randr_get_output_property_cookie_t cookie) {
    const auto reply = connection.take(xcb_randr_get_output_property_reply, cookie);
    if (!reply || reply->format != 8) {
        return std::nullopt;
    }
    return parseEdid({xcb_randr_get_output_property_data(reply.get()), reply->num_items});
}

bool takeIsPanel(XConnection& connection, xcb_randr_get_output_property_cookie_t cookie) {
    const auto reply = connection.take(xcb_randr_get_output_property_reply, cookie);
    if (!reply || reply->format != 32 || reply->num_items == 0) {
        return false;
    }
    xcb_atom_t connectorType = XCB_ATOM_NONE;
    std::memcpy(&connectorType, xcb_randr_get_output_property_data(reply.get()), sizeof connectorType);
    return connectorType != XCB_ATOM_NONE && connectorType == connection.atom("Panel");
}

Output takeOutput(XConnection& connection, const OutputRequests& requests) {
    Output output;
    if (const auto info = connection.take(xcb_randr_get_output_info_reply, requests.info)) {
        const auto* name = reinterpret_cast<const char*>(xcb_randr_get_output_info_name(info.get()));
        output.name.assign(name, info->name_len);
    }
    output.edid = takeEdid(connection, requests.edid);
    output.isPanel = takeIsPanel(connection, requests.connectorType) || isPanelConnectorName(output.name);
    return output;
}

MonitorRequests requestMonitor(XConnection& connection, const xcb_randr_monitor_info_t& info) {
    MonitorRequests requests;
    requests.monitor.number = info.name;
    requests.monitor.area = {info.x, info.y, info.width, info.height};
    requests.isPrimary = info.primary != 0;
    requests.name = xcb_get_atom_name(connection.get(), info.name);
    const std::span outputs(xcb_randr_monitor_info_outputs(&info), info.nOutput);
    for (const xcb_randr_output_t output : outputs) {
        requests.outputs.push_back(requestOutput(connection, output));
    }
    return requests;
}

Monitor takeMonitor(XConnection& connection, MonitorRequests requests) {
    Monitor monitor = std::move(requests.monitor);
    if (const auto reply = connection.take(xcb_get_atom_name_reply, requests.name)) {
        monitor.name.assign(xcb_get_atom_name_name(reply.get()), reply->name_len);
    }
    bool hasEdid = false;
    for (const OutputRequests& outputRequests : requests.outputs) {
        Output output = takeOutput(connection, outputRequests);
        monitor.isPanel = monitor.isPanel || output.isPanel;
        if (monitor.outputName.empty()) {
            monitor.outputName = std::move(output.name);
        }
        if (!hasEdid && output.edid) {
            monitor.edid = std::move(*output.edid);
            hasEdid = true;
        }
    }
    return monitor;
}

std::vector<MonitorRequests> requestMonitors(XConnection& connection,
                                             const xcb_randr_get_monitors_reply_t& reply) {
    std::vector<MonitorRequests> monitors;
    for (auto iterator = xcb_randr_get_monitors_monitors_iterator(&reply); iterator.rem > 0;
         xcb_randr_monitor_info_next(&iterator)) {
        monitors.push_back(requestMonitor(connection, *iterator.data));
    }
    std::stable_partition(monitors.begin(), monitors.end(),
                          [](const MonitorRequests& requests) { return requests.isPrimary; });
    return monitors;
}

void addUnlessHidden(std::vector<Monitor>& monitors, Monitor monitor) {
    const bool isMirror = std::any_of(monitors.begin(), monitors.end(),
                                      [&](const Monitor& other) { return other.area == monitor.area; });
    if (!isMirror && !monitor.area.isEmpty()) {
        monitors.push_back(std::move(monitor));
    }
}

Monitor wholeRootMonitor(XConnection& connection, const PixelRect& root) {
    Monitor monitor;
    monitor.name = "Screen";
    monitor.number = connection.atom(monitor.name);
    monitor.area = root;
    return monitor;
}

} // namespace

bool isPanelConnectorName(std::string_view name) {
    return std::any_of(panelNames.begin(), panelNames.end(),
                       [&](std::string_view prefix) { return name.starts_with(prefix); });
}

bool serverListsMonitors(XConnection& connection) {
    if (connection.extension(xcb_randr_id) == nullptr) {
        return false;
    }
    const auto version =
        connection.take(xcb_randr_query_version_reply, xcb_randr_query_version(connection.get(), 1, 5));
    return version && std::pair(version->major_version, version->minor_version) >= std::pair(1U, 5U);
}

MonitorList readMonitors(XConnection& connection, bool serverListsMonitors) {
    const auto geometryCookie = xcb_get_geometry(connection.get(), connection.root());
    std::vector<MonitorRequests> requests;
    if (serverListsMonitors) {
        const auto cookie = xcb_randr_get_monitors(connection.get(), connection.root(), 1);
        if (const auto reply = connection.take(xcb_randr_get_monitors_reply, cookie)) {
            requests = requestMonitors(connection, *reply);
        }
    }
    MonitorList list;
    if (const auto geometry = connection.take(xcb_get_geometry_reply, geometryCookie)) {
        list.root = {0, 0, geometry->width, geometry->height};
        if (!serverListsMonitors) {
            list.monitors.push_back(wholeRootMonitor(connection, list.root));
        }
    }
    for (MonitorRequests& request : requests) {
        addUnlessHidden(list.monitors, takeMonitor(connection, std::move(request)));
    }
    return list;
}

} // namespace tarvex
