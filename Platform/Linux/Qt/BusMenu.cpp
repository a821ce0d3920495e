#include "Platform/Linux/Qt/BusMenu.h"

#include "Platform/Linux/Qt/StatusNotifierNames.h"

#include <QDBusError>
#include <QDBusVariant>

#include <functional>
#include <utility>

namespace tarvex {

namespace {

constexpr const char* introspection = R"xml(
  <interface name="com.canonical.dbusmenu">
    <property name="Version" type="u" access="read"/>
    <property name="TextDirection" type="s" access="read"/>
    <property name="Status" type="s" access="read"/>
    <property name="IconThemePath" type="as" access="read"/>
    <method name="GetLayout">
      <arg type="i" name="parentId" direction="in"/>
      <arg type="i" name="recursionDepth" direction="in"/>
      <arg type="as" name="propertyNames" direction="in"/>
      <arg type="u" name="revision" direction="out"/>
      <arg type="(ia{sv}av)" name="layout" direction="out"/>
    </method>
    <method name="GetGroupProperties">
      <arg type="ai" name="ids" direction="in"/>
      <arg type="as" name="propertyNames" direction="in"/>
      <arg type="a(ia{sv})" name="properties" direction="out"/>
    </method>
    <method name="GetProperty">
      <arg type="i" name="id" direction="in"/>
      <arg type="s" name="name" direction="in"/>
      <arg type="v" name="value" direction="out"/>
    </method>
    <method name="Event">
      <arg type="i" name="id" direction="in"/>
      <arg type="s" name="eventId" direction="in"/>
      <arg type="v" name="data" direction="in"/>
      <arg type="u" name="timestamp" direction="in"/>
    </method>
    <method name="EventGroup">
      <arg type="a(isvu)" name="events" direction="in"/>
      <arg type="ai" name="idErrors" direction="out"/>
    </method>
    <method name="AboutToShow">
      <arg type="i" name="id" direction="in"/>
      <arg type="b" name="needUpdate" direction="out"/>
    </method>
    <method name="AboutToShowGroup">
      <arg type="ai" name="ids" direction="in"/>
      <arg type="ai" name="updatesNeeded" direction="out"/>
      <arg type="ai" name="idErrors" direction="out"/>
    </method>
    <signal name="LayoutUpdated">
      <arg type="u" name="revision"/>
      <arg type="i" name="parent"/>
    </signal>
  </interface>
)xml";

// An underscore marks the key of an entry, two of them stand for one.
QString labelOf(const std::string& title) {
    return QString::fromStdString(title).replace(QLatin1Char('_'), QLatin1String("__"));
}

QVariantMap allProperties(const MenuItem& item) {
    if (item.isSeparator) {
        return {{QStringLiteral("type"), QStringLiteral("separator")}};
    }
    QVariantMap properties{{QStringLiteral("label"), labelOf(item.title)}};
    // What has its usual value is left out.
    if (!item.isEnabled) {
        properties.insert(QStringLiteral("enabled"), false);
    }
    if (item.submenu) {
        properties.insert(QStringLiteral("children-display"), QStringLiteral("submenu"));
    }
    return properties;
}

QDBusMessage noSuchEntry(const QDBusMessage& call) {
    return call.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("No such entry"));
}

} // namespace

BusMenu::BusMenu(StatusMenu& menu, const QDBusConnection& bus) : menu_(&menu), bus_(bus) {
    notifier::registerTypes();
    rebuild();
}

QString BusMenu::introspect(const QString& /*path*/) const {
    return QString::fromLatin1(introspection);
}

void BusMenu::rebuild() {
    shown_ = menu_->value();
    entries_.clear();
    ++revision_;
    Entry root;
    root.item.submenu.emplace();
    root.children = add(shown_.items);
    entries_[rootId] = std::move(root);
}

std::vector<int> BusMenu::add(const std::vector<MenuItem>& items) {
    std::vector<int> ids;
    for (const MenuItem& item : items) {
        const int id = ++lastId_;
        ids.push_back(id);
        entries_[id] = {item, item.submenu ? add(*item.submenu) : std::vector<int>{}};
    }
    return ids;
}

void BusMenu::menuChanged() {
    rebuild();
    QDBusMessage signal =
        QDBusMessage::createSignal(QLatin1String(notifier::menuPath), QLatin1String(notifier::menuInterface),
                                   QStringLiteral("LayoutUpdated"));
    bus_.send(signal << revision_ << rootId);
}

bool BusMenu::refresh() {
    menu_->refresh();
    const bool isChanged = menu_->value() != shown_;
    if (isChanged) {
        menuChanged();
    }
    return isChanged;
}

bool BusMenu::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    const bool isProperties = message.interface() == QLatin1String(notifier::propertiesInterface);
    const bool isMenu = message.interface() == QLatin1String(notifier::menuInterface);
    const QDBusMessage reply =
        isProperties ? answerProperties(message) : (isMenu ? answer(message) : QDBusMessage());
    return reply.type() != QDBusMessage::InvalidMessage && connection.send(reply);
}

QDBusMessage BusMenu::answer(const QDBusMessage& call) {
    struct Method {
        const char* name;
        const char* signature;
        std::function<QDBusMessage()> run;
    };

    const std::vector<Method> methods{
        {"GetLayout", "iias", [&] { return getLayout(call); }},
        {"GetGroupProperties", "aias", [&] { return getGroupProperties(call); }},
        {"GetProperty", "is", [&] { return getProperty(call); }},
        {"Event", "isvu", [&] { return takeEvent(call); }},
        {"EventGroup", "a(isvu)", [&] { return takeEvents(call); }},
        {"AboutToShow", "i", [&] { return aboutToShow(call); }},
        {"AboutToShowGroup", "ai", [&] { return aboutToShowGroup(call); }},
    };
    for (const Method& method : methods) {
        if (call.member() == QLatin1String(method.name) &&
            call.signature() == QLatin1String(method.signature)) {
            return method.run();
        }
    }
    return {};
}

QDBusMessage BusMenu::answerProperties(const QDBusMessage& call) const {
    const QVariantMap values{{QStringLiteral("Version"), 3U},
                             {QStringLiteral("TextDirection"), QStringLiteral("ltr")},
                             {QStringLiteral("Status"), QStringLiteral("normal")},
                             {QStringLiteral("IconThemePath"), QStringList()}};
    return notifier::answerProperties(call, QLatin1String(notifier::menuInterface), values);
}

QDBusMessage BusMenu::getLayout(const QDBusMessage& call) {
    const QVariantList arguments = call.arguments();
    const int parent = arguments.at(0).toInt();
    if (parent == rootId) {
        refresh();
    }
    if (!entries_.contains(parent)) {
        return noSuchEntry(call);
    }
    const notifier::MenuLayout result =
        layout(parent, arguments.at(1).toInt(), arguments.at(2).toStringList());
    return call.createReply({QVariant(revision_), QVariant::fromValue(result)});
}

QDBusMessage BusMenu::getGroupProperties(const QDBusMessage& call) const {
    const auto ids = qdbus_cast<QList<int>>(call.arguments().at(0));
    const QStringList names = call.arguments().at(1).toStringList();
    QList<notifier::MenuProperties> result;
    for (const auto& [id, entry] : entries_) {
        // No numbers ask for all.
        if (ids.isEmpty() || ids.contains(id)) {
            result.push_back({id, properties(id, names)});
        }
    }
    return call.createReply(QVariant::fromValue(result));
}

QDBusMessage BusMenu::getProperty(const QDBusMessage& call) const {
    const QVariant value =
        properties(call.arguments().at(0).toInt(), {}).value(call.arguments().at(1).toString());
    return value.isValid() ? call.createReply(QVariant::fromValue(QDBusVariant(value))) : noSuchEntry(call);
}

QDBusMessage BusMenu::takeEvent(const QDBusMessage& call) {
    const bool isThere = handleEvent(call.arguments().at(0).toInt(), call.arguments().at(1).toString());
    return isThere ? call.createReply() : noSuchEntry(call);
}

QDBusMessage BusMenu::takeEvents(const QDBusMessage& call) {
    QList<int> missing;
    for (const auto& event : qdbus_cast<QList<notifier::MenuEvent>>(call.arguments().at(0))) {
        if (!handleEvent(event.id, event.kind)) {
            missing.push_back(event.id);
        }
    }
    return call.createReply(QVariant::fromValue(missing));
}

bool BusMenu::handleEvent(int id, const QString& kind) {
    const auto found = entries_.find(id);
    if (found == entries_.end()) {
        return false;
    }
    if (kind == QLatin1String("clicked")) {
        menu_->choose(found->second.item);
    }
    return true;
}

QDBusMessage BusMenu::aboutToShow(const QDBusMessage& call) {
    const int id = call.arguments().at(0).toInt();
    return entries_.contains(id) ? call.createReply(QVariant(refresh())) : noSuchEntry(call);
}

QDBusMessage BusMenu::aboutToShowGroup(const QDBusMessage& call) {
    QList<int> known;
    QList<int> missing;
    for (const int id : qdbus_cast<QList<int>>(call.arguments().at(0))) {
        (entries_.contains(id) ? known : missing).push_back(id);
    }
    const bool isChanged = !known.isEmpty() && refresh();
    return call.createReply(
        {QVariant::fromValue(isChanged ? known : QList<int>()), QVariant::fromValue(missing)});
}

notifier::MenuLayout BusMenu::layout(int id, int depth, const QStringList& names) const {
    notifier::MenuLayout result{id, properties(id, names), {}};
    // A negative depth is without limit.
    if (depth != 0) {
        for (const int child : entries_.at(id).children) {
            result.children.push_back(layout(child, depth - 1, names));
        }
    }
    return result;
}

QVariantMap BusMenu::properties(int id, const QStringList& names) const {
    const auto found = entries_.find(id);
    if (found == entries_.end()) {
        return {};
    }
    QVariantMap all = allProperties(found->second.item);
    if (id == rootId) {
        all.remove(QStringLiteral("label"));
    }
    if (!names.isEmpty()) {
        all.removeIf([&names](const auto& property) { return !names.contains(property.key()); });
    }
    return all;
}

} // namespace tarvex
