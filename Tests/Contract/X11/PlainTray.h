#pragma once

#include "Tests/Support/X11/XClient.h"

#include <array>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace tarvex::contract {

/// A tray of one colour with room for one icon, whose windows can be seen through or not. It serves icons
/// while serve() is called.
class PlainTray {
public:
    static constexpr int iconSide = 24;

    /// @param color of the tray, as the server has it in a pixel
    PlainTray(const std::string& displayName, bool hasAlpha, std::uint32_t color) : client_(displayName) {
        makeWindow(hasAlpha, color);
        client_.setEventHandler([this](const xcb_generic_event_t& event) { handle(event); });
        xcb_set_selection_owner(client_.connection(), window_, client_.atom("_NET_SYSTEM_TRAY_S0"),
                                XCB_CURRENT_TIME);
        client_.sync();
    }

    void serve() { client_.handleEvents(); }

    /// Takes on another colour and puts the icon into another place.
    void change(std::uint32_t color) {
        xcb_change_window_attributes(client_.connection(), window_, XCB_CW_BACK_PIXEL, &color);
        xcb_clear_area(client_.connection(), 0, window_, 0, 0, 0, 0);
        const std::array<std::uint32_t, 2> place{0, 0};
        xcb_configure_window(client_.connection(), icon_, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
                             place.data());
        client_.sync();
    }

    /// Whether the icon was shown already when the tray took it in, which some trays take for one that is to
    /// be hidden.
    [[nodiscard]] bool wasShownBefore() const { return wasShownBefore_; }

    /// Whether the icon had told by then how large it must be at least.
    [[nodiscard]] bool hasToldSize() const { return hasToldSize_; }

    /// What the icon's window holds at a place, alpha first where there is any; none while it cannot be read.
    [[nodiscard]] std::optional<std::uint32_t> pixel(int x, int y) {
        if (icon_ == XCB_WINDOW_NONE) {
            return std::nullopt;
        }
        const test::Owned<xcb_get_image_reply_t> image(xcb_get_image_reply(
            client_.connection(),
            xcb_get_image(client_.connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, icon_,
                          static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 1, 1, ~0U),
            nullptr));
        if (!image || xcb_get_image_data_length(image.get()) < 4) {
            return std::nullopt;
        }
        const std::uint8_t* const bytes = xcb_get_image_data(image.get());
        const std::uint32_t pixel = std::uint32_t{bytes[0]} | std::uint32_t{bytes[1]} << 8U |
                                    std::uint32_t{bytes[2]} << 16U | std::uint32_t{bytes[3]} << 24U;
        // What stands in the unused byte says nothing.
        return image->depth == 32 ? pixel : pixel & 0xFFFFFF;
    }

private:
    [[nodiscard]] xcb_visualid_t transparentVisual() const {
        for (auto depths = xcb_screen_allowed_depths_iterator(&client_.screen()); depths.rem > 0;
             xcb_depth_next(&depths)) {
            if (depths.data->depth == 32 && xcb_depth_visuals_length(depths.data) > 0) {
                return xcb_depth_visuals(depths.data)->visual_id;
            }
        }
        throw std::runtime_error("the server has no visual with an alpha channel");
    }

    void makeWindow(bool hasAlpha, std::uint32_t color) {
        xcb_connection_t* const connection = client_.connection();
        const xcb_visualid_t visual = hasAlpha ? transparentVisual() : client_.screen().root_visual;
        const auto depth = static_cast<std::uint8_t>(hasAlpha ? 32 : client_.screen().root_depth);
        const xcb_colormap_t colormap = xcb_generate_id(connection);
        xcb_create_colormap(connection, XCB_COLORMAP_ALLOC_NONE, colormap, client_.root(), visual);
        const std::array<std::uint32_t, 4> values{color, 0, 1, colormap};
        window_ = xcb_generate_id(connection);
        xcb_create_window(connection, depth, window_, client_.root(), 100, 100, 2 * iconSide, 2 * iconSide, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
                          XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT |
                              XCB_CW_COLORMAP,
                          values.data());
        client_.setWords(window_, "_NET_SYSTEM_TRAY_VISUAL", "VISUALID", {visual});
        xcb_map_window(connection, window_);
    }

    void handle(const xcb_generic_event_t& event) {
        const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
        if ((event.response_type & 0x7F) != XCB_CLIENT_MESSAGE ||
            message.type != client_.atom("_NET_SYSTEM_TRAY_OPCODE") || message.data.data32[1] != 0) {
            return;
        }
        icon_ = message.data.data32[2];
        wasShownBefore_ = client_.isViewable(icon_);
        const std::vector<std::uint32_t> hints = client_.words(icon_, "WM_NORMAL_HINTS");
        hasToldSize_ = hints.size() > 6 && hints[5] > 0 && hints[5] == hints[6];
        const std::array<std::uint32_t, 2> size{iconSide, iconSide};
        xcb_reparent_window(client_.connection(), icon_, window_, iconSide / 2, iconSide / 2);
        xcb_configure_window(client_.connection(), icon_, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                             size.data());
        xcb_map_window(client_.connection(), icon_);
        client_.sync();
    }

    test::XClient client_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    xcb_window_t icon_ = XCB_WINDOW_NONE;
    bool wasShownBefore_ = false;
    bool hasToldSize_ = false;
};

} // namespace tarvex::contract
