#pragma once

#include "platform/desktop_settings.h"

#include <QDBusVariant>
#include <QMap>
#include <QObject>
#include <QVariantMap>

namespace brevlin {

/// Reads the settings portal
/// (https://flatpak.github.io/xdg-desktop-portal/docs/doc-org.freedesktop.portal.Settings.html) and follows
/// its changes. Never waits for it.
class PortalDesktopSettings final : public QObject, public DesktopSettings
{
    Q_OBJECT

public:
    explicit PortalDesktopSettings(QObject* parent = nullptr);

    std::optional<ColorScheme> colorScheme() const override;
    bool reducesMotion() const override;
    void setChangeHandler(std::function<void()> handler) override;

private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void readAll();
    QVariant value(const QString& group, const QString& key) const;

    QMap<QString, QVariantMap> m_values; // by group, then by key
    std::function<void()> m_changeHandler;
};

} // namespace brevlin
