#include "Platform/Linux/Qt/NotifierTypes.h"

#include <QDBusError>
#include <QDBusMetaType>
#include <QDBusVariant>

namespace tarvex::notifier {

namespace {

template <typename... Members>
QDBusArgument& writeStructure(QDBusArgument& argument, const Members&... members) {
    argument.beginStructure();
    (argument << ... << members);
    argument.endStructure();
    return argument;
}

template <typename... Members>
const QDBusArgument& readStructure(const QDBusArgument& argument, Members&... members) {
    argument.beginStructure();
    (argument >> ... >> members);
    argument.endStructure();
    return argument;
}

} // namespace

void registerTypes() {
    qDBusRegisterMetaType<Pixmap>();
    qDBusRegisterMetaType<QList<Pixmap>>();
    qDBusRegisterMetaType<ToolTip>();
    qDBusRegisterMetaType<MenuLayout>();
    qDBusRegisterMetaType<MenuProperties>();
    qDBusRegisterMetaType<QList<MenuProperties>>();
    qDBusRegisterMetaType<MenuEvent>();
    qDBusRegisterMetaType<QList<MenuEvent>>();
    qDBusRegisterMetaType<QList<int>>();
}

QDBusMessage answerProperties(const QDBusMessage& call, const QString& interfaceName,
                              const QVariantMap& values) {
    if (call.arguments().value(0).toString() != interfaceName) {
        return {};
    }
    if (call.member() == QLatin1String("GetAll") && call.signature() == QLatin1String("s")) {
        return call.createReply(values);
    }
    if (call.member() == QLatin1String("Get") && call.signature() == QLatin1String("ss")) {
        const QVariant value = values.value(call.arguments().at(1).toString());
        return value.isValid()
                   ? call.createReply(QVariant::fromValue(QDBusVariant(value)))
                   : call.createErrorReply(QDBusError::UnknownProperty, QStringLiteral("No such property"));
    }
    if (call.member() == QLatin1String("Set")) {
        return call.createErrorReply(QDBusError::PropertyReadOnly,
                                     QStringLiteral("Properties can be read alone"));
    }
    return {};
}

QDBusArgument& operator<<(QDBusArgument& argument, const Pixmap& pixmap) {
    return writeStructure(argument, pixmap.width, pixmap.height, pixmap.bytes);
}

const QDBusArgument& operator>>(const QDBusArgument& argument, Pixmap& pixmap) {
    return readStructure(argument, pixmap.width, pixmap.height, pixmap.bytes);
}

QDBusArgument& operator<<(QDBusArgument& argument, const ToolTip& toolTip) {
    return writeStructure(argument, toolTip.iconName, toolTip.icons, toolTip.title, toolTip.text);
}

const QDBusArgument& operator>>(const QDBusArgument& argument, ToolTip& toolTip) {
    return readStructure(argument, toolTip.iconName, toolTip.icons, toolTip.title, toolTip.text);
}

QDBusArgument& operator<<(QDBusArgument& argument, const MenuLayout& layout) {
    argument.beginStructure();
    argument << layout.id << layout.properties;
    argument.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const MenuLayout& child : layout.children) {
        argument << QDBusVariant(QVariant::fromValue(child));
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, MenuLayout& layout) {
    argument.beginStructure();
    argument >> layout.id >> layout.properties;
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        layout.children.push_back(qdbus_cast<MenuLayout>(child.variant()));
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const MenuProperties& entry) {
    return writeStructure(argument, entry.id, entry.properties);
}

const QDBusArgument& operator>>(const QDBusArgument& argument, MenuProperties& entry) {
    return readStructure(argument, entry.id, entry.properties);
}

QDBusArgument& operator<<(QDBusArgument& argument, const MenuEvent& event) {
    return writeStructure(argument, event.id, event.kind, QDBusVariant(event.data), event.timestamp);
}

const QDBusArgument& operator>>(const QDBusArgument& argument, MenuEvent& event) {
    QDBusVariant data;
    readStructure(argument, event.id, event.kind, data, event.timestamp);
    event.data = data.variant();
    return argument;
}

} // namespace tarvex::notifier
