#include "platform/freedesktop/status/status_bus_object.h"

#include "platform/freedesktop/status/status_bus_types.h"

#include <QDBusError>
#include <QDBusVariant>

namespace brevlin {

namespace {

const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

} // namespace

StatusBusObject::StatusBusObject(const QString& path, const QString& interface, const QString& description)
    : m_path(path), m_interface(interface), m_description(description), m_bus(QDBusConnection::sessionBus())
{
    registerStatusBusTypes();
    m_bus.registerVirtualObject(path, this);
}

StatusBusObject::~StatusBusObject()
{
    m_bus.unregisterObject(m_path);
}

QString StatusBusObject::introspect(const QString& /*path*/) const
{
    return m_description;
}

bool StatusBusObject::handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/)
{
    if (message.interface() == propertiesInterface) {
        m_bus.send(propertyReply(message));
        return true;
    }
    if (message.interface() == m_interface || message.interface().isEmpty()) {
        m_bus.send(reply(message));
        return true;
    }
    return false;
}

QDBusMessage StatusBusObject::reply(const QDBusMessage& message)
{
    const auto values = answer(message.member(), message.arguments());
    return values ? message.createReply(*values)
                  : message.createErrorReply(QDBusError::UnknownMethod, message.member());
}

QDBusMessage StatusBusObject::propertyReply(const QDBusMessage& message)
{
    const QVariantList arguments = message.arguments();
    if (message.member() == QLatin1String("GetAll")) {
        const bool isOurs = arguments.value(0).toString() == m_interface;
        return message.createReply(isOurs ? properties() : QVariantMap{});
    }
    if (message.member() == QLatin1String("Get") && arguments.size() == 2) {
        const QString name = arguments.at(1).toString();
        const QVariant value = properties().value(name);
        if (value.isValid()) {
            propertyAsked(name);
            return message.createReply(QVariant::fromValue(QDBusVariant(value)));
        }
        return message.createErrorReply(QDBusError::UnknownProperty, name);
    }
    return message.createErrorReply(QDBusError::PropertyReadOnly, message.member());
}

void StatusBusObject::emitSignal(const char* name, const QVariantList& arguments) const
{
    QDBusMessage signal = QDBusMessage::createSignal(m_path, m_interface, QString::fromLatin1(name));
    signal.setArguments(arguments);
    m_bus.send(signal);
}

} // namespace brevlin
