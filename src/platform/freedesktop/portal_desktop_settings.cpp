#include "platform/freedesktop/portal_desktop_settings.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

namespace brevlin {

namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString path = QStringLiteral("/org/freedesktop/portal/desktop");
const QString interface = QStringLiteral("org.freedesktop.portal.Settings");

const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString gnomeGroup = QStringLiteral("org.gnome.desktop.interface");
const QString kdeGroup = QStringLiteral("org.kde.kdeglobals.KDE");

using Groups = QMap<QString, QVariantMap>;

// Some portals wrap a value in one variant more than they should.
QVariant unwrapped(QVariant value)
{
    while (value.canConvert<QDBusVariant>()) {
        value = value.value<QDBusVariant>().variant();
    }
    return value;
}

} // namespace

PortalDesktopSettings::PortalDesktopSettings(QObject* parent) : QObject(parent)
{
    qDBusRegisterMetaType<Groups>();
    // Slots are matched by the names of their types, and Qt 6.4 does not know this one by name on its own.
    qRegisterMetaType<QDBusVariant>();
    QDBusConnection::sessionBus().connect(service, path, interface, QStringLiteral("SettingChanged"), this,
                                          SLOT(settingChanged(QString, QString, QDBusVariant)));
    readAll();
}

void PortalDesktopSettings::readAll()
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("ReadAll"));
    message << QStringList{appearanceGroup, gnomeGroup, kdeGroup};
    auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<Groups> reply = *watcher;
        if (!reply.isError()) {
            m_values = reply.value();
        }
        if (m_changeHandler) {
            m_changeHandler();
        }
    });
}

void PortalDesktopSettings::settingChanged(const QString& group, const QString& key,
                                           const QDBusVariant& value)
{
    if (group != appearanceGroup && group != gnomeGroup && group != kdeGroup) {
        return;
    }
    m_values[group][key] = value.variant();
    if (m_changeHandler) {
        m_changeHandler();
    }
}

QVariant PortalDesktopSettings::value(const QString& group, const QString& key) const
{
    return unwrapped(m_values.value(group).value(key));
}

std::optional<DesktopSettings::ColorScheme> PortalDesktopSettings::colorScheme() const
{
    switch (value(appearanceGroup, QStringLiteral("color-scheme")).toUInt()) {
    case 1:
        return ColorScheme::dark;
    case 2:
        return ColorScheme::light;
    default:
        return std::nullopt;
    }
}

bool PortalDesktopSettings::reducesMotion() const
{
    if (const QVariant reduced = value(appearanceGroup, QStringLiteral("reduced-motion"));
        reduced.isValid()) {
        return reduced.toUInt() == 1;
    }
    if (const QVariant enabled = value(gnomeGroup, QStringLiteral("enable-animations")); enabled.isValid()) {
        return !enabled.toBool();
    }
    bool isNumber = false;
    const double factor = value(kdeGroup, QStringLiteral("AnimationDurationFactor")).toDouble(&isNumber);
    return isNumber && factor == 0.0;
}

void PortalDesktopSettings::setChangeHandler(std::function<void()> handler)
{
    m_changeHandler = std::move(handler);
}

} // namespace brevlin
