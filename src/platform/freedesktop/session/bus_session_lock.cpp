#include "platform/freedesktop/session/bus_session_lock.h"

#include "platform/freedesktop/bus/bus_values.h"
#include "platform/freedesktop/bus/message_bus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>

#include <array>
#include <utility>

namespace brevlin {

namespace {

// Whoever is asked to lock shows it by then: a request that no locker follows must not last for ever.
constexpr Seconds longestLocking{10};

const QString login = QStringLiteral("org.freedesktop.login1");
const QString session = QStringLiteral("org.freedesktop.login1.Session");
const QString properties = QStringLiteral("org.freedesktop.DBus.Properties");
const QString lockedHint = QStringLiteral("LockedHint");

struct Saver
{
    QString service; // and interface
    QString path;
};

const std::array<Saver, 4> savers{
    Saver{QStringLiteral("org.freedesktop.ScreenSaver"), QStringLiteral("/org/freedesktop/ScreenSaver")},
    Saver{QStringLiteral("org.gnome.ScreenSaver"), QStringLiteral("/org/gnome/ScreenSaver")},
    Saver{QStringLiteral("org.cinnamon.ScreenSaver"), QStringLiteral("/org/cinnamon/ScreenSaver")},
    Saver{QStringLiteral("org.mate.ScreenSaver"), QStringLiteral("/org/mate/ScreenSaver")}};

} // namespace

BusSessionLock::BusSessionLock(MessageBus& sessionBus, MessageBus& systemBus, TaskScheduler& scheduler,
                               QObject* parent)
    : QObject(parent), m_sessionBus(sessionBus), m_systemBus(systemBus), m_scheduler(scheduler)
{
    sessionBus.whenOpen(this, [this] { watchSavers(); });
    systemBus.whenOpen(this, [this] { findSession(); });
}

void BusSessionLock::setChangeHandler(std::function<void()> handler)
{
    m_changeHandler = std::move(handler);
}

void BusSessionLock::watchSavers()
{
    QDBusConnection bus = m_sessionBus.connection();
    for (const Saver& saver : savers) {
        bus.connect(saver.service, saver.path, saver.service, QStringLiteral("ActiveChanged"), this,
                    SLOT(saverChanged(QDBusMessage)));
        QDBusMessage question = QDBusMessage::createMethodCall(saver.service, saver.path, saver.service,
                                                               QStringLiteral("GetActive"));
        question.setAutoStartService(false);
        m_sessionBus.call(question, this, [this, name = saver.service](const QDBusMessage& answer) {
            const auto isActive = busArgument<bool>(answer);
            if (isActive && !m_activeSavers.contains(name)) {
                m_activeSavers.insert(name, *isActive);
                tell();
            }
        });
    }
}

void BusSessionLock::saverChanged(const QDBusMessage& message)
{
    const auto isActive = busArgument<bool>(message);
    if (!isActive) {
        return;
    }
    m_activeSavers.insert(message.interface(), *isActive);
    if (!*isActive) {
        m_lockAsked.reset();
    }
    tell();
}

// The session of this process, or, for one that a user's service manager has started, the user's display.
void BusSessionLock::findSession()
{
    QDBusMessage question = QDBusMessage::createMethodCall(login, QStringLiteral("/org/freedesktop/login1"),
                                                           QStringLiteral("org.freedesktop.login1.Manager"),
                                                           QStringLiteral("GetSession"));
    question << qEnvironmentVariable("XDG_SESSION_ID", QStringLiteral("auto"));
    question.setAutoStartService(false);
    m_systemBus.call(question, this, [this](const QDBusMessage& answer) {
        if (const auto path = busArgument<QDBusObjectPath>(answer)) {
            watchSession(path->path());
        }
    });
}

void BusSessionLock::watchSession(const QString& path)
{
    QDBusConnection bus = m_systemBus.connection();
    bus.connect(login, path, session, QStringLiteral("Lock"), this, SLOT(lockAsked()));
    bus.connect(login, path, session, QStringLiteral("Unlock"), this, SLOT(unlockAsked()));
    bus.connect(login, path, properties, QStringLiteral("PropertiesChanged"), this,
                SLOT(sessionChanged(QDBusMessage)));
    QDBusMessage question = QDBusMessage::createMethodCall(login, path, properties, QStringLiteral("Get"));
    question << session << lockedHint;
    m_systemBus.call(question, this, [this](const QDBusMessage& answer) {
        if (const auto hint = busArgument<QDBusVariant>(answer)) {
            takeHint(hint->variant());
        }
    });
}

void BusSessionLock::sessionChanged(const QDBusMessage& message)
{
    const auto change = busArguments<QString, QVariantMap, QStringList>(message);
    if (change && std::get<0>(*change) == session) {
        takeHint(std::get<1>(*change).value(lockedHint));
    }
}

void BusSessionLock::takeHint(const QVariant& value)
{
    const auto isLocked = busValue<bool>(value);
    if (!isLocked) {
        return;
    }
    if (std::exchange(m_isHinted, *isLocked) && !*isLocked) {
        m_lockAsked.reset();
    }
    tell();
}

void BusSessionLock::lockAsked()
{
    m_lockAsked = m_scheduler.after(longestLocking, [this] {
        m_lockAsked.reset();
        tell();
    });
    tell();
}

// A locker that follows the request says so itself; until then its own word holds.
void BusSessionLock::unlockAsked()
{
    m_lockAsked.reset();
    tell();
}

void BusSessionLock::tell()
{
    const bool isLocked = m_isHinted || m_lockAsked != nullptr || m_activeSavers.values().contains(true);
    if (std::exchange(m_isLocked, isLocked) != isLocked && m_changeHandler) {
        m_changeHandler();
    }
}

} // namespace brevlin
