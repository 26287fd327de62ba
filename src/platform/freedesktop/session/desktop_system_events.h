#pragma once

#include "platform/system_events.h"

#include <QFileSystemWatcher>
#include <QObject>

#include <memory>

class QDBusMessage;
class QDBusConnection;
class QSocketNotifier;

namespace brevlin {

class MessageBus;

/// Sleep and waking from logind
/// (https://www.freedesktop.org/software/systemd/man/latest/org.freedesktop.login1.html), activation from the
/// application's state, jumps of the clock from a timerfd that the kernel cancels, and another time zone from
/// the folder in which its link lies.
class DesktopSystemEvents final : public QObject, public SystemEvents
{
    Q_OBJECT

public:
    explicit DesktopSystemEvents(MessageBus& systemBus, QObject* parent = nullptr);
    ~DesktopSystemEvents() override;

    void setObserver(Observer observer) override;

private Q_SLOTS:
    void prepareForSleep(const QDBusMessage& message);

private:
    void watchLogind(QDBusConnection bus);
    void watchClock();
    void watchTimeZone();
    void armClockWatch() const;
    void clockWatchFired() const;

    Observer m_observer;
    QFileSystemWatcher m_settingsWatcher;
    int m_clockWatch = -1; // the timerfd
    std::unique_ptr<QSocketNotifier> m_clockNotifier;
};

} // namespace brevlin
