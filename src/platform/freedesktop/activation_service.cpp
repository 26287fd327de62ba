#include "platform/freedesktop/activation_service.h"

namespace brevlin {

void ActivationService::Activate(const QVariantMap& platformData)
{
    const QString startupIdentifier = platformData.value(QStringLiteral("desktop-startup-id")).toString();
    const QString token = platformData.value(QStringLiteral("activation-token")).toString();
    Q_EMIT activated(startupIdentifier.isEmpty() ? token : startupIdentifier);
}

void ActivationService::Open(const QStringList& /*uris*/, const QVariantMap& platformData)
{
    // There are no documents to open; whoever asks wants to see the program.
    Activate(platformData);
}

void ActivationService::ActivateAction(const QString& /*action*/, const QVariantList& /*parameters*/,
                                       const QVariantMap& platformData)
{
    // The desktop entry offers no actions of its own.
    Activate(platformData);
}

} // namespace brevlin
