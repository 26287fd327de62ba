#pragma once

#include "platform/session_lock.h"
#include "platform/task_scheduler.h"

#include <QHash>
#include <QObject>
#include <QVariantMap>

class QDBusMessage;

namespace brevlin {

class MessageBus;

/// Locks that speak on the bus: logind's session
/// (https://www.freedesktop.org/software/systemd/man/latest/org.freedesktop.login1.html) and the screen
/// savers of the desktops. Any of them that says "locked" is believed. None of them is started by asking.
class BusSessionLock final : public QObject, public SessionLock
{
    Q_OBJECT

public:
    BusSessionLock(MessageBus& sessionBus, MessageBus& systemBus, TaskScheduler& scheduler,
                   QObject* parent = nullptr);

    bool isLocked() const override { return m_isLocked; }
    void setChangeHandler(std::function<void()> handler) override;

private Q_SLOTS:
    void saverChanged(const QDBusMessage& message);
    void sessionChanged(const QDBusMessage& message);
    void lockAsked();
    void unlockAsked();

private:
    void watchSavers();
    void findSession();
    void watchSession(const QString& path);
    /// Takes the value of the session's hint, or no value.
    void takeHint(const QVariant& value);
    void tell();

    MessageBus& m_sessionBus;
    MessageBus& m_systemBus;
    TaskScheduler& m_scheduler;
    QHash<QString, bool> m_activeSavers; // by the name of their interface
    bool m_isHinted = false;             // logind's session has the hint
    TaskHandle m_lockAsked;              // a lock was asked for, and nobody has said yet that it is there
    bool m_isLocked = false;
    std::function<void()> m_changeHandler;
};

} // namespace brevlin
