#include "app/app_model.h"

#include <QPointer>

#include <utility>

namespace brevlin {

namespace {

constexpr BilingualText notificationNotScheduled{"提醒安排失败", "Failed to schedule notification"};
constexpr BilingualText notificationsNotEnabled{"无法开启通知", "Unable to enable notifications"};

bool permitsNotifications(NotificationAuthorizationState state)
{
    return state == NotificationAuthorizationState::authorized ||
           state == NotificationAuthorizationState::provisional;
}

} // namespace

void AppModel::scheduleNotification(AskForPermission permission)
{
    auto then = [this, snapshot = m_snapshot] {
        // The desktop may have taken its time to answer: a phase that was paused or replaced since is not
        // announced.
        if (permitsNotifications(m_authorization.state) && snapshot == m_snapshot) {
            scheduleNow(snapshot, notificationNotScheduled);
        }
    };
    if (permission == AskForPermission::yes) {
        ensureNotificationAuthorization(std::move(then));
    } else {
        readNotificationAuthorization(std::move(then));
    }
}

void AppModel::scheduleNow(const TimerSnapshot& snapshot, const BilingualText& failureTitle)
{
    m_parts.notificationService->schedule(
        snapshot, m_preferences.timerSettings.alertIntensity, now(),
        [self = QPointer(this), failureTitle](const Expected<void, std::string>& scheduled) {
            if (self && !scheduled) {
                self->raise(failureTitle, scheduled.error());
            }
        });
}

void AppModel::ensureNotificationAuthorization(std::function<void()> then)
{
    readNotificationAuthorization([this, then = std::move(then)] {
        if (m_authorization.state != NotificationAuthorizationState::notDetermined) {
            then();
            return;
        }
        m_parts.notificationService->requestAuthorization(
            [self = QPointer(this), then](const Expected<void, std::string>& granted) {
                if (!self) {
                    return;
                }
                if (granted) {
                    self->readNotificationAuthorization(then);
                } else {
                    self->raise(notificationsNotEnabled, granted.error());
                    then();
                }
            });
    });
}

void AppModel::readNotificationAuthorization(std::function<void()> then)
{
    m_parts.notificationService->authorizationStatus(
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

void AppModel::authorizationMayHaveChanged()
{
    const bool wasPermitted = permitsNotifications(m_authorization.state);
    readNotificationAuthorization([this, wasPermitted] {
        // The running phase was not scheduled while nothing could announce it.
        if (!wasPermitted && permitsNotifications(m_authorization.state) &&
            m_snapshot.runState == TimerRunState::running && m_snapshot.remainingSeconds(now()) > Seconds{}) {
            scheduleNow(m_snapshot, notificationNotScheduled);
        }
    });
}

void AppModel::handleNotificationAction(const TimerNotificationAction& action,
                                        const std::optional<Uuid>& sessionID)
{
    // A ringing phase has no run of its own, so that the buttons of the phase that just ended are honoured.
    if (sessionID && m_snapshot.sessionID && *m_snapshot.sessionID != *sessionID) {
        return;
    }
    using Kind = TimerNotificationAction::Kind;
    switch (action.kind) {
    case Kind::opened:
        m_parts.soundService->stop();
        activateMainWindow();
        break;
    case Kind::startNextPhase:
        advance();
        break;
    case Kind::stopAlert:
        m_parts.soundService->stop();
        break;
    case Kind::dismissed:
    case Kind::unknown:
        break;
    }
}

void AppModel::requestNotificationPermission()
{
    m_parts.notificationService->requestAuthorization(
        [self = QPointer(this)](const Expected<void, std::string>& granted) {
            if (!self) {
                return;
            }
            if (!granted) {
                self->raise(notificationsNotEnabled, granted.error());
                return;
            }
            self->readNotificationAuthorization([self] {
                if (self->m_snapshot.runState == TimerRunState::running) {
                    self->scheduleNow(self->m_snapshot, notificationsNotEnabled);
                }
            });
        });
}

} // namespace brevlin
