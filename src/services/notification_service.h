#pragma once

#include "core/language.h"
#include "core/timer_snapshot.h"
#include "core/timer_vocabulary.h"
#include "platform/user_notification_center.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace brevlin {

/// What the user did with a phase-end notification.
struct TimerNotificationAction
{
    enum class Kind { unknown, opened, startNextPhase, stopAlert, dismissed };

    Kind kind = Kind::unknown;
    std::string identifier; ///< as it came; only for unknown

    bool operator==(const TimerNotificationAction&) const = default;
};

/// Why a phase's end cannot be announced.
struct NotificationServiceError
{
    enum class Kind { missingSessionID, missingDeadline, deadlineAlreadyPassed };

    Kind kind = Kind::missingSessionID;
    AppLanguage language = AppLanguage::simplifiedChinese;

    std::string errorDescription() const;
};

/// Announces the end of a phase through the desktop's notifications: builds, schedules and withdraws the one
/// notification of a phase run and tells what the user did with it.
class NotificationService final
{
public:
    using ActionHandler = std::function<void(const TimerNotificationAction&, const std::optional<Uuid>&)>;
    using Completion = UserNotificationCenter::Completion;

    explicit NotificationService(UserNotificationCenter& center);

    AppLanguage language() const { return m_language; }
    /// Relabels the buttons; a notification that is scheduled keeps its texts.
    void setLanguage(AppLanguage language);
    /// Receives every reaction, with the phase run that the notification was for.
    void setActionHandler(ActionHandler handler);

    /// Schedules the end of the running phase, in place of an earlier request for the same run. The
    /// completion gets the description of what failed; it may run before the call returns.
    void schedule(const TimerSnapshot& snapshot, AlertIntensity intensity, Instant now,
                  Completion completion);
    /// Withdraws the notification of the phase run, if there is one.
    void cancel(const std::optional<Uuid>& sessionID);
    /// Takes the announcement of a phase's end off the screen, because the user has gone on from it.
    void withdrawAnnouncement();
    void authorizationStatus(std::function<void(NotificationAuthorizationSnapshot)> completion);
    void requestAuthorization(Completion completion);
    /// Called whenever the authorization status may have changed by itself.
    void setAuthorizationChangeHandler(std::function<void()> handler);

private:
    void registerActionCategory();
    NotificationRequest makeRequest(const TimerSnapshot& snapshot, AlertIntensity intensity) const;

    UserNotificationCenter& m_center;
    AppLanguage m_language = AppLanguage::simplifiedChinese;
    ActionHandler m_actionHandler;
};

} // namespace brevlin
