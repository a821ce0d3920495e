#include "Tests/Contract/X11/KeyMonitorFixture.h"
#include "Tests/Contract/X11/PressCounter.h"
#include "Tests/Contract/X11/XkbClient.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <memory>

namespace tarvex::contract {

namespace {

constexpr std::uint16_t keyE = 14;

class KeyMonitorEvents : public KeyMonitorTest {
protected:
    /// The toolkit delivers the letter E, with a time of the test's choice, and does not call it repeated.
    void deliver(QEvent::Type type, quint64 time) {
        QKeyEvent event(type, Qt::Key_E, Qt::NoModifier, x_key::letterE, 'e', 0, QStringLiteral("e"));
        event.setTimestamp(time);
        QCoreApplication::sendEvent(window_.windowHandle(), &event);
    }

    bool isKeyboardFree() {
        desktop_.settle();
        return desktop_.isKeyboardFree();
    }
};

// The toolkit takes such a pair for two strokes when it has not read the press yet.
TEST_F(KeyMonitorEvents, PressAtTheInstantOfTheReleaseIsARepetition) {
    install();
    deliver(QEvent::KeyPress, 100);
    deliver(QEvent::KeyRelease, 200);
    deliver(QEvent::KeyPress, 200);
    EXPECT_EQ(keys_, Keys{keyE});
    deliver(QEvent::KeyRelease, 300);
    deliver(QEvent::KeyPress, 400);
    deliver(QEvent::KeyRelease, 500);
    EXPECT_EQ(keys_, (Keys{keyE, keyE}));
    EXPECT_TRUE(window_.presses.empty());
    EXPECT_TRUE(window_.releases.empty());
}

TEST_F(KeyMonitorEvents, ReleaseBetweenTwoRepetitionsDoesNotEndTheKey) {
    install();
    onKey_ = [this] { monitor_.reset(); };
    deliver(QEvent::KeyPress, 100);
    EXPECT_FALSE(isKeyboardFree());
    deliver(QEvent::KeyRelease, 200);
    deliver(QEvent::KeyPress, 200);
    EXPECT_FALSE(isKeyboardFree());
    deliver(QEvent::KeyRelease, 300);
    EXPECT_TRUE(isKeyboardFree());
    EXPECT_EQ(keys_, Keys{keyE});
    EXPECT_TRUE(window_.presses.empty());
    EXPECT_TRUE(window_.releases.empty());
}

TEST_F(KeyMonitorEvents, KeyThatWasDownBeforeReachesTheWindowNoMore) {
    XkbClient(desktop_.server.displayName()).setRepeat(30, 10);
    keyboard().pressKey(x_key::letterE);
    ASSERT_TRUE(desktop_.waitUntil([&] { return window_.presses.size() >= 3; }));
    install();
    const std::size_t before = window_.presses.size();
    const PressCounter presses;
    ASSERT_TRUE(desktop_.waitUntil([&] { return presses.count() >= 6; }));
    EXPECT_EQ(window_.presses.size(), before);
    EXPECT_TRUE(keys_.empty());
    keyboard().releaseKey(x_key::letterE);
    desktop_.settle();
}

TEST_F(KeyMonitorEvents, KeysOfAnOpenMenuAreTheMenus) {
    install();
    QMenu menu;
    menu.addAction(QStringLiteral("Entry"));
    menu.popup(window_.mapToGlobal(QPoint(10, 10)));
    ASSERT_TRUE(desktop_.waitUntil([&] { return QApplication::activePopupWidget() == &menu; }));
    desktop_.settle();
    type(keyE);
    EXPECT_TRUE(keys_.empty());
    menu.close();
    desktop_.settle();
    type(keyE);
    EXPECT_EQ(keys_, Keys{keyE});
}

TEST_F(KeyMonitorEvents, MonitorThatAnEarlierOneTookAwayIsNotAsked) {
    std::unique_ptr<KeyMonitor> second;
    int asked = 0;
    monitor_ = desktop_.monitors.addLocalKeyDownMonitor([&](const KeyEvent&) {
        second.reset();
        return true;
    });
    second = desktop_.monitors.addLocalKeyDownMonitor([&](const KeyEvent&) {
        ++asked;
        return false;
    });
    type(keyE);
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(window_.presses, Codes{x_key::letterE});
}

TEST_F(KeyMonitorEvents, PlatformThatAMonitorEndedAsksNoOther) {
    auto platform = std::make_unique<QtKeyMonitor>(*desktop_.adapters.connection, desktop_.adapters.pump);
    int asked = 0;
    monitor_ = platform->addLocalKeyDownMonitor([&](const KeyEvent&) {
        platform.reset();
        return true;
    });
    const auto second = platform->addLocalKeyDownMonitor([&](const KeyEvent&) {
        ++asked;
        return false;
    });
    type(keyE);
    EXPECT_EQ(asked, 0);
    EXPECT_EQ(window_.presses, Codes{x_key::letterE});
}

} // namespace

} // namespace tarvex::contract
