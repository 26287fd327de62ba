#pragma once

#include "core/calendar.h"
#include "core/language.h"
#include "core/statistics_calculator.h"

#include <QString>

// What the bars and cells of the charts say, from values alone. Asked for one at a time: the texts of a whole
// year would take longer to make than the chart to paint.
namespace brevlin {

QString bucketToolTip(StatisticsGranularity granularity, const FocusTimeBucket& bucket,
                      const Calendar& calendar, AppLanguage language);
/// The hour or the day, for assistive technology.
QString bucketName(StatisticsGranularity granularity, const FocusTimeBucket& bucket, const Calendar& calendar,
                   AppLanguage language);
/// What was done then, for assistive technology.
QString bucketValue(const FocusTimeBucket& bucket, AppLanguage language);

} // namespace brevlin
