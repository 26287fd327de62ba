#include "ui/screens/statistics/activity_texts.h"

#include "ui/screens/statistics/granularity_row.h"
#include "ui/screens/statistics/statistics_texts.h"
#include "ui/style/text.h"

namespace brevlin {

QString bucketToolTip(StatisticsGranularity granularity, const FocusTimeBucket& bucket,
                      const Calendar& calendar, AppLanguage language)
{
    const QString when = row(granularity).bucketSize == FocusTimeBucketSize::hour
                             ? hourText(bucket)
                             : qtText(calendar.text(granularityRow(granularity).bucketTip, bucket.start));
    return when + (language == AppLanguage::english ? QStringLiteral(" · %1 min · %2 Pomodoros")
                                                    : QStringLiteral(" · %1 分钟 · %2 个番茄"))
                      .arg(bucket.focusMinutes)
                      .arg(bucket.completedPomodoros);
}

QString bucketName(StatisticsGranularity granularity, const FocusTimeBucket& bucket, const Calendar& calendar,
                   AppLanguage language)
{
    if (row(granularity).bucketSize == FocusTimeBucketSize::day) {
        return qtText(calendar.text(granularityRow(granularity).bucketName, bucket.start));
    }
    return language == AppLanguage::english ? QStringLiteral("Focus completed at ") + hourText(bucket)
                                            : QString::number(bucket.index) + QStringLiteral(" 点完成的专注");
}

QString bucketValue(const FocusTimeBucket& bucket, AppLanguage language)
{
    if (language == AppLanguage::simplifiedChinese) {
        return QStringLiteral("%1 分钟，%2 个番茄").arg(bucket.focusMinutes).arg(bucket.completedPomodoros);
    }
    return (bucket.completedPomodoros == 1 ? QStringLiteral("%1 min, %2 Pomodoro")
                                           : QStringLiteral("%1 min, %2 Pomodoros"))
        .arg(bucket.focusMinutes)
        .arg(bucket.completedPomodoros);
}

} // namespace brevlin
