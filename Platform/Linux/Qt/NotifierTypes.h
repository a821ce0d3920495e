#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariantMap>

namespace tarvex::notifier {

/// A picture, (iiay): rows of pixels of four bytes, alpha, red, green and blue.
struct Pixmap {
    int width = 0;
    int height = 0;
    QByteArray bytes;
};

/// (sa(iiay)ss)
struct ToolTip {
    QString iconName;
    QList<Pixmap> icons;
    QString title;
    QString text;
};

/// An entry of a menu and those below it, (ia{sv}av).
struct MenuLayout {
    int id = 0;
    QVariantMap properties;
    QList<MenuLayout> children;
};

/// An entry of a menu alone, (ia{sv}).
struct MenuProperties {
    int id = 0;
    QVariantMap properties;
};

/// What a host did with an entry, (isvu).
struct MenuEvent {
    int id = 0;
    QString kind;
    QVariant data;
    unsigned timestamp = 0;
};

/// The answer to a call of the interface for properties, given the values of an interface that can be read
/// alone. A message that is not valid for a call that is none of these.
[[nodiscard]] QDBusMessage answerProperties(const QDBusMessage& call, const QString& interfaceName,
                                            const QVariantMap& values);

/// Lets the types above go over the bus. May be called again.
void registerTypes();

QDBusArgument& operator<<(QDBusArgument& argument, const Pixmap& pixmap);
const QDBusArgument& operator>>(const QDBusArgument& argument, Pixmap& pixmap);
QDBusArgument& operator<<(QDBusArgument& argument, const ToolTip& toolTip);
const QDBusArgument& operator>>(const QDBusArgument& argument, ToolTip& toolTip);
QDBusArgument& operator<<(QDBusArgument& argument, const MenuLayout& layout);
const QDBusArgument& operator>>(const QDBusArgument& argument, MenuLayout& layout);
QDBusArgument& operator<<(QDBusArgument& argument, const MenuProperties& entry);
const QDBusArgument& operator>>(const QDBusArgument& argument, MenuProperties& entry);
QDBusArgument& operator<<(QDBusArgument& argument, const MenuEvent& event);
const QDBusArgument& operator>>(const QDBusArgument& argument, MenuEvent& event);

} // namespace tarvex::notifier

Q_DECLARE_METATYPE(tarvex::notifier::Pixmap)
Q_DECLARE_METATYPE(tarvex::notifier::ToolTip)
Q_DECLARE_METATYPE(tarvex::notifier::MenuLayout)
Q_DECLARE_METATYPE(tarvex::notifier::MenuProperties)
Q_DECLARE_METATYPE(tarvex::notifier::MenuEvent)
