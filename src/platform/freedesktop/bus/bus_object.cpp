#include "platform/freedesktop/bus/bus_object.h"

#include <QDBusError>

#include <algorithm>
#include <utility>

namespace brevlin {

const QString BusObject::propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

BusObject::BusObject(MessageBus& bus, QString path, QObject* parent)
    : QDBusVirtualObject(parent), m_bus(bus), m_path(std::move(path))
{
    bus.whenOpen(this, [this] { m_bus.connection().registerVirtualObject(m_path, this); });
}

BusObject::~BusObject()
{
    m_bus.connection().unregisterObject(m_path);
}

void BusObject::add(BusInterface& interface)
{
    m_interfaces.push_back(&interface);
    interface.m_object = this;
}

void BusObject::remove(const BusInterface& interface)
{
    m_interfaces.erase(std::remove(m_interfaces.begin(), m_interfaces.end(), &interface), m_interfaces.end());
}

QString BusObject::introspect(const QString& /*path*/) const
{
    QString descriptions;
    for (const BusInterface* interface : m_interfaces) {
        descriptions += interface->introspection();
    }
    return descriptions;
}

bool BusObject::handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/)
{
    const QDBusMessage reply = answered(message);
    if (reply.type() == QDBusMessage::InvalidMessage) {
        return false;
    }
    if (message.isReplyRequired()) {
        m_bus.connection().send(reply);
    }
    return true;
}

QDBusMessage BusObject::answered(const QDBusMessage& message) const
{
    const bool isAboutProperties = message.interface() == propertiesInterface;
    if (isAboutProperties) {
        const QDBusMessage refused = BusInterface::propertyRefusal(message);
        if (refused.type() == QDBusMessage::ErrorMessage) {
            return refused;
        }
    }
    const QString name = isAboutProperties ? message.arguments().value(0).toString() : message.interface();
    QDBusMessage reply =
        isAboutProperties ? message.createErrorReply(QDBusError::UnknownInterface, name) : QDBusMessage();
    for (BusInterface* const interface : m_interfaces) {
        if (!name.isEmpty() && name != interface->interfaceName()) {
            continue;
        }
        reply = isAboutProperties ? interface->propertyReply(message) : interface->reply(message);
        const QString error = reply.errorName();
        if (error != QDBusError::errorString(QDBusError::UnknownMethod) &&
            error != QDBusError::errorString(QDBusError::UnknownProperty)) {
            break;
        }
    }
    return reply;
}

void BusObject::emitSignal(const QString& interface, const QString& name, const QVariantList& arguments) const
{
    QDBusMessage signal = QDBusMessage::createSignal(m_path, interface, name);
    signal.setArguments(arguments);
    m_bus.connection().send(signal);
}

} // namespace brevlin
