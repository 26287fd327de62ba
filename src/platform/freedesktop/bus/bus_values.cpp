#include "platform/freedesktop/bus/bus_values.h"

#include <QDBusMetaType>
#include <QDBusVariant>

namespace brevlin {

namespace {

constexpr int mostWrappings = 4;

QString signatureOf(const QVariant& value)
{
    // Qt leaves what has a structure where it lies in the message.
    if (value.metaType() == QMetaType::fromType<QDBusArgument>()) {
        return value.value<QDBusArgument>().currentSignature();
    }
    return QString::fromLatin1(QDBusMetaType::typeToSignature(value.metaType()));
}

} // namespace

bool isOfBusType(const QVariant& value, QMetaType type)
{
    return signatureOf(value) == QLatin1String(QDBusMetaType::typeToSignature(type));
}

std::optional<QDBusArgument> busArgument(const QDBusMessage& message, QLatin1String signature)
{
    const QVariantList arguments = message.arguments();
    const bool isRight = message.type() != QDBusMessage::ErrorMessage && arguments.size() == 1 &&
                         signatureOf(arguments.constFirst()) == signature;
    return isRight ? std::optional{arguments.constFirst().value<QDBusArgument>()} : std::nullopt;
}

QVariant unwrapped(const QVariant& value)
{
    QVariant result = value;
    for (int left = mostWrappings; result.metaType() == QMetaType::fromType<QDBusVariant>(); --left) {
        if (left == 0) {
            return {};
        }
        result = result.value<QDBusVariant>().variant();
    }
    return result;
}

} // namespace brevlin
