#include "App/Shell/AboutWindowController.h"
#include "Tests/Support/Simulated/SimulatedShell.h"
#include "Tests/Support/Simulated/SimulatedViewWindows.h"

#include <gtest/gtest.h>

namespace tarvex {

namespace {

class AboutViewControllerTest : public ::testing::Test {
protected:
    std::vector<Control> controls(const std::string& version) {
        AboutViewController controller([&] { return version; }, textMeasurer_);
        return controller.form({420, 200}).controls;
    }

    SimulatedTextMeasurer textMeasurer_;
    SimulatedBundle bundle_;
};

TEST_F(AboutViewControllerTest, SaysWhatItIs) {
    const auto labels = controls("1.2.0");
    ASSERT_EQ(labels.size(), 3U);
    EXPECT_EQ(labels[0].text, "Tarvex");
    EXPECT_EQ(labels[1].text, "Version 1.2.0");
    EXPECT_EQ(labels[2].text, "A fast grid-based window tiling helper for macOS.");
    EXPECT_EQ(labels[0].font, (Font{22, 700, false}));
    EXPECT_EQ(labels[1].font, (Font{13, 400, false}));
    EXPECT_EQ(labels[2].font, (Font{13, 400, false}));
    EXPECT_EQ(labels[1].textColor, TextColor::secondaryLabel);
    EXPECT_EQ(labels[2].textColor, TextColor::label);
    for (const Control& label : labels) {
        EXPECT_EQ(label.kind, ControlKind::label);
        EXPECT_EQ(label.alignment, TextAlignment::center);
    }
}

TEST_F(AboutViewControllerTest, LabelsStandBelowEachOther) {
    const auto labels = controls("1");
    // Lines are one and a quarter of their font high here: 27.5 and twice 16.25 points.
    EXPECT_EQ(labels[0].frame, (Rect{20, 200 - 32 - 27.5, 380, 27.5}));
    EXPECT_EQ(labels[1].frame, (Rect{20, 140.5 - 8 - 16.25, 380, 16.25}));
    EXPECT_EQ(labels[2].frame, (Rect{24, 116.25 - 16 - 16.25, 372, 16.25}));
}

TEST_F(AboutViewControllerTest, ProviderIsAskedOnce) {
    int asked = 0;
    AboutViewController controller(
        [&] {
            ++asked;
            return std::string("1");
        },
        textMeasurer_);
    static_cast<void>(controller.form({420, 200}));
    static_cast<void>(controller.form({420, 200}));
    EXPECT_EQ(asked, 1);
}

TEST_F(AboutViewControllerTest, NoVersionIsZero) {
    EXPECT_EQ(controls("").at(1).text, "Version 0.0.0");
}

TEST_F(AboutViewControllerTest, StatedVersionWins) {
    bundle_.stated = "2.1";
    bundle_.packed = "1.4.2\n";
    EXPECT_EQ(AboutViewController::defaultVersionProvider(bundle_), "2.1");
    bundle_.stated = "";
    EXPECT_EQ(AboutViewController::defaultVersionProvider(bundle_), "1.4.2");
    bundle_.stated.reset();
    EXPECT_EQ(AboutViewController::defaultVersionProvider(bundle_), "1.4.2");
}

TEST_F(AboutViewControllerTest, BlankOrMissingVersionFileIsNone) {
    EXPECT_EQ(AboutViewController::defaultVersionProvider(bundle_), "0.0.0");
    bundle_.packed = "";
    EXPECT_EQ(AboutViewController::defaultVersionProvider(bundle_), "0.0.0");
    bundle_.packed = " \t\r\n ";
    EXPECT_EQ(AboutViewController::defaultVersionProvider(bundle_), "0.0.0");
    bundle_.packed = "\n  1.0 beta \n";
    EXPECT_EQ(AboutViewController::defaultVersionProvider(bundle_), "1.0 beta");
}

TEST_F(AboutViewControllerTest, WindowFloatsAndIsMadeHidden) {
    Journal journal;
    SimulatedFormWindows windows(journal);
    const AboutWindowController controller(
        std::make_unique<AboutViewController>([] { return std::string("1"); }, textMeasurer_), windows);
    const SimulatedFormWindow& window = windows.titled("About Tarvex");
    EXPECT_EQ(window.attributes.styleMask, 3U);
    EXPECT_EQ(window.attributes.contentSize, (Size{420, 200}));
    EXPECT_EQ(window.attributes.level, 3);
    EXPECT_FALSE(window.attributes.isReleasedWhenClosed);
    EXPECT_FALSE(window.isVisible);
}

} // namespace

} // namespace tarvex
