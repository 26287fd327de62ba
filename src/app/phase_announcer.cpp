#include "app/phase_announcer.h"

#include "app/app_messages.h"

#include <QPointer>

#include <utility>

namespace brevlin {

namespace {

constexpr BilingualText notificationNotScheduled{"提醒安排失败", "Failed to schedule notification"};
constexpr BilingualText notificationsNotEnabled{"无法开启通知", "Unable to enable notifications"};

} // namespace

PhaseAnnouncer::PhaseAnnouncer(std::unique_ptr<NotificationService> service, Clock& clock,
                               AppMessages& messages)
    : m_service(std::move(service)), m_clock(clock), m_messages(messages)
{
    m_service->setActionHandler(
        [this](const TimerNotificationAction& action, const std::optional<Uuid>& sessionID) {
            Q_EMIT actionChosen(action, sessionID);
        });
    m_service->setAuthorizationChangeHandler([this] { authorizationMayHaveChanged(); });
}

PhaseAnnouncer::~PhaseAnnouncer()
{
    m_service->setActionHandler({});
    m_service->setAuthorizationChangeHandler({});
}

void PhaseAnnouncer::follow(const TimerSnapshot& snapshot, AlertIntensity intensity)
{
    m_snapshot = snapshot;
    m_intensity = intensity;
}

void PhaseAnnouncer::setLanguage(AppLanguage language)
{
    m_service->setLanguage(language);
}

void PhaseAnnouncer::cancel(const std::optional<Uuid>& sessionID)
{
    m_service->cancel(sessionID);
}

void PhaseAnnouncer::withdrawAnnouncement()
{
    m_service->withdrawAnnouncement();
}

bool PhaseAnnouncer::isPermitted() const
{
    return m_authorization.state == NotificationAuthorizationState::authorized ||
           m_authorization.state == NotificationAuthorizationState::provisional;
}

void PhaseAnnouncer::schedule(AskForPermission permission)
{
    auto then = [this, snapshot = m_snapshot] {
        // The desktop may have taken its time to answer: a phase that was paused or replaced since is not
        // announced.
        if (isPermitted() && snapshot == m_snapshot) {
            scheduleNow(notificationNotScheduled);
        }
    };
    if (permission == AskForPermission::yes) {
        ensureAuthorization(std::move(then));
    } else {
        readAuthorization(std::move(then));
    }
}

void PhaseAnnouncer::scheduleNow(const BilingualText& failureTitle)
{
    m_service->schedule(m_snapshot, m_intensity, m_clock.now(),
                        [self = QPointer(this), failureTitle](const Expected<void, std::string>& scheduled) {
                            if (self && !scheduled) {
                                self->m_messages.raise(failureTitle, scheduled.error());
                            }
                        });
}

void PhaseAnnouncer::ensureAuthorization(std::function<void()> then)
{
    readAuthorization([this, then = std::move(then)] {
        if (m_authorization.state != NotificationAuthorizationState::notDetermined) {
            then();
            return;
        }
        m_service->requestAuthorization(
            [self = QPointer(this), then](const Expected<void, std::string>& granted) {
                if (!self) {
                    return;
                }
                if (granted) {
                    self->readAuthorization(then);
                } else {
                    self->m_messages.raise(notificationsNotEnabled, granted.error());
                    then();
                }
            });
    });
}

void PhaseAnnouncer::readNotificationAuthorization()
{
    readAuthorization([] {});
}

void PhaseAnnouncer::readAuthorization(std::function<void()> then)
{
    m_service->authorizationStatus(
        [self = QPointer(this), then = std::move(then)](const NotificationAuthorizationSnapshot& status) {
            if (!self) {
                return;
            }
            if (std::exchange(self->m_authorization, status) != status) {
                Q_EMIT self->notificationAuthorizationChanged();
            }
            then();
        });
}

void PhaseAnnouncer::authorizationMayHaveChanged()
{
    readAuthorization([this, wasPermitted = isPermitted()] {
        // The running phase was not scheduled while nothing could announce it.
        if (!wasPermitted && isPermitted() && m_snapshot.runState == TimerRunState::running &&
            m_snapshot.remainingSeconds(m_clock.now()) > Seconds::zero()) {
            scheduleNow(notificationNotScheduled);
        }
    });
}

void PhaseAnnouncer::requestNotificationPermission()
{
    m_service->requestAuthorization([self = QPointer(this)](const Expected<void, std::string>& granted) {
        if (!self) {
            return;
        }
        if (!granted) {
            self->m_messages.raise(notificationsNotEnabled, granted.error());
            return;
        }
        self->readAuthorization([self] {
            if (self->m_snapshot.runState == TimerRunState::running) {
                self->scheduleNow(notificationsNotEnabled);
            }
        });
    });
}

} // namespace brevlin
