#pragma once

#include "core/timer_snapshot.h"
#include "platform/clock.h"
#include "services/notification_service.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace brevlin {

class AppMessages;

/// Has the end of the running phase announced by a notification, if the user permits notifications, and knows
/// whether he does.
class PhaseAnnouncer final : public QObject
{
    Q_OBJECT

public:
    enum class AskForPermission { no, yes };

    PhaseAnnouncer(std::unique_ptr<NotificationService> service, Clock& clock, AppMessages& messages);
    ~PhaseAnnouncer() override;

    /// The timer is now this.
    void follow(const TimerSnapshot& snapshot, AlertIntensity intensity);
    void setLanguage(AppLanguage language);
    /// Announces the end of the phase that runs now.
    void schedule(AskForPermission permission);
    /// The end of this run is not to be announced; an announcement that is out already stays.
    void cancel(const std::optional<Uuid>& sessionID);
    void withdrawAnnouncement();

    const NotificationAuthorizationSnapshot& notificationAuthorization() const { return m_authorization; }
    void readNotificationAuthorization();
    void requestNotificationPermission();

Q_SIGNALS:
    void notificationAuthorizationChanged();
    /// The user has answered the announcement of the run, or of one that is not known any more.
    void actionChosen(const TimerNotificationAction& action, const std::optional<Uuid>& sessionID);

private:
    bool isPermitted() const;
    void scheduleNow(const BilingualText& failureTitle);
    void ensureAuthorization(std::function<void()> then);
    void readAuthorization(std::function<void()> then);
    void authorizationMayHaveChanged();

    std::unique_ptr<NotificationService> m_service;
    Clock& m_clock;
    AppMessages& m_messages;
    TimerSnapshot m_snapshot;
    AlertIntensity m_intensity = AlertIntensity::standard;
    NotificationAuthorizationSnapshot m_authorization;
};

} // namespace brevlin
