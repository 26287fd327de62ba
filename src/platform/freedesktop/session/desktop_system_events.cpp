#include "platform/freedesktop/session/desktop_system_events.h"

#include "platform/freedesktop/bus/bus_values.h"
#include "platform/freedesktop/bus/message_bus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QGuiApplication>
#include <QSocketNotifier>

#include <sys/timerfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <utility>

namespace brevlin {

namespace {

void call(const std::function<void()>& function)
{
    if (function) {
        function();
    }
}

} // namespace

DesktopSystemEvents::DesktopSystemEvents(MessageBus& systemBus, QObject* parent) : QObject(parent)
{
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive) {
            call(m_observer.didBecomeActive);
        }
    });
    systemBus.whenOpen(this, [this, &systemBus] { watchLogind(systemBus.connection()); });
    watchClock();
    watchTimeZone();
}

DesktopSystemEvents::~DesktopSystemEvents()
{
    m_clockNotifier.reset();
    if (m_clockWatch >= 0) {
        close(m_clockWatch);
    }
}

void DesktopSystemEvents::setObserver(Observer observer)
{
    m_observer = std::move(observer);
}

void DesktopSystemEvents::watchLogind(QDBusConnection bus)
{
    bus.connect(QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
                QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"), this,
                SLOT(prepareForSleep(QDBusMessage)));
}

void DesktopSystemEvents::prepareForSleep(const QDBusMessage& message)
{
    if (const auto isGoingToSleep = busArgument<bool>(message)) {
        call(*isGoingToSleep ? m_observer.willSleep : m_observer.didWake);
    }
}

void DesktopSystemEvents::watchClock()
{
    m_clockWatch = timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC);
    if (m_clockWatch < 0) {
        return; // jumps are then noticed by the next tick
    }
    armClockWatch();
    m_clockNotifier = std::make_unique<QSocketNotifier>(m_clockWatch, QSocketNotifier::Read);
    connect(m_clockNotifier.get(), &QSocketNotifier::activated, this, &DesktopSystemEvents::clockWatchFired);
}

// Setting the zone replaces the link /etc/localtime, which only the folder is told of.
void DesktopSystemEvents::watchTimeZone()
{
    connect(&m_settingsWatcher, &QFileSystemWatcher::directoryChanged, this,
            [this] { call(m_observer.timeZoneDidChange); });
    m_settingsWatcher.addPath(QStringLiteral("/etc"));
}

void DesktopSystemEvents::armClockWatch() const
{
    // Due in the far future: only the cancellation by a set clock is wanted (timerfd_create(2)).
    itimerspec farFuture{};
    farFuture.it_value.tv_sec = 32'503'680'000;
    timerfd_settime(m_clockWatch, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &farFuture, nullptr);
}

void DesktopSystemEvents::clockWatchFired() const
{
    std::uint64_t expirations = 0;
    if (read(m_clockWatch, &expirations, sizeof expirations) < 0 && errno == ECANCELED) {
        armClockWatch();
        call(m_observer.clockDidChange);
    }
}

} // namespace brevlin
