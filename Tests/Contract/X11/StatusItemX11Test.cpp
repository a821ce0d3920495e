#include "Tests/Contract/StatusItemWorld.h"
#include "Tests/Contract/X11/PlainTray.h"
#include "Tests/Contract/X11/StatusItemWorlds.h"
#include "Tests/Support/X11/SilentSocket.h"

#include <QDBusObjectPath>
#include <QDBusVariant>
#include <gtest/gtest.h>

namespace tarvex::contract {

namespace {

/// Gives a menu of two entries and remembers what was chosen.
class TwoEntryDelegate final : public StatusItemDelegate {
public:
    [[nodiscard]] Menu menuWillOpen() override {
        ++openings;
        return menu;
    }

    void menuItemChosen(const MenuItem& item) override { chosen.push_back(item.title); }

    static MenuItem entry(std::string title) {
        MenuItem item;
        item.title = std::move(title);
        item.action = "act";
        return item;
    }

    Menu menu{{entry("One"), entry("Two")}};
    int openings = 0;
    std::vector<std::string> chosen;
};

/// A desktop with a session bus, a host on it that is not started, and no embedding tray.
class StatusItemX11Test : public ::testing::Test {
protected:
    void show() {
        item_ = desktop_.bar().makeStatusItem(delegate_);
        StatusItemAppearance appearance;
        appearance.toolTip = "Tarvex";
        item_->setAppearance(appearance);
        item_->setMenu(delegate_.menu);
    }

    bool waitUntil(const std::function<bool()>& condition) { return desktop_.waitUntil(condition); }

    bool awaitItemOnBus() {
        return waitUntil([this] { return host_.items().size() == 1; });
    }

    test::SessionBus bus_;
    TrayDesktop desktop_{bus_.address()};
    NotifierHost host_{bus_.address(), [this](const auto& condition) { return waitUntil(condition); }};
    TwoEntryDelegate delegate_;
    std::unique_ptr<StatusItem> item_;
};

TEST_F(StatusItemX11Test, ItemMovesToTheBusWhenItsTrayComesAndBack) {
    test::TrayHost tray(desktop_.server);
    show();
    ASSERT_TRUE(waitUntil([&] { return tray.icons().size() == 1; }));
    for (int round = 0; round < 2; ++round) {
        host_.start();
        ASSERT_TRUE(awaitItemOnBus());
        EXPECT_TRUE(waitUntil([&] { return tray.icons().empty(); }));
        EXPECT_EQ(host_.layout().children.size(), 2);
        host_.end();
        EXPECT_TRUE(waitUntil([&] { return tray.icons().size() == 1; }));
    }
}

TEST_F(StatusItemX11Test, WatcherWithoutAHostShowsNothing) {
    show();
    host_.start(false);
    desktop_.settle();
    EXPECT_TRUE(host_.items().isEmpty());
    host_.registerHost();
    EXPECT_TRUE(awaitItemOnBus());
}

TEST_F(StatusItemX11Test, LossOfTheBusLeavesTheEmbeddedForm) {
    host_.start();
    show();
    ASSERT_TRUE(awaitItemOnBus());
    test::TrayHost tray(desktop_.server);
    host_.end();
    bus_.end();
    EXPECT_TRUE(waitUntil([&] { return tray.icons().size() == 1; }));
}

TEST_F(StatusItemX11Test, ItemOnABusThatStopsHoldsNothingUp) {
    host_.start();
    show();
    ASSERT_TRUE(awaitItemOnBus());
    bus_.freeze();
    const test::Deadline deadline(std::chrono::seconds(10));
    StatusItemAppearance appearance;
    appearance.toolTip = "Other";
    item_->setAppearance(appearance);
    item_->setMenu({{TwoEntryDelegate::entry("Three")}});
    desktop_.settle();
    item_.reset();
    show();
    desktop_.settle();
    EXPECT_FALSE(deadline.hasPassed());
}

TEST_F(StatusItemX11Test, PropertiesSayWhatTheItemIs) {
    host_.start();
    show();
    ASSERT_TRUE(awaitItemOnBus());
    EXPECT_EQ(host_.property("Category").toString(), "ApplicationStatus");
    EXPECT_EQ(host_.property("Id").toString(), "tarvex");
    EXPECT_EQ(host_.property("Title").toString(), "Tarvex");
    EXPECT_EQ(host_.property("Status").toString(), "Active");
    EXPECT_EQ(host_.property("ItemIsMenu"), QVariant(true));
    EXPECT_EQ(host_.property("Menu").userType(), qMetaTypeId<QDBusObjectPath>());
    EXPECT_EQ(host_.property("ToolTip").value<QDBusArgument>().currentSignature(), "(sa(iiay)ss)");
    const QVariant pictures = host_.property("IconPixmap");
    EXPECT_EQ(pictures.value<QDBusArgument>().currentSignature(), "a(iiay)");
    QList<int> sides;
    for (const notifier::Pixmap& pixmap : qdbus_cast<QList<notifier::Pixmap>>(pictures)) {
        EXPECT_EQ(pixmap.width, pixmap.height);
        ASSERT_EQ(pixmap.bytes.size(), 4 * pixmap.width * pixmap.height);
        sides.push_back(pixmap.width);
        // The middle of the first tile is light and opaque, the corner of the picture is empty.
        const auto byteAt = [&](int x, int y, int channel) {
            return static_cast<unsigned char>(pixmap.bytes[4 * (y * pixmap.width + x) + channel]);
        };
        const int middle = pixmap.width * 9 / 32;
        EXPECT_EQ(byteAt(middle, middle, 0), 0xFF) << pixmap.width;
        EXPECT_GT(byteAt(middle, middle, 1), 0xE0) << pixmap.width;
        EXPECT_EQ(byteAt(0, 0, 0), 0) << pixmap.width;
    }
    EXPECT_EQ(sides, (QList<int>{16, 22, 24, 32, 44, 48, 64}));
    const QDBusMessage all = host_.call("/StatusNotifierItem", "org.freedesktop.DBus.Properties", "GetAll",
                                        {"org.kde.StatusNotifierItem"});
    EXPECT_EQ(all.signature(), "a{sv}");
    const QDBusMessage unknown = host_.call("/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
                                            {"org.kde.StatusNotifierItem", "Nonsense"});
    EXPECT_EQ(unknown.type(), QDBusMessage::ErrorMessage);
}

TEST_F(StatusItemX11Test, ItemShowsItsOwnMenuWhereAHostLeavesItTo) {
    host_.start();
    show();
    ASSERT_TRUE(awaitItemOnBus());
    for (const char* method : {"Activate", "ContextMenu"}) {
        desktop_.pointer.moveTo({400, 300});
        desktop_.settle();
        EXPECT_EQ(host_.call("/StatusNotifierItem", "org.kde.StatusNotifierItem", method, {400, 300}).type(),
                  QDBusMessage::ReplyMessage);
        ASSERT_TRUE(waitUntil([] { return TrayDesktop::openPopup() != nullptr; })) << method;
        desktop_.settle();
        desktop_.clickEntry({"Two"});
    }
    EXPECT_TRUE(waitUntil([&] { return delegate_.chosen == std::vector<std::string>{"Two", "Two"}; }));
    EXPECT_EQ(
        host_.call("/StatusNotifierItem", "org.kde.StatusNotifierItem", "SecondaryActivate", {1, 1}).type(),
        QDBusMessage::ReplyMessage);
    desktop_.settle();
    EXPECT_EQ(TrayDesktop::openPopup(), nullptr);
}

TEST_F(StatusItemX11Test, LateClickHitsNoOtherEntry) {
    host_.start();
    show();
    ASSERT_TRUE(awaitItemOnBus());
    const int first = host_.layout().children[0].id;
    EXPECT_FALSE(host_.aboutToShow(0));
    delegate_.menu.items.erase(delegate_.menu.items.begin());
    EXPECT_TRUE(host_.aboutToShow(0));
    EXPECT_TRUE(waitUntil([&] { return host_.layoutUpdates() > 0; }));
    const QDBusMessage reply = host_.call("/StatusNotifierItem/Menu", "com.canonical.dbusmenu", "Event",
                                          {first, "clicked", QVariant::fromValue(QDBusVariant(0)), 0U});
    EXPECT_EQ(reply.type(), QDBusMessage::ErrorMessage);
    host_.click(host_.layout().children[0].id);
    EXPECT_TRUE(waitUntil([&] { return !delegate_.chosen.empty(); }));
    EXPECT_EQ(delegate_.chosen, std::vector<std::string>{"Two"});
}

TEST_F(StatusItemX11Test, HostMayAskForPartsOfTheMenu) {
    MenuItem submenu = TwoEntryDelegate::entry("More");
    submenu.submenu = {TwoEntryDelegate::entry("Deep")};
    delegate_.menu.items.push_back(submenu);
    host_.start();
    show();
    ASSERT_TRUE(awaitItemOnBus());
    EXPECT_TRUE(host_.layout(0, 0).children.isEmpty());
    const notifier::MenuLayout flat = host_.layout(0, 1, {"label"});
    ASSERT_EQ(flat.children.size(), 3);
    EXPECT_TRUE(flat.children[2].children.isEmpty());
    EXPECT_EQ(flat.children[2].properties, (QVariantMap{{"label", "More"}}));
    const notifier::MenuLayout deep = host_.layout(flat.children[2].id);
    ASSERT_EQ(deep.children.size(), 1);
    EXPECT_EQ(deep.children[0].properties, (QVariantMap{{"label", "Deep"}}));
    const auto menuCall = [&](const char* method, const QVariantList& arguments) {
        return host_.call("/StatusNotifierItem/Menu", "com.canonical.dbusmenu", method, arguments);
    };
    const QList<int> ids{deep.children[0].id, 4711};
    const QDBusMessage group =
        menuCall("GetGroupProperties", {QVariant::fromValue(ids), QStringList{"label"}});
    const auto properties = qdbus_cast<QList<notifier::MenuProperties>>(group.arguments().value(0));
    ASSERT_EQ(properties.size(), 1);
    EXPECT_EQ(properties[0].properties, (QVariantMap{{"label", "Deep"}}));
    const QDBusMessage shown = menuCall("AboutToShowGroup", {QVariant::fromValue(ids)});
    EXPECT_EQ(qdbus_cast<QList<int>>(shown.arguments().value(0)), QList<int>{});
    EXPECT_EQ(qdbus_cast<QList<int>>(shown.arguments().value(1)), QList<int>{4711});
    const QList<notifier::MenuEvent> events{{ids[0], "clicked", 0, 0}, {4711, "clicked", 0, 0}};
    const QDBusMessage missing = menuCall("EventGroup", {QVariant::fromValue(events)});
    EXPECT_EQ(qdbus_cast<QList<int>>(missing.arguments().value(0)), QList<int>{4711});
    EXPECT_TRUE(waitUntil([&] { return delegate_.chosen == std::vector<std::string>{"Deep"}; }));
    EXPECT_EQ(menuCall("GetLayout", {4711, -1, QStringList()}).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(menuCall("GetLayout", {"text"}).type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(menuCall("AboutToShow", {4711}).type(), QDBusMessage::ErrorMessage);
}

TEST(StatusItemSilentBusTest, BusThatNeverAnswersLeavesTheEmbeddedForm) {
    const test::SilentSocket silent;
    TrayDesktop desktop(silent.busAddress());
    test::TrayHost tray(desktop.server);
    TwoEntryDelegate delegate;
    const std::unique_ptr<StatusItem> item = desktop.bar().makeStatusItem(delegate);
    EXPECT_TRUE(desktop.waitUntil([&] { return tray.icons().size() == 1; }));
}

/// Over trays whose windows can be seen through and over others.
class EmbeddedItemPicture : public ::testing::TestWithParam<bool> {};

TEST_P(EmbeddedItemPicture, LetsTheTrayBeSeenBehindIt) {
    constexpr std::uint32_t blue = 0x203080;
    constexpr std::uint32_t green = 0x308020;
    const bool hasAlpha = GetParam();
    TrayDesktop desktop;
    PlainTray tray(desktop.server.displayName(), hasAlpha, blue);
    TwoEntryDelegate delegate;
    const std::unique_ptr<StatusItem> item = desktop.bar().makeStatusItem(delegate);
    constexpr int tile = PlainTray::iconSide * 9 / 32;
    const std::uint32_t opaque = hasAlpha ? 0xFF000000 : 0;
    const auto isPaintedOn = [&](std::uint32_t color) {
        tray.serve();
        const auto pixel = tray.pixel(tile, tile);
        return pixel && (*pixel & 0xFFE0E0E0) == (opaque | 0xE0E0E0) &&
               tray.pixel(0, 0) == (hasAlpha ? 0 : color);
    };
    EXPECT_TRUE(desktop.waitUntil([&] { return isPaintedOn(blue); }));
    EXPECT_FALSE(tray.wasShownBefore());
    EXPECT_TRUE(tray.hasToldSize());
    tray.change(green);
    EXPECT_TRUE(desktop.waitUntil([&] { return isPaintedOn(green); }));
}

INSTANTIATE_TEST_SUITE_P(Over, EmbeddedItemPicture, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "TransparentTray" : "OpaqueTray"; });

} // namespace

} // namespace tarvex::contract
