#pragma once

#include "platform/desktop_settings.h"
#include "platform/freedesktop/appearance/gtk_theme.h"

#include <QMap>
#include <QObject>
#include <QVariantMap>

#include <utility>

class QDBusMessage;

namespace brevlin {

class MessageBus;

/// Reads the settings portal
/// (https://flatpak.github.io/xdg-desktop-portal/docs/doc-org.freedesktop.portal.Settings.html) and follows
/// its changes. Never waits for it. Where it says neither light nor dark, a dark GTK theme says dark.
class PortalDesktopSettings final : public QObject, public DesktopSettings
{
    Q_OBJECT

public:
    explicit PortalDesktopSettings(MessageBus& bus, QObject* parent = nullptr);

    std::optional<ColorScheme> colorScheme() const override;
    bool reducesMotion() const override;
    void setChangeHandler(std::function<void()> handler) override;

private Q_SLOTS:
    void settingChanged(const QDBusMessage& message);

private:
    void follow();
    void readAll();
    void readAnew();
    void tell();
    QVariant value(const QString& group, const QString& key) const;
    bool saysColorScheme() const;

    MessageBus& m_bus;
    QMap<QString, QVariantMap> m_values; // by group, then by key
    bool m_isReading = false;
    bool m_isOutdated = false; // something has changed since the reading began
    GtkTheme m_gtkTheme;
    std::function<void()> m_changeHandler;
};

/// The groups with their keys and values as the portal's back ends answer, in that order: with several of
/// them a group comes more than once. The first answer to a key holds that says something; in the group of
/// the appearance 0 says nothing.
QMap<QString, QVariantMap> firstAnswers(const QList<std::pair<QString, QVariantMap>>& answers);

} // namespace brevlin
