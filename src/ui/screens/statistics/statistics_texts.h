#pragma once

#include "core/calendar.h"
#include "core/language.h"
#include "core/statistics_calculator.h"

#include <QString>

#include <cstdint>
#include <optional>

// What the statistics screen says, from values alone.
namespace brevlin {

/// Dates in the language's own form and the given zone, in weeks that begin on Monday.
Calendar statisticsCalendar(const TimeZone& zone, AppLanguage language);

/// Takes the calendar's locale for the form of dates.
QString periodTitle(const PeriodStatistics& statistics, const Calendar& calendar);
/// The bucket's hour: "09:00".
QString hourText(const FocusTimeBucket& bucket);
/// Minutes, or hours and minutes: "45 min", "2 hr 5 min", "2时 5分". At least 0 minutes.
QString focusDurationText(std::int64_t minutes, AppLanguage language);
QString percentText(double rate);
QString activitySubtitle(const PeriodStatistics& statistics, AppLanguage language);

/// The bucket with the most focus minutes, the earliest of equals; nothing where none has a whole minute.
std::optional<FocusTimeBucket> bestBucket(const PeriodStatistics& statistics);

struct Insight
{
    QString title;
    QString detail;
};
Insight insight(const PeriodStatistics& statistics, const std::optional<FocusTimeBucket>& best,
                const Calendar& calendar, AppLanguage language);
QString streakText(std::int64_t days, AppLanguage language);

} // namespace brevlin
