#include "platform/freedesktop/bus/bus_interface.h"

#include "platform/freedesktop/bus/bus_object.h"

#include <QDBusError>
#include <QDBusVariant>
#include <QStringList>
#include <QXmlStreamReader>

#include <utility>

namespace brevlin {

namespace {

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

BusInterface::BusInterface(QString name, QString description, QObject* parent)
    : QObject(parent), m_name(std::move(name)), m_description(std::move(description))
{}

BusInterface::~BusInterface()
{
    if (m_object) {
        m_object->remove(*this);
    }
}

QDBusMessage BusInterface::reply(const QDBusMessage& message)
{
    if (m_signatures.isEmpty()) {
        m_signatures = methodSignatures(m_description);
    }
    const QDBusMessage refused = refusal(message, m_signatures);
    if (refused.type() == QDBusMessage::ErrorMessage) {
        return refused;
    }
    const BusAnswer answered = answer(message.member(), message.arguments());
    if (const auto* reason = std::get_if<BusRefusal>(&answered)) {
        return message.createErrorReply(reason->name, reason->text);
    }
    return message.createReply(std::get<QVariantList>(answered));
}

QDBusMessage BusInterface::propertyRefusal(const QDBusMessage& message)
{
    return refusal(message, propertySignatures);
}

QDBusMessage BusInterface::propertyReply(const QDBusMessage& message)
{
    if (message.member() == QLatin1String("GetAll")) {
        return message.createReply(properties());
    }
    const QString property = message.arguments().at(1).toString();
    const QVariant value = properties().value(property);
    if (!value.isValid()) {
        return message.createErrorReply(QDBusError::UnknownProperty, property);
    }
    if (message.member() == QLatin1String("Set")) {
        return message.createErrorReply(QDBusError::PropertyReadOnly, property);
    }
    propertyAsked(property);
    return message.createReply(QVariant::fromValue(QDBusVariant(value)));
}

void BusInterface::emitSignal(const char* name, const QVariantList& arguments) const
{
    if (m_object) {
        m_object->emitSignal(m_name, QString::fromLatin1(name), arguments);
    }
}

void BusInterface::emitPropertiesChanged(const QVariantMap& changed) const
{
    if (m_object) {
        m_object->emitSignal(BusObject::propertiesInterface, QStringLiteral("PropertiesChanged"),
                             {m_name, changed, QStringList()});
    }
}

} // namespace brevlin
