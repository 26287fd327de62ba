#include "platform/freedesktop/notifications/server/dbus_notification_server.h"

#include "platform/freedesktop/bus/bus_values.h"
#include "platform/freedesktop/bus/message_bus.h"
#include "platform/freedesktop/notifications/banner_places.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>

#include <limits>
#include <utility>

namespace brevlin {

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");
const QString busService = QStringLiteral("org.freedesktop.DBus");
const QString busPath = QStringLiteral("/org/freedesktop/DBus");

const QString desktopEntry = QStringLiteral("com.quillmark.Brevlin");

// Qt's sign of a call without a time limit: an answer is of use however late it comes, because without it a
// notification could not be taken back.
constexpr int forEver = std::numeric_limits<int>::max();
// In milliseconds; the message bus itself answers at once.
constexpr int longestFarewell = 250;
// The server keeps it until the user has seen it.
constexpr int neverExpires = 0;

QDBusMessage serverCall(const char* method)
{
    return QDBusMessage::createMethodCall(service, path, service, QString::fromLatin1(method));
}

QDBusMessage busCall(const char* method)
{
    return QDBusMessage::createMethodCall(busService, busPath, busService, QString::fromLatin1(method));
}

std::string description(const QDBusMessage& answer)
{
    return answer.type() == QDBusMessage::ErrorMessage ? answer.errorMessage().toStdString()
                                                       : "answer of another type";
}

// https://specifications.freedesktop.org/notification-spec/latest/hints.html
QVariantMap hints(const ServerNotification& notification)
{
    // The urgency must be a byte: some servers overlook it otherwise.
    const auto urgency = static_cast<uchar>(notification.urgency);
    QVariantMap result{{QStringLiteral("urgency"), QVariant::fromValue(urgency)},
                       {QStringLiteral("desktop-entry"), desktopEntry}};
    if (notification.isSilent) {
        result.insert(QStringLiteral("suppress-sound"), true);
    } else {
        result.insert(QStringLiteral("sound-name"), QStringLiteral("message-new-instant"));
    }
    return result;
}

} // namespace

DBusNotificationServer::DBusNotificationServer(MessageBus& bus, QObject* parent)
    : QObject(parent), m_bus(bus), m_doNotDisturb(bus)
{
    m_doNotDisturb.setChangeHandler([this](bool isOn) {
        if (m_observer.doNotDisturbChanged) {
            m_observer.doNotDisturbChanged(isOn);
        }
    });
    bus.whenOpen(this, [this] { watchServer(); });
}

void DBusNotificationServer::watchServer()
{
    QDBusConnection bus = m_bus.connection();
    bus.connect(service, path, service, QStringLiteral("ActionInvoked"), this,
                SLOT(actionInvoked(QDBusMessage)));
    bus.connect(service, path, service, QStringLiteral("ActivationToken"), this,
                SLOT(activationTokenGiven(QDBusMessage)));
    bus.connect(service, path, service, QStringLiteral("NotificationClosed"), this,
                SLOT(notificationClosed(QDBusMessage)));
    auto* watcher = new QDBusServiceWatcher(service, bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString& /*name*/, const QString& oldOwner, const QString& newOwner) {
                ownerChanged(oldOwner, newOwner);
            });
    if (m_observer.appeared) { // what was asked for before has failed
        m_observer.appeared();
    }
}

DBusNotificationServer::~DBusNotificationServer()
{
    // Qt hands messages to a thread of its own, which may end before it has sent them. An answer of the bus
    // shows that everything before the question is on its way.
    if (m_bus.isOpen()) {
        m_bus.connection().call(busCall("GetId"), QDBus::Block, longestFarewell);
    }
}

void DBusNotificationServer::setObserver(Observer observer)
{
    m_observer = std::move(observer);
}

void DBusNotificationServer::ownerChanged(const QString& oldOwner, const QString& newOwner)
{
    m_hasOwner = !newOwner.isEmpty();
    m_doNotDisturb.forgetServer();
    tellBannerPlace(std::nullopt);
    if (!oldOwner.isEmpty() && m_observer.vanished) {
        m_observer.vanished();
    }
    if (!m_hasOwner) {
        tellWhenUnavailable();
    } else if (m_observer.appeared) {
        m_observer.appeared();
    }
}

void DBusNotificationServer::tellBannerPlace(const std::optional<BannerPlace>& place)
{
    if (m_observer.bannerPlaceChanged) {
        m_observer.bannerPlaceChanged(place);
    }
}

void DBusNotificationServer::tellWhenUnavailable()
{
    call(busCall("ListActivatableNames"), [this](const QDBusMessage& answer) {
        const auto names = busArgument<QStringList>(answer);
        const bool canBeStarted = names && names->contains(service);
        if (!m_hasOwner && !canBeStarted && m_observer.becameUnavailable) {
            m_observer.becameUnavailable();
        }
    });
}

void DBusNotificationServer::readCapabilities(
    std::function<void(Expected<Capabilities, std::string>)> completion)
{
    call(serverCall("GetCapabilities"),
         [this, completion = std::move(completion)](const QDBusMessage& answer) {
             const auto names = busArgument<QStringList>(answer);
             if (!names) {
                 completion(Unexpected{description(answer)});
                 return;
             }
             Capabilities capabilities;
             for (const QString& each : *names) {
                 capabilities.insert(each.toStdString());
             }
             readServerName();
             completion(std::move(capabilities));
         });
}

void DBusNotificationServer::readServerName()
{
    call(serverCall("GetServerInformation"), [this](const QDBusMessage& answer) {
        // Name, vendor, version and the version of the protocol.
        if (const auto server = busArguments<QString, QString, QString, QString>(answer)) {
            const QString& name = std::get<0>(*server);
            m_doNotDisturb.follow(name.toStdString());
            tellBannerPlace(bannerPlaceOf(name.toStdString()));
        }
    });
}

void DBusNotificationServer::notify(const ServerNotification& notification,
                                    std::function<void(Expected<std::uint32_t, std::string>)> completion)
{
    QStringList actions;
    for (const NotificationAction& action : notification.actions) {
        actions << QString::fromStdString(action.identifier) << QString::fromStdString(action.title);
    }
    QDBusMessage message = serverCall("Notify");
    message << QStringLiteral("Brevlin") << notification.replaces << desktopEntry
            << QString::fromStdString(notification.title) << QString::fromStdString(notification.body)
            << actions << hints(notification) << neverExpires;
    call(message, [completion = std::move(completion)](const QDBusMessage& answer) {
        if (const auto id = busArgument<uint>(answer)) {
            completion(std::uint32_t{*id});
        } else {
            completion(Unexpected{description(answer)});
        }
    });
}

void DBusNotificationServer::close(std::uint32_t id)
{
    QDBusMessage message = serverCall("CloseNotification");
    message << id;
    message.setAutoStartService(false);
    call(message, [](const QDBusMessage& /*answer*/) {
        // A server that does not know it any more has nothing to close.
    });
}

void DBusNotificationServer::setOwnSilence(bool isKept)
{
    m_doNotDisturb.setOwnSilence(isKept);
}

void DBusNotificationServer::call(const QDBusMessage& message,
                                  std::function<void(const QDBusMessage&)> answered)
{
    m_bus.call(message, this, std::move(answered), forEver);
}

void DBusNotificationServer::actionInvoked(const QDBusMessage& message)
{
    const auto action = busArguments<uint, QString>(message);
    if (action && m_observer.actionInvoked) {
        m_observer.actionInvoked(std::get<0>(*action), std::get<1>(*action).toStdString());
    }
}

void DBusNotificationServer::activationTokenGiven(const QDBusMessage& message)
{
    const auto token = busArguments<uint, QString>(message);
    if (token && m_observer.activationTokenGiven) {
        m_observer.activationTokenGiven(std::get<0>(*token), std::get<1>(*token).toStdString());
    }
}

void DBusNotificationServer::notificationClosed(const QDBusMessage& message)
{
    // https://specifications.freedesktop.org/notification-spec/latest/protocol.html#signal-notification-closed
    constexpr uint expired = 1;
    constexpr uint dismissed = 2;
    const auto closing = busArguments<uint, uint>(message);
    if (closing && m_observer.closed) {
        const auto [id, reason] = *closing;
        m_observer.closed(id, reason == expired     ? CloseReason::expired
                              : reason == dismissed ? CloseReason::dismissed
                                                    : CloseReason::other);
    }
}

} // namespace brevlin
