#include "platform/freedesktop/tray/status_notifier_host.h"

#include "platform/freedesktop/bus/bus_values.h"
#include "platform/freedesktop/bus/message_bus.h"
#include "platform/freedesktop/tray/status_notifier_item.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <array>
#include <utility>

namespace brevlin {

namespace {

const QString watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");
const QString busService = QStringLiteral("org.freedesktop.DBus");
const QString busPath = QStringLiteral("/org/freedesktop/DBus");

// Some collectors own their name before their object answers.
constexpr int attempts = 5;
constexpr Seconds attemptInterval{1.0};

// GNOME Shell through its AppIndicator extension, MATE's notification area, and the services of Ayatana's and
// Unity's indicators.
constexpr std::array namesOfLabelHosts{
    "org.gnome.Shell", "org.mate.panel.applet.NotificationAreaAppletFactory",
    "org.ayatana.indicator.application", "com.canonical.indicator.application"};

QDBusMessage busCall(const char* method, const QVariantList& arguments)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(busService, busPath, busService, QString::fromLatin1(method));
    message.setArguments(arguments);
    return message;
}

QDBusMessage watcherCall(const QString& interface, const char* method, const QVariantList& arguments)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(watcherService, watcherPath, interface, QString::fromLatin1(method));
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return message;
}

bool isError(const QDBusMessage& message)
{
    return message.type() == QDBusMessage::ErrorMessage;
}

} // namespace

StatusNotifierHost::StatusNotifierHost(MessageBus& bus, TaskScheduler& scheduler, QObject* parent)
    : QObject(parent), m_bus(bus), m_scheduler(scheduler), m_isAbsent(!bus.isOpen())
{
    bus.whenOpen(this, [this] { watchCollectors(); });
}

void StatusNotifierHost::watchCollectors()
{
    QDBusConnection bus = m_bus.connection();
    auto* watcher =
        new QDBusServiceWatcher(watcherService, bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString& /*name*/, const QString& /*oldOwner*/, const QString& newOwner) {
                ownerChanged(newOwner);
            });
    for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        bus.connect(watcherService, watcherPath, watcherService, QString::fromLatin1(signal), this,
                    SLOT(readHost()));
    }
    const auto name =
        QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(QCoreApplication::applicationPid());
    constexpr uint doNotQueue = 4;
    m_bus.connection().send(busCall("RequestName", {name, doNotQueue})); // that hosts may look for
    m_bus.call(busCall("GetNameOwner", {watcherService}), this, [this](const QDBusMessage& answer) {
        if (m_owner.isEmpty()) { // a change that came meanwhile knows better
            ownerChanged(busArgument<QString>(answer).value_or(QString()));
        }
    });
}

void StatusNotifierHost::ownerChanged(const QString& owner)
{
    const bool wasCollecting = isCollecting();
    m_owner = owner;
    m_nextAttempt.reset();
    m_nextLook.reset();
    if (std::exchange(m_showsLabels, false) || wasCollecting != isCollecting()) {
        Q_EMIT changed();
    }
    if (owner.isEmpty()) {
        setAbsent(true);
        return;
    }
    registerItem(attempts);
    readHost();
    readKnownNames(attempts);
}

void StatusNotifierHost::offerItem()
{
    if (!std::exchange(m_isOffered, true) && isCollecting()) {
        registerItem(attempts);
    }
}

// By its path, as the item of whoever calls: of one known by its name, GNOME's collector loses the properties
// when the bus tells of the name's owner after they have come, and then drops the item.
void StatusNotifierHost::registerItem(int attemptsLeft)
{
    if (!m_isOffered) {
        return;
    }
    m_bus.call(watcherCall(watcherService, "RegisterStatusNotifierItem", {StatusNotifierItem::path}), this,
               [this, attemptsLeft, asked = m_owner](const QDBusMessage& answer) {
                   if (isError(answer) && attemptsLeft > 1 && asked == m_owner) {
                       m_nextAttempt = m_scheduler.after(
                           attemptInterval, [this, attemptsLeft] { registerItem(attemptsLeft - 1); });
                   }
               });
}

void StatusNotifierHost::readHost()
{
    m_bus.call(watcherCall(QStringLiteral("org.freedesktop.DBus.Properties"), "Get",
                           {watcherService, QStringLiteral("IsStatusNotifierHostRegistered")}),
               this, [this, asked = m_owner](const QDBusMessage& answer) {
                   if (asked != m_owner || m_owner.isEmpty()) {
                       return;
                   }
                   // A watcher that does not say is taken at its name.
                   const auto value = busArgument<QDBusVariant>(answer);
                   if (value && busValue<bool>(value->variant()) == false) {
                       trustAbsence();
                   } else {
                       setAbsent(false);
                   }
               });
}

// Qt's icon for older trays is then made, and looks the collector over in line, for 25 s if it has fallen
// silent.
void StatusNotifierHost::trustAbsence()
{
    m_bus.call(watcherCall(QStringLiteral("org.freedesktop.DBus.Introspectable"), "Introspect", {}), this,
               [this, asked = m_owner](const QDBusMessage& answer) {
                   const bool isSilent = answer.errorName() == QDBusError::errorString(QDBusError::NoReply);
                   if (asked == m_owner && !isSilent) {
                       setAbsent(true);
                   }
               });
}

// Of processes, not of connections: Ayatana's service has a connection for each of its names. It may take the
// name that it is known by after the watcher's, hence more than one look.
void StatusNotifierHost::readKnownNames(int looksLeft)
{
    if (m_showsLabels) {
        return;
    }
    if (looksLeft > 1) {
        m_nextLook = m_scheduler.after(attemptInterval, [this, looksLeft] { readKnownNames(looksLeft - 1); });
    }
    const char* method = "GetConnectionUnixProcessID";
    m_bus.call(busCall(method, {watcherService}), this,
               [this, method, asked = m_owner](const QDBusMessage& collector) {
                   const auto process = busArgument<uint>(collector);
                   for (const char* name : namesOfLabelHosts) {
                       m_bus.call(busCall(method, {QString::fromLatin1(name)}), this,
                                  [this, asked, process](const QDBusMessage& answer) {
                                      if (process && asked == m_owner &&
                                          busArgument<uint>(answer) == process) {
                                          labelAsked();
                                      }
                                  });
                   }
               });
}

void StatusNotifierHost::labelAsked()
{
    if (!m_owner.isEmpty() && !std::exchange(m_showsLabels, true)) {
        Q_EMIT changed();
    }
}

void StatusNotifierHost::setAbsent(bool isAbsent)
{
    if (std::exchange(m_isAbsent, isAbsent) != isAbsent) {
        Q_EMIT changed();
    }
}

} // namespace brevlin
