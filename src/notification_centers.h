#pragma once

#include "platform/freedesktop/notifications/desktop_notification_center.h"

#include <functional>
#include <memory>
#include <string>

namespace brevlin {

class MessageBus;

/// The program's places on the screen for notifications: a centre has one, and what the timer announces, what
/// is asked about time away and what there is to tell the user are not to take each other's.
class NotificationCenters final
{
public:
    NotificationCenters(MessageBus& bus, const Clock& clock, TaskScheduler& scheduler)
        : m_bus(bus), m_clock(clock), m_scheduler(scheduler), m_timer(makeCenter())
    {}

    DesktopNotificationCenter& timer() { return *m_timer; }
    /// Made for the first question.
    UserNotificationCenter& absences();
    /// Shows the text. A click on it gives the token for the window that is wanted.
    void tell(const std::string& title, const std::string& text,
              std::function<void(const std::string& token)> chosen);
    void takeToldAway();

    /// Of the notification about the timer or an absence that has just been chosen.
    std::string activationToken() const;

    /// What each centre's gate is; nothing lets everything through.
    void setGate(std::function<void(std::function<void()> show)> gate);

private:
    std::unique_ptr<DesktopNotificationCenter> makeCenter() const;

    MessageBus& m_bus;
    const Clock& m_clock;
    TaskScheduler& m_scheduler;
    std::function<void(std::function<void()>)> m_gate;
    std::unique_ptr<DesktopNotificationCenter> m_timer;
    std::unique_ptr<DesktopNotificationCenter> m_absences;
    std::unique_ptr<DesktopNotificationCenter> m_messages;
};

} // namespace brevlin
