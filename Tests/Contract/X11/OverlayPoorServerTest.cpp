#include "Platform/Linux/X11/MonitorTracker.h"
#include "Platform/Linux/X11/XWindowPlatform.h"
#include "Tests/Support/RecordingLog.h"
#include "Tests/Support/Simulated/SimulatedMainLoop.h"
#include "Tests/Support/X11/ChildProcess.h"
#include "Tests/Support/X11/XClient.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace tarvex::contract {

namespace {

/// A private X server that lacks something, and the overlay adapter on it.
class PoorServer {
public:
    explicit PoorServer(const std::vector<std::string>& options)
        : process_(makeCommand(options)),
          client(readDisplayName()),
          connection(XConnection::open(readDisplayName())),
          pump(*connection),
          monitors(*connection, pump),
          windows(
              *connection, pump, mainLoop, monitors, [] { return 0x00FF00U; }, &log) {}

    /// The pixel value at a point of the screen once all that was asked for is done.
    std::uint32_t pixel(test::PixelPoint point) {
        pump.processPending();
        static_cast<void>(
            connection->take(xcb_get_input_focus_reply, xcb_get_input_focus(connection->get())));
        const test::Owned<xcb_get_image_reply_t> image(xcb_get_image_reply(
            client.connection(),
            xcb_get_image(client.connection(), XCB_IMAGE_FORMAT_Z_PIXMAP, client.root(),
                          static_cast<std::int16_t>(point.x), static_cast<std::int16_t>(point.y), 1, 1, ~0U),
            nullptr));
        if (!image) {
            throw std::runtime_error("cannot read the screen");
        }
        std::uint32_t result = 0;
        const std::size_t size = image->depth == 24 ? 3 : image->depth / 8U;
        std::memcpy(&result, xcb_get_image_data(image.get()), size);
        return result;
    }

private:
    static test::Command makeCommand(const std::vector<std::string>& options) {
        test::Command command;
        command.arguments = {"Xvfb", "-displayfd", "1", "-nolisten", "tcp", "-noreset"};
        command.arguments.insert(command.arguments.end(), options.begin(), options.end());
        return command;
    }

    std::string readDisplayName() {
        const auto isWhole = [this] { return process_.standardOutput().ends_with('\n'); };
        if (!process_.waitForOutput(isWhole)) {
            throw std::runtime_error("the X server did not start: " + process_.standardError());
        }
        const std::string& output = process_.standardOutput();
        return ":" + output.substr(0, output.size() - 1);
    }

    test::ChildProcess process_;

public:
    test::XClient client;
    RecordingLog log;
    std::unique_ptr<XConnection> connection;
    XEventPump pump;
    SimulatedMainLoop mainLoop;
    MonitorTracker monitors;
    XWindowPlatform windows;
};

// One selected zone, whose top-left corner is at (10, 370); a band along its edge is all that shows of it.
void expectShapedOverlay(PoorServer& server, std::uint32_t green) {
    WindowAttributes attributes;
    attributes.contentRect = {10, 10, 200, 100};
    attributes.ignoresMouseEvents = true;
    const auto window = server.windows.makeWindow(attributes);
    window->setScene({{FillRect{{0, 0, 200, 100}, {ColorName::accent, 0.5}}}});
    window->orderFront();
    EXPECT_EQ(server.pixel({10, 370}), green);
    EXPECT_EQ(server.pixel({19, 420}), green);
    EXPECT_EQ(server.pixel({20, 420}), 0U);
    window->orderOut();
    EXPECT_EQ(server.pixel({10, 370}), 0U);
    EXPECT_TRUE(server.log.systemLines().empty());
}

TEST(OverlayPoorServer, WithoutAlphaShapesItsWindows) {
    PoorServer server({"-screen", "0", "640x480x24", "-extension", "RENDER", "-extension", "Composite"});
    expectShapedOverlay(server, 0x00FF00);
}

TEST(OverlayPoorServer, OfSixteenBitsShowsTheSameColors) {
    PoorServer server({"-screen", "0", "640x480x16", "-extension", "RENDER", "-extension", "Composite"});
    expectShapedOverlay(server, 0x07E0);
}

TEST(OverlayPoorServer, OfAPaletteUsesItsTrueColorVisual) {
    PoorServer server({"-screen", "0", "640x480x8"});
    // Three bits each of red and green, two of blue.
    expectShapedOverlay(server, 0x38);
}

} // namespace

} // namespace tarvex::contract
