#include "Platform/Linux/Qt/InstanceService.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMetaType>

#include <algorithm>
#include <cctype>
#include <utility>

namespace tarvex {

namespace {

constexpr const char* programName = "org.tarvex.Tarvex";
constexpr const char* objectPath = "/org/tarvex/Tarvex";
constexpr const char* interfaceName = "org.freedesktop.Application";

constexpr const char* openEditorAction = "open-editor";
constexpr const char* openPreferencesAction = "open-preferences";
constexpr const char* quitAction = "quit";

// D-Bus Specification, "org.freedesktop.DBus.RequestName".
constexpr std::uint32_t doNotQueue = 4;
constexpr std::uint32_t primaryOwner = 1;
constexpr std::uint32_t alreadyOwner = 4;

constexpr const char* introspection = R"xml(
  <interface name="org.freedesktop.Application">
    <method name="Activate"><arg type="a{sv}" name="platform_data" direction="in"/></method>
    <method name="Open">
      <arg type="as" name="uris" direction="in"/>
      <arg type="a{sv}" name="platform_data" direction="in"/>
    </method>
    <method name="ActivateAction">
      <arg type="s" name="action_name" direction="in"/>
      <arg type="av" name="parameter" direction="in"/>
      <arg type="a{sv}" name="platform_data" direction="in"/>
    </method>
  </interface>
)xml";

std::optional<InstanceRequest> requestOfAction(const QString& action, const QVariantList& parameters) {
    if (action == QLatin1String(openEditorAction)) {
        if (parameters.isEmpty()) {
            return InstanceRequest{InstanceRequestKind::openEditor, std::nullopt};
        }
        if (parameters.size() == 1 && parameters.front().typeId() == QMetaType::UInt) {
            return InstanceRequest{InstanceRequestKind::openEditor, parameters.front().toUInt()};
        }
    } else if (action == QLatin1String(openPreferencesAction) && parameters.isEmpty()) {
        return InstanceRequest{InstanceRequestKind::openPreferences, std::nullopt};
    } else if (action == QLatin1String(quitAction) && parameters.isEmpty()) {
        return InstanceRequest{InstanceRequestKind::quit, std::nullopt};
    }
    return std::nullopt;
}

// None for a call that asks for nothing we know.
std::optional<InstanceRequest> requestOfCall(const QDBusMessage& call) {
    const QVariantList arguments = call.arguments();
    if (call.member() == QLatin1String("Activate") && call.signature() == QLatin1String("a{sv}")) {
        return InstanceRequest{InstanceRequestKind::openPreferences, std::nullopt};
    }
    if (call.member() == QLatin1String("ActivateAction") && call.signature() == QLatin1String("sava{sv}")) {
        return requestOfAction(arguments.at(0).toString(), qdbus_cast<QVariantList>(arguments.at(1)));
    }
    return std::nullopt;
}

QDBusMessage callOfRequest(const InstanceRequest& request, const QString& serviceName) {
    const auto call = [&serviceName](const char* method) {
        QDBusMessage message = QDBusMessage::createMethodCall(
            serviceName, QLatin1String(objectPath), QLatin1String(interfaceName), QLatin1String(method));
        message.setAutoStartService(false);
        return message;
    };
    const auto activateAction = [&call](const char* action, const QVariantList& parameters) {
        return call("ActivateAction") << QString::fromLatin1(action) << QVariant(parameters) << QVariantMap();
    };
    switch (request.kind) {
    case InstanceRequestKind::openEditor:
        return activateAction(openEditorAction,
                              request.display ? QVariantList{QVariant(*request.display)} : QVariantList{});
    case InstanceRequestKind::openPreferences:
        return activateAction(openPreferencesAction, {});
    case InstanceRequestKind::quit:
        return activateAction(quitAction, {});
    case InstanceRequestKind::none:
        break;
    }
    return call("Activate") << QVariantMap();
}

} // namespace

class InstanceService::Object final : public QDBusVirtualObject {
public:
    [[nodiscard]] QString introspect(const QString& /*path*/) const override {
        return QString::fromLatin1(introspection);
    }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.interface() != QLatin1String(interfaceName)) {
            return false;
        }
        const std::optional<InstanceRequest> request = requestOfCall(message);
        if (!request) {
            connection.send(message.createErrorReply(QDBusError::InvalidArgs,
                                                     QStringLiteral("No such action, or other parameters")));
            return true;
        }
        // The answer goes out first: what is asked for may be the end of the program.
        connection.send(message.createReply());
        requests_.push_back(*request);
        deliverLater();
        return true;
    }

    void setRequestHandler(std::function<void(const InstanceRequest&)> handler) {
        handler_ = std::move(handler);
        deliverLater();
    }

private:
    void deliverLater() {
        QMetaObject::invokeMethod(
            this, [this] { deliver(); }, Qt::QueuedConnection);
    }

    // One at a time, since a handler may destroy this object; each has a call of its own.
    void deliver() {
        if (!handler_ || requests_.empty()) {
            return;
        }
        const InstanceRequest request = requests_.front();
        requests_.pop_front();
        if (!requests_.empty()) {
            deliverLater();
        }
        const std::function<void(const InstanceRequest&)> handler = handler_;
        handler(request);
    }

    std::deque<InstanceRequest> requests_;
    std::function<void(const InstanceRequest&)> handler_;
};

InstanceService::InstanceService(const std::string& busAddress, const std::string& session,
                                 const Patience& patience)
    : bus_(busAddress, patience.bus), name_(QString::fromStdString(nameIn(session))), patience_(patience) {}

InstanceService::~InstanceService() {
    bus_.get().unregisterObject(QLatin1String(objectPath));
}

bool InstanceService::takeName() {
    if (!object_) {
        // Whoever sees the name may call at once, so the object comes first.
        object_ = std::make_unique<Object>();
        bus_.get().registerVirtualObject(QLatin1String(objectPath), object_.get());
    }
    const QDBusMessage answer = callBus(QStringLiteral("RequestName"), {name_, doNotQueue});
    const std::uint32_t result =
        answer.type() == QDBusMessage::ReplyMessage ? answer.arguments().value(0).toUInt() : 0;
    return result == primaryOwner || result == alreadyOwner;
}

InstanceService::Answer InstanceService::handOver(const InstanceRequest& request) {
    const QDBusMessage answer = bus_.get().call(callOfRequest(request, name_), QDBus::Block,
                                                static_cast<int>(patience_.instance.count()));
    if (answer.type() == QDBusMessage::ReplyMessage) {
        return Answer::accepted;
    }
    // The same error stands for an owner that ended meanwhile and for one that does not answer.
    const QDBusMessage owned = callBus(QStringLiteral("NameHasOwner"), {name_});
    const bool isNobody = owned.type() == QDBusMessage::ReplyMessage && !owned.arguments().value(0).toBool();
    return isNobody ? Answer::nobody : Answer::none;
}

QDBusMessage InstanceService::callBus(const QString& method, const QVariantList& arguments) const {
    return bus_.get().call(BusConnection::callToBus(method, arguments), QDBus::Block,
                           static_cast<int>(patience_.bus.count()));
}

std::string InstanceService::nameIn(const std::string& session) {
    if (session.empty()) {
        return programName;
    }
    constexpr const char* hexDigits = "0123456789abcdef";
    std::string element;
    for (const char character : session) {
        const auto byte = static_cast<unsigned char>(character);
        if (std::isalnum(byte) != 0 && byte < 0x80) {
            element += character;
        } else {
            element += {'_', hexDigits[byte >> 4U], hexDigits[byte & 0xFU]};
        }
    }
    // A name has at most 255 bytes (D-Bus Specification, "Message Protocol"). The display's number is at the
    // end.
    constexpr std::size_t longest = 200;
    return std::string(programName) + ".Display" +
           element.substr(element.size() - std::min(element.size(), longest));
}

void InstanceService::setRequestHandler(std::function<void(const InstanceRequest&)> handler) {
    if (object_) {
        object_->setRequestHandler(std::move(handler));
    }
}

} // namespace tarvex
