#include "platform/freedesktop/notifications/switches/bus_switches.h"

#include "platform/freedesktop/bus/bus_values.h"
#include "platform/freedesktop/bus/message_bus.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVariant>

#include <chrono>
#include <limits>
#include <tuple>
#include <utility>

namespace brevlin {

namespace {

using State = NotificationSilencer::State;

const QString notifications = QStringLiteral("org.freedesktop.Notifications");
const QString notificationsPath = QStringLiteral("/org/freedesktop/Notifications");
const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");
const QString dunstInterface = QStringLiteral("org.dunstproject.cmd0");
const QString paused = QStringLiteral("paused");
const QString inhibited = QStringLiteral("Inhibited");
const QString xfconf = QStringLiteral("org.xfce.Xfconf");
const QString xfconfPath = QStringLiteral("/org/xfce/Xfconf");
const QString xfceChannel = QStringLiteral("xfce4-notifyd");
const QString xfceProperty = QStringLiteral("/do-not-disturb");

// Qt's sign of a call without a time limit: a server that goes on after it has hung answers in the order in
// which it was asked, and one that dies is answered for by the bus.
constexpr int forEver = std::numeric_limits<int>::max();

QDBusMessage serverCall(const QString& interface, const char* method)
{
    QDBusMessage message = QDBusMessage::createMethodCall(notifications, notificationsPath, interface,
                                                          QString::fromLatin1(method));
    message.setAutoStartService(false); // another server than the one that has the switch
    return message;
}

QDBusMessage propertyCall(const QString& interface, const QString& name)
{
    QDBusMessage message = serverCall(properties, "Get");
    message << interface << name;
    return message;
}

// The bus's own word for it, not the server's: it did not answer.
bool isSilence(const QDBusMessage& answer)
{
    switch (QDBusError(answer).type()) {
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
    case QDBusError::Disconnected:
    case QDBusError::NoServer:
        return true;
    default:
        return false;
    }
}

State stateOf(const QDBusMessage& answer)
{
    if (answer.type() == QDBusMessage::ErrorMessage) {
        return isSilence(answer) ? State::unknown : State::absent;
    }
    const auto value = busArgument<QDBusVariant>(answer);
    const auto isOn = value ? busValue<bool>(value->variant()) : std::nullopt;
    return !isOn ? State::absent : *isOn ? State::silent : State::heard;
}

bool isDone(const QDBusMessage& answer)
{
    return answer.type() == QDBusMessage::ReplyMessage;
}

bool callNow(const MessageBus& bus, const QDBusMessage& message, Seconds longest)
{
    const auto limit = std::chrono::duration_cast<std::chrono::milliseconds>(longest);
    return bus.isOpen() &&
           isDone(bus.connection().call(message, QDBus::Block, static_cast<int>(limit.count())));
}

// Of a PropertiesChanged of the interface.
std::optional<bool> changedValue(const QDBusMessage& message, const QString& interface, const QString& name)
{
    const auto change = busArguments<QString, QVariantMap, QStringList>(message);
    return change && std::get<0>(*change) == interface ? busValue<bool>(std::get<1>(*change).value(name))
                                                       : std::nullopt;
}

void connectProperties(const MessageBus& bus, QObject* receiver)
{
    bus.connection().connect(notifications, notificationsPath, properties,
                             QStringLiteral("PropertiesChanged"), receiver,
                             SLOT(propertiesChanged(QDBusMessage)));
}

} // namespace

void DunstSwitch::follow()
{
    if (!std::exchange(m_follows, true)) {
        connectProperties(m_bus, this);
    }
}

void DunstSwitch::read(Answer answer)
{
    m_bus.call(
        propertyCall(dunstInterface, paused), this,
        [answer = std::move(answer)](const QDBusMessage& reply) { answer(stateOf(reply)); }, forEver);
}

QDBusMessage DunstSwitch::setting(bool isOn)
{
    QDBusMessage message = serverCall(properties, "Set");
    message << dunstInterface << paused << QVariant::fromValue(QDBusVariant(isOn));
    return message;
}

void DunstSwitch::turn(bool isOn, Completion completion)
{
    m_bus.call(
        setting(isOn), this,
        [completion = std::move(completion)](const QDBusMessage& reply) { completion(isDone(reply)); },
        forEver);
}

bool DunstSwitch::turnOffNow(Seconds longest)
{
    return callNow(m_bus, setting(false), longest);
}

void DunstSwitch::propertiesChanged(const QDBusMessage& message)
{
    if (const auto isOn = changedValue(message, dunstInterface, paused)) {
        Q_EMIT turned(*isOn);
    }
}

void PlasmaInhibition::follow()
{
    if (!std::exchange(m_follows, true)) {
        connectProperties(m_bus, this);
    }
}

void PlasmaInhibition::read(Answer answer)
{
    m_bus.call(
        propertyCall(notifications, inhibited), this,
        [this, answer = std::move(answer)](const QDBusMessage& reply) {
            const State state = stateOf(reply);
            know(state == State::silent);
            answer(state);
        },
        forEver);
}

void PlasmaInhibition::turn(bool isOn, Completion completion)
{
    if (!isOn && !m_cookie) {
        completion(true); // it ended with the server that gave it, or the user has revoked it
        return;
    }
    QDBusMessage message = serverCall(notifications, isOn ? "Inhibit" : "UnInhibit");
    if (isOn) {
        message << QStringLiteral("com.quillmark.Brevlin") << QStringLiteral("Focus") << QVariantMap{};
    } else {
        message << *std::exchange(m_cookie, std::nullopt);
    }
    m_bus.call(
        message, this,
        [this, isOn, completion = std::move(completion)](const QDBusMessage& reply) {
            const auto cookie = busArgument<uint>(reply);
            if (isOn && cookie) {
                m_cookie = cookie;
            }
            const bool isTurned = isOn ? cookie.has_value() : isDone(reply);
            if (isTurned) {
                know(isOn); // the property follows later
            }
            completion(isTurned);
        },
        forEver);
}

bool PlasmaInhibition::turnOffNow(Seconds /*longest*/)
{
    turn(false, [](bool /*isDone*/) {}); // the end of the connection gives it back as well
    return true;
}

void PlasmaInhibition::propertiesChanged(const QDBusMessage& message)
{
    if (const auto isOn = changedValue(message, notifications, inhibited)) {
        if (!*isOn) {
            m_cookie.reset();
        }
        tell(*isOn);
    }
}

void XfceSwitch::follow()
{
    if (!std::exchange(m_follows, true)) {
        for (const char* signal : {"PropertyChanged", "PropertyRemoved"}) {
            m_bus.connection().connect(xfconf, xfconfPath, xfconf, QString::fromLatin1(signal), this,
                                       SLOT(propertyChanged(QDBusMessage)));
        }
    }
}

void XfceSwitch::read(Answer answer)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(xfconf, xfconfPath, xfconf, QStringLiteral("GetProperty"));
    message << xfceChannel << xfceProperty;
    m_bus.call(
        message, this,
        [this, answer = std::move(answer)](const QDBusMessage& reply) {
            // Nobody has turned it yet.
            const bool isUnset = reply.errorName() == QLatin1String("org.xfce.Xfconf.Error.PropertyNotFound");
            const State state = isUnset ? State::heard : stateOf(reply);
            know(state == State::silent);
            answer(state);
        },
        forEver);
}

QDBusMessage XfceSwitch::setting(bool isOn)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(xfconf, xfconfPath, xfconf, QStringLiteral("SetProperty"));
    message << xfceChannel << xfceProperty << QVariant::fromValue(QDBusVariant(isOn));
    return message;
}

void XfceSwitch::turn(bool isOn, Completion completion)
{
    m_bus.call(
        setting(isOn), this,
        [this, isOn, completion = std::move(completion)](const QDBusMessage& reply) {
            if (isDone(reply)) {
                know(isOn);
            }
            completion(isDone(reply));
        },
        forEver);
}

bool XfceSwitch::turnOffNow(Seconds longest)
{
    return callNow(m_bus, setting(false), longest);
}

void XfceSwitch::propertyChanged(const QDBusMessage& message)
{
    if (const auto change = busArguments<QString, QString, QDBusVariant>(message)) {
        const auto& [channel, property, value] = *change;
        if (channel == xfceChannel && property == xfceProperty) {
            tell(busValue<bool>(value.variant()).value_or(false));
        }
    } else if (busArguments<QString, QString>(message) == std::tuple{xfceChannel, xfceProperty}) {
        tell(false);
    }
}

} // namespace brevlin
