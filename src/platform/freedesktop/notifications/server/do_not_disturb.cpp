#include "platform/freedesktop/notifications/server/do_not_disturb.h"

#include "platform/freedesktop/bus/bus_values.h"
#include "platform/freedesktop/bus/message_bus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QProcess>

#include <utility>

namespace brevlin {

namespace {

const QString notifications = QStringLiteral("org.freedesktop.Notifications");
const QString notificationsPath = QStringLiteral("/org/freedesktop/Notifications");
const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");
const QString xfconf = QStringLiteral("org.xfce.Xfconf");
const QString xfconfPath = QStringLiteral("/org/xfce/Xfconf");

const QString dunst = QStringLiteral("dunst");
const QString plasma = QStringLiteral("Plasma");
const QString xfce = QStringLiteral("Xfce Notify Daemon");
const QString gnome = QStringLiteral("gnome-shell");

QDBusMessage propertyCall(const char* interface, const char* name)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(notifications, notificationsPath, properties, QStringLiteral("Get"));
    message << QString::fromLatin1(interface) << QString::fromLatin1(name);
    return message;
}

QDBusMessage xfconfCall()
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(xfconf, xfconfPath, xfconf, QStringLiteral("GetProperty"));
    message << QStringLiteral("xfce4-notifyd") << QStringLiteral("/do-not-disturb");
    return message;
}

} // namespace

DoNotDisturb::DoNotDisturb(MessageBus& bus, QObject* parent) : QObject(parent), m_bus(bus) {}

void DoNotDisturb::follow(const QString& serverName)
{
    if (std::exchange(m_serverName, serverName) == serverName) {
        return;
    }
    // What has changed is asked for; the signals only say when. Connecting once more changes nothing.
    QDBusConnection bus = m_bus.connection();
    if (serverName == dunst || serverName == plasma) {
        bus.connect(notifications, notificationsPath, properties, QStringLiteral("PropertiesChanged"), this,
                    SLOT(read()));
    } else if (serverName == xfce) {
        bus.connect(xfconf, xfconfPath, xfconf, QStringLiteral("PropertyChanged"), this, SLOT(read()));
    } else if (serverName == gnome) {
        bus.connect({}, QStringLiteral("/ca/desrt/dconf/Writer/user"),
                    QStringLiteral("ca.desrt.dconf.Writer"), QStringLiteral("Notify"), this, SLOT(read()));
    }
    read();
}

void DoNotDisturb::forgetServer()
{
    m_serverName.clear();
}

void DoNotDisturb::setChangeHandler(std::function<void(bool)> handler)
{
    m_changeHandler = std::move(handler);
}

void DoNotDisturb::read()
{
    if (m_serverName == dunst) {
        ask(propertyCall("org.dunstproject.cmd0", "paused"));
    } else if (m_serverName == plasma) {
        ask(propertyCall("org.freedesktop.Notifications", "Inhibited"));
    } else if (m_serverName == xfce) {
        ask(xfconfCall());
    } else if (m_serverName == gnome) {
        askGnome();
    }
}

void DoNotDisturb::ask(const QDBusMessage& message)
{
    m_bus.call(message, this, [this, asked = m_serverName](const QDBusMessage& answer) {
        if (asked == m_serverName) {
            const auto value = busArgument<QDBusVariant>(answer);
            tell(value && busValue<bool>(value->variant()).value_or(false));
        }
    });
}

void DoNotDisturb::askGnome()
{
    // The settings portal does not tell this one, and GNOME's own settings have no other way in without GLib.
    auto* process = new QProcess(this);
    connect(process, &QProcess::finished, this, [this, process](int exitCode) {
        process->deleteLater();
        tell(exitCode == 0 && process->readAllStandardOutput().trimmed() == "false");
    });
    connect(process, &QProcess::errorOccurred, process, &QObject::deleteLater);
    process->start(QStringLiteral("gsettings"),
                   {QStringLiteral("get"), QStringLiteral("org.gnome.desktop.notifications"),
                    QStringLiteral("show-banners")});
}

void DoNotDisturb::tell(bool isOn)
{
    if (m_changeHandler) {
        m_changeHandler(isOn);
    }
}

} // namespace brevlin
