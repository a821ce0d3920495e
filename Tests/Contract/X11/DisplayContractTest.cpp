#include "Tests/Contract/DisplayContract.h"

#include "Tests/Contract/X11/DisplayAdapters.h"
#include "Tests/Support/X11/Monitors.h"
#include "Tests/Support/X11/WindowManager.h"
#include "Tests/Support/X11/XServer.h"

namespace tarvex::contract {

namespace {

constexpr test::PixelRect root{0, 0, 1800, 1200};

// The primary monitor stands clear of the root's corner, so that no origin is right by accident.
constexpr test::PixelPoint primaryOrigin{120, 70};

const test::MonitorIdentity firstIdentity{0x10AC, 0xA0B1, 305419896, "Studio 27"};

std::string monitorName(std::size_t index) {
    return "Virtual-" + std::to_string(index);
}

/// A private X server with a window manager, virtual monitors and docks.
class DisplayX11World final : public DisplayWorld {
public:
    explicit DisplayX11World(test::WindowManagerKind kind);

    DisplayPlatform& displays() override { return adapters_.displays; }

    ScreenPlatform& screens() override { return adapters_.screens; }

    void arrange(const std::vector<Rect>& bounds) override;
    DisplayIdentity identity(std::size_t index) override;
    void addTopPanel(std::size_t index, double height) override;
    void addLeftPanel(std::size_t index, double width) override;

    void removePanels() override { panels_.clear(); }

    bool waitUntil(const std::function<bool()>& condition) override { return adapters_.waitUntil(condition); }

    void settle() override;

private:
    void addPanel(std::size_t index, PanelEdge edge, double depth);

    test::XServer server_;
    test::Monitors monitors_;
    test::WindowManager windowManager_;
    XDisplayAdapters adapters_;
    std::vector<test::PixelRect> areas_;
    std::vector<std::unique_ptr<test::TestWindow>> panels_;
};

DisplayX11World::DisplayX11World(test::WindowManagerKind kind)
    : server_(root.width, root.height),
      monitors_(server_.displayName()),
      windowManager_(server_, kind),
      adapters_(server_.displayName()) {
    monitors_.setIdentity(firstIdentity);
}

void DisplayX11World::arrange(const std::vector<Rect>& bounds) {
    areas_.clear();
    std::vector<test::MonitorLayout> layouts;
    for (const Rect& rect : bounds) {
        test::PixelRect area = test::roundedEdges(rect);
        area.x += primaryOrigin.x;
        area.y += primaryOrigin.y;
        const bool isFirst = areas_.empty();
        layouts.push_back({monitorName(areas_.size()), area, isFirst, isFirst});
        areas_.push_back(area);
    }
    monitors_.set(layouts);
}

DisplayIdentity DisplayX11World::identity(std::size_t index) {
    if (index == 0) {
        return {firstIdentity.vendor, firstIdentity.product, firstIdentity.serial, false, firstIdentity.name};
    }
    return {0, 0, 0, false, monitorName(index)};
}

void DisplayX11World::addTopPanel(std::size_t index, double height) {
    addPanel(index, PanelEdge::top, height);
}

void DisplayX11World::addLeftPanel(std::size_t index, double width) {
    addPanel(index, PanelEdge::left, width);
}

void DisplayX11World::settle() {
    windowManager_.barrier();
    adapters_.catchUp();
}

void DisplayX11World::addPanel(std::size_t index, PanelEdge edge, double depth) {
    panels_.push_back(std::make_unique<test::TestWindow>(
        server_.displayName(), dockOptions(root, areas_.at(index), edge, static_cast<int>(depth))));
}

} // namespace

INSTANTIATE_TEST_SUITE_P(
    X11, DisplayContract,
    ::testing::Values(worldFactory<DisplayWorld, DisplayX11World>("openbox",
                                                                  test::WindowManagerKind::openbox),
                      worldFactory<DisplayWorld, DisplayX11World>("xfwm4", test::WindowManagerKind::xfwm4)),
    worldName);

} // namespace tarvex::contract
