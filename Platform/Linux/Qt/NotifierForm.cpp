#include "Platform/Linux/Qt/NotifierForm.h"

#include "Platform/Linux/Qt/GridGlyph.h"
#include "Platform/Linux/Qt/NotifierTypes.h"
#include "Platform/Linux/Qt/StatusNotifierNames.h"

#include <QCursor>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusVirtualObject>
#include <QtEndian>

#include <utility>

namespace tarvex {

namespace {

constexpr const char* introspection = R"xml(
  <interface name="org.kde.StatusNotifierItem">
    <property name="Category" type="s" access="read"/>
    <property name="Id" type="s" access="read"/>
    <property name="Title" type="s" access="read"/>
    <property name="Status" type="s" access="read"/>
    <property name="WindowId" type="i" access="read"/>
    <property name="IconName" type="s" access="read"/>
    <property name="IconThemePath" type="s" access="read"/>
    <property name="IconPixmap" type="a(iiay)" access="read"/>
    <property name="OverlayIconName" type="s" access="read"/>
    <property name="AttentionIconName" type="s" access="read"/>
    <property name="ToolTip" type="(sa(iiay)ss)" access="read"/>
    <property name="ItemIsMenu" type="b" access="read"/>
    <property name="Menu" type="o" access="read"/>
    <method name="Activate">
      <arg type="i" name="x" direction="in"/><arg type="i" name="y" direction="in"/>
    </method>
    <method name="SecondaryActivate">
      <arg type="i" name="x" direction="in"/><arg type="i" name="y" direction="in"/>
    </method>
    <method name="ContextMenu">
      <arg type="i" name="x" direction="in"/><arg type="i" name="y" direction="in"/>
    </method>
    <method name="Scroll">
      <arg type="i" name="delta" direction="in"/><arg type="s" name="orientation" direction="in"/>
    </method>
    <signal name="NewTitle"/>
    <signal name="NewIcon"/>
    <signal name="NewToolTip"/>
    <signal name="NewStatus"><arg type="s" name="status"/></signal>
  </interface>
)xml";

notifier::Pixmap pixmapOf(int side) {
    const QImage image = GridGlyph::image(side).convertToFormat(QImage::Format_ARGB32);
    notifier::Pixmap pixmap{side, side, {}};
    for (int row = 0; row < side; ++row) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(row));
        for (int column = 0; column < side; ++column) {
            const quint32 bytes = qToBigEndian(line[column]);
            pixmap.bytes.append(reinterpret_cast<const char*>(&bytes), sizeof bytes);
        }
    }
    return pixmap;
}

// The sizes of panels at scale 1 and 2; a host takes the one that suits it.
QList<notifier::Pixmap> makePixmaps() {
    QList<notifier::Pixmap> pixmaps;
    for (const int side : {16, 22, 24, 32, 44, 48, 64}) {
        pixmaps.push_back(pixmapOf(side));
    }
    return pixmaps;
}

} // namespace

class NotifierForm::Object final : public QDBusVirtualObject {
public:
    explicit Object(QtMenu& menu) : menu_(&menu) {}

    void setToolTip(const std::string& toolTip) { toolTip_ = QString::fromStdString(toolTip); }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override {
        return QString::fromLatin1(introspection);
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.interface() == QLatin1String(notifier::propertiesInterface)) {
            const QDBusMessage reply =
                notifier::answerProperties(message, QLatin1String(notifier::itemInterface), properties());
            return reply.type() != QDBusMessage::InvalidMessage && connection.send(reply);
        }
        const QString method = message.member();
        const bool opensMenu = method == QLatin1String("Activate") || method == QLatin1String("ContextMenu");
        const bool doesNothing =
            method == QLatin1String("SecondaryActivate") || method == QLatin1String("Scroll");
        if (message.interface() != QLatin1String(notifier::itemInterface) || (!opensMenu && !doesNothing)) {
            return false;
        }
        connection.send(message.createReply());
        if (opensMenu) {
            // Where the click was; the coordinates in the call are at some hosts those of the panel.
            menu_->native().popup(QCursor::pos());
        }
        return true;
    }

private:
    [[nodiscard]] QVariantMap properties() const {
        return {
            {QStringLiteral("Category"), QStringLiteral("ApplicationStatus")},
            {QStringLiteral("Id"), QStringLiteral("tarvex")},
            {QStringLiteral("Title"), QStringLiteral("Tarvex")},
            {QStringLiteral("Status"), QStringLiteral("Active")},
            {QStringLiteral("WindowId"), 0},
            {QStringLiteral("IconName"), QString()},
            {QStringLiteral("IconThemePath"), QString()},
            {QStringLiteral("IconPixmap"), QVariant::fromValue(pixmaps_)},
            {QStringLiteral("OverlayIconName"), QString()},
            {QStringLiteral("AttentionIconName"), QString()},
            {QStringLiteral("ToolTip"),
             QVariant::fromValue(notifier::ToolTip{QString(), {}, toolTip_, QString()})},
            {QStringLiteral("ItemIsMenu"), true},
            {QStringLiteral("Menu"), QVariant::fromValue(QDBusObjectPath(QLatin1String(notifier::menuPath)))},
        };
    }

    QtMenu* menu_;
    QString toolTip_;
    QList<notifier::Pixmap> pixmaps_ = makePixmaps();
};

NotifierForm::NotifierForm(StatusMenu& menu, const std::string& busAddress)
    : bus_(busAddress),
      busMenu_(menu, bus_.get()),
      menu_(
          [&menu] {
              menu.refresh();
              return menu.value();
          },
          [&menu](const MenuItem& item) { menu.choose(item); }),
      object_(std::make_unique<Object>(menu_)) {
    bus_.get().registerVirtualObject(QLatin1String(notifier::itemPath), object_.get());
    bus_.get().registerVirtualObject(QLatin1String(notifier::menuPath), &busMenu_);
    bus_.whenNamed([this](const QString& busName) { registerItem(busName); });
}

NotifierForm::~NotifierForm() {
    bus_.get().unregisterObject(QLatin1String(notifier::menuPath));
    bus_.get().unregisterObject(QLatin1String(notifier::itemPath));
}

void NotifierForm::registerItem(const QString& busName) {
    QDBusMessage message = QDBusMessage::createMethodCall(
        QLatin1String(notifier::watcherName), QLatin1String(notifier::watcherPath),
        QLatin1String(notifier::watcherName), QStringLiteral("RegisterStatusNotifierItem"));
    message.setAutoStartService(false);
    // The answer says nothing; a watcher that refuses leaves nothing to try.
    bus_.get().asyncCall(message << busName);
}

void NotifierForm::setAppearance(const StatusItemAppearance& appearance) {
    object_->setToolTip(appearance.toolTip);
    bus_.get().send(QDBusMessage::createSignal(QLatin1String(notifier::itemPath),
                                               QLatin1String(notifier::itemInterface),
                                               QStringLiteral("NewToolTip")));
}

} // namespace tarvex
