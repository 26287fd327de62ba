#pragma once

#include <QObject>
#include <QStringList>
#include <QVariantMap>

namespace brevlin {

/// org.freedesktop.Application, through which the desktop and a second start reach the running program
/// (https://specifications.freedesktop.org/desktop-entry-spec/latest/dbus.html).
class ActivationService final : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    using QObject::QObject;

public Q_SLOTS:
    // The names that the standard gives to its methods.
    void Activate(const QVariantMap& platformData);
    void Open(const QStringList& uris, const QVariantMap& platformData);
    void ActivateAction(const QString& action, const QVariantList& parameters,
                        const QVariantMap& platformData);

Q_SIGNALS:
    /// With the token or startup identifier of the user's action, empty where none was given.
    void activated(const QString& token);
};

} // namespace brevlin
