#pragma once

#include "platform/system_events.h"

#include <QObject>

#include <memory>

class QSocketNotifier;

namespace brevlin {

/// Sleep and waking from logind
/// (https://www.freedesktop.org/software/systemd/man/latest/org.freedesktop.login1.html), activation from the
/// application's state, and jumps of the clock from a timerfd that the kernel cancels.
class DesktopSystemEvents final : public QObject, public SystemEvents
{
    Q_OBJECT

public:
    explicit DesktopSystemEvents(QObject* parent = nullptr);
    ~DesktopSystemEvents() override;

    void setObserver(Observer observer) override;

private Q_SLOTS:
    void prepareForSleep(bool isGoingToSleep);

private:
    void watchLogind();
    void watchClock();
    void armClockWatch() const;
    void clockWatchFired() const;

    Observer m_observer;
    int m_clockWatch = -1; // the timerfd
    std::unique_ptr<QSocketNotifier> m_clockNotifier;
};

} // namespace brevlin
