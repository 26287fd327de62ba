#include "platform/freedesktop/bus/bus_object.h"

#include <QDBusError>
#include <QDBusVariant>
#include <QXmlStreamReader>

namespace brevlin {

namespace {

const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

const QHash<QString, QString> propertySignatures{{QStringLiteral("Get"), QStringLiteral("ss")},
                                                 {QStringLiteral("GetAll"), QStringLiteral("s")},
                                                 {QStringLiteral("Set"), QStringLiteral("ssv")}};

// https://dbus.freedesktop.org/doc/dbus-specification.html#introspection-format
QHash<QString, QString> methodSignatures(const QString& description)
{
    QHash<QString, QString> result;
    QString method;
    QXmlStreamReader reader(description);
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        const QXmlStreamAttributes attributes = reader.attributes();
        if (reader.name() == QLatin1String("method")) {
            method = attributes.value(QLatin1String("name")).toString();
            result.insert(method, {});
        } else if (attributes.value(QLatin1String("direction")) == QLatin1String("in")) {
            result[method] += attributes.value(QLatin1String("type"));
        }
    }
    Q_ASSERT(!reader.hasError());
    return result;
}

/// The error that answers a call which these methods do not take; an invalid message for one that they do.
QDBusMessage refusal(const QDBusMessage& call, const QHash<QString, QString>& signatures)
{
    const auto signature = signatures.find(call.member());
    if (signature == signatures.end()) {
        return call.createErrorReply(QDBusError::UnknownMethod, call.member());
    }
    if (*signature != call.signature()) {
        return call.createErrorReply(
            QDBusError::InvalidArgs,
            QStringLiteral("%1 takes (%2), not (%3)").arg(call.member(), *signature, call.signature()));
    }
    return {};
}

} // namespace

BusObject::BusObject(MessageBus& bus, const QString& path, const QString& interface,
                     const QString& description)
    : m_bus(bus), m_path(path), m_interface(interface), m_description(description)
{
    bus.whenOpen(this, [this] { m_bus.connection().registerVirtualObject(m_path, this); });
}

BusObject::~BusObject()
{
    m_bus.connection().unregisterObject(m_path);
}

QString BusObject::introspect(const QString& /*path*/) const
{
    return m_description;
}

bool BusObject::handleMessage(const QDBusMessage& message, const QDBusConnection& /*connection*/)
{
    const bool isAboutProperties = message.interface() == propertiesInterface;
    if (!isAboutProperties && message.interface() != m_interface && !message.interface().isEmpty()) {
        return false;
    }
    const QDBusMessage answered = isAboutProperties ? propertyReply(message) : reply(message);
    if (message.isReplyRequired()) {
        m_bus.connection().send(answered);
    }
    return true;
}

QDBusMessage BusObject::reply(const QDBusMessage& message)
{
    if (m_signatures.isEmpty()) {
        m_signatures = methodSignatures(m_description);
    }
    const QDBusMessage refused = refusal(message, m_signatures);
    return refused.type() == QDBusMessage::ErrorMessage
               ? refused
               : message.createReply(answer(message.member(), message.arguments()));
}

QDBusMessage BusObject::propertyReply(const QDBusMessage& message)
{
    const QDBusMessage refused = refusal(message, propertySignatures);
    if (refused.type() == QDBusMessage::ErrorMessage) {
        return refused;
    }
    const QVariantList arguments = message.arguments();
    if (message.member() == QLatin1String("GetAll")) {
        const bool isOurs = arguments.at(0).toString() == m_interface;
        return message.createReply(isOurs ? properties() : QVariantMap{});
    }
    const QString name = arguments.at(1).toString();
    const QVariant value = properties().value(name);
    if (!value.isValid()) {
        return message.createErrorReply(QDBusError::UnknownProperty, name);
    }
    if (message.member() == QLatin1String("Set")) {
        return message.createErrorReply(QDBusError::PropertyReadOnly, name);
    }
    propertyAsked(name);
    return message.createReply(QVariant::fromValue(QDBusVariant(value)));
}

void BusObject::emitSignal(const char* name, const QVariantList& arguments) const
{
    QDBusMessage signal = QDBusMessage::createSignal(m_path, m_interface, QString::fromLatin1(name));
    signal.setArguments(arguments);
    m_bus.connection().send(signal);
}

} // namespace brevlin
