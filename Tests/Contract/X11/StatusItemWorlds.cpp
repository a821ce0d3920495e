#include "Tests/Contract/X11/StatusItemWorlds.h"

#include <QAction>
#include <QApplication>
#include <QWidget>
#include <gtest/gtest.h>

#include <algorithm>

namespace tarvex::contract {

namespace {

constexpr test::PixelPoint elsewhere{900, 700};

// A text as it looks on the screen: the mark makes the next letter the entry's key, two of them are one.
std::string withoutMarks(const QString& text, QChar mark) {
    QString visible;
    for (qsizetype index = 0; index < text.size(); ++index) {
        if (text[index] == mark && ++index == text.size()) {
            break;
        }
        visible += text[index];
    }
    return visible.toStdString();
}

std::string visibleText(const QString& text) {
    return withoutMarks(text, QLatin1Char('&'));
}

std::string visibleLabel(const QVariantMap& properties) {
    return withoutMarks(properties.value("label").toString(), QLatin1Char('_'));
}

std::vector<ShownItem> read(const notifier::MenuLayout& layout) {
    std::vector<ShownItem> items;
    for (const notifier::MenuLayout& child : layout.children) {
        items.push_back({visibleLabel(child.properties), child.properties.value("enabled", true).toBool(),
                         child.properties.value("type") == "separator", read(child)});
        EXPECT_EQ(child.properties.value("children-display") == "submenu", !child.children.isEmpty());
    }
    return items;
}

int idOf(const notifier::MenuLayout& layout, const std::vector<std::string>& titles, std::size_t depth = 0) {
    for (const notifier::MenuLayout& child : layout.children) {
        if (visibleLabel(child.properties) == titles[depth]) {
            return depth + 1 == titles.size() ? child.id : idOf(child, titles, depth + 1);
        }
    }
    ADD_FAILURE() << "no entry " << titles[depth];
    return -1;
}

} // namespace

TrayDesktop::TrayDesktop(const std::string& busAddress)
    : bar_(std::make_unique<QtStatusBar>(*connection_, pump_, busAddress)) {}

void TrayDesktop::settle() {
    for (int round = 0; round < 10; ++round) {
        windowManager.barrier();
        application_->settle();
    }
}

QMenu* TrayDesktop::openPopup() {
    return qobject_cast<QMenu*>(QApplication::activePopupWidget());
}

void TrayDesktop::click(test::PixelPoint point, std::uint8_t button) {
    pointer.glideTo(point);
    settle();
    pointer.press(button);
    pointer.release(button);
}

void TrayDesktop::dismissPopups() {
    click(elsewhere);
    EXPECT_TRUE(waitUntil([] { return openPopup() == nullptr; }));
}

std::vector<ShownItem> TrayDesktop::read(const QMenu& menu) {
    std::vector<ShownItem> items;
    for (const QAction* action : menu.actions()) {
        items.push_back({visibleText(action->text()), action->isEnabled(), action->isSeparator(),
                         action->menu() != nullptr ? read(*action->menu()) : std::vector<ShownItem>{}});
    }
    return items;
}

void TrayDesktop::clickEntry(const std::vector<std::string>& titles) {
    for (const std::string& title : titles) {
        QMenu* const menu = openPopup();
        ASSERT_NE(menu, nullptr) << title;
        const QList<QAction*> actions = menu->actions();
        const auto found = std::ranges::find_if(
            actions, [&](const QAction* action) { return visibleText(action->text()) == title; });
        ASSERT_NE(found, actions.end()) << title;
        const bool isLast = &title == &titles.back();
        const bool isEnabled = (*found)->isEnabled();
        const QPoint place = menu->mapToGlobal(menu->actionGeometry(*found).center());
        click({place.x(), place.y()});
        if (!isLast) {
            ASSERT_TRUE(waitUntil([menu] { return openPopup() != nullptr && openPopup() != menu; }));
        } else if (isEnabled) {
            EXPECT_TRUE(waitUntil([] { return openPopup() == nullptr; }));
        } else {
            dismissPopups();
        }
    }
}

std::string EmbeddedItemWorld::toolTip() {
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        // What the program shows without ever being the active window.
        if (widget->testAttribute(Qt::WA_AlwaysShowToolTips)) {
            return widget->toolTip().toStdString();
        }
    }
    return {};
}

void EmbeddedItemWorld::open() {
    button_ = button_ == 1 ? 3 : 1;
    const std::vector<test::PixelRect> icons = tray_.icons();
    ASSERT_EQ(icons.size(), 1U);
    desktop_.click(icons.front().center(), button_);
    ASSERT_TRUE(waitUntil([] { return TrayDesktop::openPopup() != nullptr; })) << "button " << int{button_};
    settle();
}

std::vector<ShownItem> EmbeddedItemWorld::openMenu() {
    open();
    const QMenu* const menu = TrayDesktop::openPopup();
    if (menu == nullptr) {
        return {};
    }
    const std::vector<ShownItem> items = TrayDesktop::read(*menu);
    desktop_.dismissPopups();
    return items;
}

void EmbeddedItemWorld::choose(const std::vector<std::string>& titles) {
    open();
    desktop_.clickEntry(titles);
}

std::string NotifierItemWorld::toolTip() {
    return qdbus_cast<notifier::ToolTip>(host_.property("ToolTip")).title.toStdString();
}

std::vector<ShownItem> NotifierItemWorld::openMenu() {
    host_.aboutToShow(0);
    return read(host_.layout());
}

void NotifierItemWorld::choose(const std::vector<std::string>& titles) {
    host_.aboutToShow(0);
    host_.click(idOf(host_.layout(), titles));
}

} // namespace tarvex::contract
