#pragma once

#include "app/history_transfer.h"
#include "core/language.h"
#include "core/timer_vocabulary.h"
#include "platform/user_notification_center.h"
#include "storage/app_preferences.h"
#include "ui/style/symbol.h"

#include <QString>

#include <string_view>
#include <utility>

namespace brevlin {

/// The sentence of a stepper in its two parts, before and after the number.
using SentenceAroundNumber = std::pair<QString, QString>;

/// "Focus duration: " and " min".
SentenceAroundNumber durationSentence(TimerPhase phase, AppLanguage language);
/// "Long break every " and " Pomodoros".
SentenceAroundNumber longBreakIntervalSentence(AppLanguage language);

/// What the user is told of the desktop's notifications.
struct NotificationStatus
{
    Symbol symbol = Symbol::none;
    std::string_view text;
    bool canBeEnabled = false; ///< asking for the permission may help
};
NotificationStatus notificationStatus(NotificationAuthorizationState state, AppLanguage language);

/// Whether a strong alert would be weaker than it promises.
bool strongAlertIsWeakened(AlertIntensity intensity, const NotificationAuthorizationSnapshot& authorization);

/// Each language by its own name, whatever the current one.
std::string_view nativeName(AppLanguage language);

/// "12 records will be deleted."
QString recordsToBeDeleted(std::size_t count, AppLanguage language);

/// "12 records".
QString recordCount(std::size_t count, AppLanguage language);
/// Our sentence, and the system's words behind it where there are any.
QString transferErrorText(const TransferError& error, AppLanguage language);

} // namespace brevlin
