#include "Platform/Linux/X11/XTileAreas.h"

#include "Tests/Contract/X11/PumpedConnection.h"
#include "Tests/Support/X11/Monitors.h"
#include "Tests/Support/X11/XClient.h"
#include "Tests/Support/X11/XServer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace tarvex::contract {

namespace {

class XTileAreasTest : public ::testing::Test {
protected:
    void setWorkArea(const std::vector<std::uint32_t>& words) {
        client_.setWords(client_.root(), "_NET_WORKAREA", "CARDINAL", words);
        client_.sync();
    }

    [[nodiscard]] bool isTile(const PixelRect& frame, const XTileAreas::Steps& steps = {}) {
        return XTileAreas(*connection_).isTile(frame, steps);
    }

    test::XServer server_;
    test::XClient client_{server_.displayName()};
    std::unique_ptr<XConnection> connection_ = openOrThrow(server_.displayName());
};

TEST_F(XTileAreasTest, HalvesAndQuartersAreTiles) {
    for (const PixelRect& frame : {PixelRect{0, 0, 640, 1024},
                                   {640, 0, 640, 1024},
                                   {0, 0, 1280, 512},
                                   {0, 512, 1280, 512},
                                   {0, 0, 640, 512},
                                   {640, 0, 640, 512},
                                   {0, 512, 640, 512},
                                   {640, 512, 640, 512}}) {
        EXPECT_TRUE(isTile(frame)) << frame.x << ", " << frame.y;
    }
}

TEST_F(XTileAreasTest, OtherFramesAreNone) {
    for (const PixelRect& frame : {PixelRect{0, 0, 1280, 1024},
                                   {0, 0, 640, 900},
                                   {8, 8, 624, 1008},
                                   {320, 0, 640, 1024},
                                   {0, 0, 500, 512},
                                   {640, 100, 640, 512}}) {
        EXPECT_FALSE(isTile(frame)) << frame.x << ", " << frame.width;
    }
}

TEST_F(XTileAreasTest, TilesLeaveOutWhatPanelsKeepOrNot) {
    setWorkArea({0, 30, 1280, 994, 0, 0, 1280, 1000});
    EXPECT_TRUE(isTile({0, 30, 640, 994}));
    EXPECT_TRUE(isTile({640, 527, 640, 497}));
    EXPECT_TRUE(isTile({0, 0, 640, 1000})) << "another desktop's";
    EXPECT_TRUE(isTile({0, 0, 640, 1024})) << "a panel on another monitor";
    EXPECT_FALSE(isTile({0, 15, 640, 994}));
}

TEST_F(XTileAreasTest, EveryMonitorHasTiles) {
    test::Monitors(server_.displayName())
        .set({{"left", {0, 0, 800, 1024}, true, true}, {"right", {800, 224, 480, 800}, false, false}});
    setWorkArea({0, 0, 1280, 984});
    EXPECT_TRUE(isTile({400, 0, 400, 984}));
    EXPECT_TRUE(isTile({800, 224, 240, 760}));
    EXPECT_TRUE(isTile({1040, 624, 240, 400}));
    EXPECT_FALSE(isTile({0, 0, 640, 984}));
}

TEST_F(XTileAreasTest, LessThanAFurtherStepMayBeMissing) {
    EXPECT_FALSE(isTile({0, 0, 634, 1015}));
    EXPECT_TRUE(isTile({0, 0, 634, 1015}, {7, 13}));
    EXPECT_TRUE(isTile({3, 4, 634, 1015}, {7, 13}));
    EXPECT_FALSE(isTile({0, 0, 630, 1015}, {7, 13}));
    EXPECT_TRUE(isTile({0, 0, 639, 1024})) << "rounding";
}

TEST_F(XTileAreasTest, WorkAreaOfNonsenseAddsNothing) {
    setWorkArea({5000, 5000, 0xFFFFFFFF, 7, 1});
    EXPECT_TRUE(isTile({0, 0, 640, 1024}));
    EXPECT_FALSE(isTile({0, 0, 600, 1024}));
}

} // namespace

} // namespace tarvex::contract
