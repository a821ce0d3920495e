#include "Tests/Contract/OverlayWindowContract.h"
#include "Tests/Contract/X11/OverlayAdapters.h"
#include "Tests/Support/X11/Pointer.h"

namespace tarvex::contract {

namespace {

Pixel pixelOf(std::uint32_t color) {
    return {static_cast<std::uint8_t>(color >> 16U), static_cast<std::uint8_t>(color >> 8U),
            static_cast<std::uint8_t>(color)};
}

test::PixelPoint rootPointOf(Point point) {
    return {static_cast<int>(point.x), OverlayDesktop::height - 1 - static_cast<int>(point.y)};
}

class OverlayX11World final : public OverlayWindowWorld {
public:
    explicit OverlayX11World(Composition composition)
        : desktop_(composition), pointer_(desktop_.server.displayName()) {}

    WindowPlatform& windows() override { return desktop_.adapters.windows; }

    Pixel background() override { return pixelOf(OverlayDesktop::backgroundColor); }

    std::vector<Pixel> pixels(const Rect& area) override;
    void openApplicationWindow(const Rect& frame) override;
    bool clickPassesThrough(Point point) override;
    bool hasKeyboard() override;

    bool waitUntil(const std::function<bool()>& condition) override {
        return desktop_.adapters.waitUntil(condition);
    }

    void settle() override { desktop_.settle(); }

private:
    OverlayDesktop desktop_;
    test::Pointer pointer_;
    std::vector<std::unique_ptr<test::TestWindow>> applications_;
};

std::vector<Pixel> OverlayX11World::pixels(const Rect& area) {
    const test::Screenshot screen = desktop_.screenshot();
    const test::PixelPoint corner = rootPointOf({area.minX(), area.maxY() - 1});
    std::vector<Pixel> result;
    for (int y = corner.y; y < corner.y + static_cast<int>(area.height); ++y) {
        for (int x = corner.x; x < corner.x + static_cast<int>(area.width); ++x) {
            result.push_back(pixelOf(screen.pixel({x, y})));
        }
    }
    return result;
}

void OverlayX11World::openApplicationWindow(const Rect& frame) {
    test::TestWindowOptions options;
    const test::PixelPoint corner = rootPointOf({frame.minX(), frame.maxY() - 1});
    options.geometry = {corner.x, corner.y, static_cast<int>(frame.width), static_cast<int>(frame.height)};
    options.backgroundPixel = OverlayDesktop::backgroundColor;
    applications_.push_back(std::make_unique<test::TestWindow>(desktop_.server.displayName(), options));
}

bool OverlayX11World::clickPassesThrough(Point point) {
    const int before = desktop_.background.buttonEventCount();
    pointer_.moveTo(rootPointOf(point));
    pointer_.press();
    pointer_.release();
    return waitUntil([&] { return desktop_.background.buttonEventCount() == before + 2; });
}

bool OverlayX11World::hasKeyboard() {
    xcb_connection_t* connection = desktop_.client.connection();
    const test::Owned<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    return !reply || desktop_.adapters.owns(reply->focus);
}

INSTANTIATE_TEST_SUITE_P(
    X11, OverlayWindowContract,
    ::testing::Values(worldFactory<OverlayWindowWorld, OverlayX11World>("WithoutCompositor",
                                                                        Composition::none),
                      worldFactory<OverlayWindowWorld, OverlayX11World>("UnderPicom", Composition::picom)),
    worldName);

} // namespace

} // namespace tarvex::contract
