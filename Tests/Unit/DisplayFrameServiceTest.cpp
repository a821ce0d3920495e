#include "Core/Displays/DisplayFrameService.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace tarvex {

namespace {

class FixedScreens final : public ScreenPlatform {
public:
    explicit FixedScreens(std::vector<Screen> screens) : screens_(std::move(screens)) {}

    [[nodiscard]] std::vector<Screen> screens() override { return screens_; }

    [[nodiscard]] std::optional<Screen> mainScreen() override {
        return screens_.empty() ? std::nullopt : std::optional(screens_.front());
    }

    void set(std::vector<Screen> screens) { screens_ = std::move(screens); }

private:
    std::vector<Screen> screens_;
};

TEST(DisplayFrameServiceTest, TheVisibleFrameOfTheMatchingScreen) {
    FixedScreens screens({{1, {0, 0, 1920, 1080}, {0, 40, 1920, 1000}, "A"},
                          {2, {1920, -200, 1280, 1024}, {1920, -200, 1280, 1024}, "B"}});
    DisplayFrameService service(screens);
    EXPECT_EQ(service.getVisibleFrame(1), (Rect{0, 40, 1920, 1000}));
    EXPECT_EQ(service.getVisibleFrame(2), (Rect{1920, -200, 1280, 1024}));
}

TEST(DisplayFrameServiceTest, NoScreenForTheDisplay) {
    FixedScreens screens({{1, {0, 0, 10, 10}, {0, 0, 10, 10}, ""}});
    EXPECT_EQ(DisplayFrameService(screens).getVisibleFrame(7), std::nullopt);
}

TEST(DisplayFrameServiceTest, NoScreensAtAll) {
    FixedScreens screens({});
    EXPECT_EQ(DisplayFrameService(screens).getVisibleFrame(0), std::nullopt);
}

TEST(DisplayFrameServiceTest, AScreenWithoutADisplayNumberIsPassedOver) {
    FixedScreens screens(
        {{std::nullopt, {0, 0, 10, 10}, {0, 0, 10, 10}, ""}, {0, {5, 5, 5, 5}, {6, 6, 3, 3}, ""}});
    EXPECT_EQ(DisplayFrameService(screens).getVisibleFrame(0), (Rect{6, 6, 3, 3}));
}

TEST(DisplayFrameServiceTest, TheFirstMatchWins) {
    FixedScreens screens({{4, {0, 0, 10, 10}, {0, 0, 10, 9}, ""}, {4, {0, 0, 20, 20}, {0, 0, 20, 19}, ""}});
    EXPECT_EQ(DisplayFrameService(screens).getVisibleFrame(4), (Rect{0, 0, 10, 9}));
}

TEST(DisplayFrameServiceTest, EveryCallLooksAfresh) {
    FixedScreens screens({{1, {0, 0, 10, 10}, {0, 0, 10, 10}, ""}});
    DisplayFrameService service(screens);
    EXPECT_EQ(service.getVisibleFrame(1), (Rect{0, 0, 10, 10}));
    screens.set({{1, {0, 0, 10, 10}, {0, 2, 10, 8}, ""}});
    EXPECT_EQ(service.getVisibleFrame(1), (Rect{0, 2, 10, 8}));
    screens.set({});
    EXPECT_EQ(service.getVisibleFrame(1), std::nullopt);
}

} // namespace

} // namespace tarvex
