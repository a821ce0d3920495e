#pragma once

#include "Tests/Contract/X11/DisplayAdapters.h"
#include "Tests/Support/X11/Monitors.h"
#include "Tests/Support/X11/XClient.h"
#include "Tests/Support/X11/XServer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarvex {

/// Two monitors and no window manager: the test takes its place and writes the list of windows, right or
/// wrong.
class DisplayPanelList : public ::testing::Test {
protected:
    static constexpr test::PixelRect root{0, 0, 1500, 900};
    static constexpr test::PixelRect first{0, 0, 800, 600};
    static constexpr test::PixelRect second{800, 100, 640, 480};
    static constexpr Rect firstFrame{0, 0, 800, 600};
    static constexpr Rect secondFrame{800, 20, 640, 480};

    DisplayPanelList() {
        monitors_.set({{"First", first, true, true}, {"Second", second}});
        adapters_.catchUp();
    }

    void create(xcb_window_t window, const test::PixelRect& geometry) {
        const std::uint32_t overrideRedirect = 1;
        xcb_create_window(client_.connection(), XCB_COPY_FROM_PARENT, window, client_.root(),
                          static_cast<std::int16_t>(geometry.x), static_cast<std::int16_t>(geometry.y),
                          static_cast<std::uint16_t>(geometry.width),
                          static_cast<std::uint16_t>(geometry.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT, &overrideRedirect);
        xcb_map_window(client_.connection(), window);
    }

    xcb_window_t createOrdinary() {
        const xcb_window_t window = xcb_generate_id(client_.connection());
        create(window, {100, 100, 300, 200});
        return window;
    }

    // A dock along the top of the first monitor, without a strut.
    xcb_window_t createDock() {
        const xcb_window_t window = xcb_generate_id(client_.connection());
        create(window, {0, 0, 800, 40});
        setType(window, {"_NET_WM_WINDOW_TYPE_DOCK"});
        return window;
    }

    xcb_window_t createTopPanel() {
        const xcb_window_t window = createDock();
        setPartial(window, topStrut_);
        return window;
    }

    void setType(xcb_window_t window, const std::vector<std::string>& types) {
        std::vector<std::uint32_t> atoms;
        atoms.reserve(types.size());
        for (const std::string& type : types) {
            atoms.push_back(client_.atom(type));
        }
        client_.setWords(window, "_NET_WM_WINDOW_TYPE", "ATOM", atoms);
    }

    void setPartial(xcb_window_t window, const std::vector<std::uint32_t>& words) {
        client_.setWords(window, "_NET_WM_STRUT_PARTIAL", "CARDINAL", words);
    }

    void setState(xcb_window_t window, std::uint32_t state) {
        client_.setWords(window, "WM_STATE", "WM_STATE", {state, 0});
    }

    void list(const std::vector<xcb_window_t>& windows) {
        client_.setWords(client_.root(), "_NET_CLIENT_LIST", "WINDOW", windows);
    }

    std::vector<Rect> visible() {
        client_.sync();
        adapters_.catchUp();
        return adapters_.visibleFrames();
    }

    test::XServer server_{root.width, root.height};
    test::Monitors monitors_{server_.displayName()};
    test::XClient client_{server_.displayName()};
    XDisplayAdapters adapters_{server_.displayName()};
    const std::vector<Rect> allFrames_{firstFrame, secondFrame};
    const std::vector<Rect> belowTopPanel_{{0, 0, 800, 560}, secondFrame};
    const std::vector<std::uint32_t> topStrut_{0, 0, 40, 0, 0, 0, 0, 0, 0, 799, 0, 0};
};

} // namespace tarvex
