#include "ui/screens/statistics/activity_texts.h"

#include "ui/screens/statistics/statistics_texts.h"
#include "ui/style/text.h"

namespace brevlin {

namespace {

QString twoDigits(std::int64_t hour)
{
    return QStringLiteral("%1").arg(hour, 2, 10, QLatin1Char('0'));
}

} // namespace

QString activityName(StatisticsGranularity granularity, AppLanguage language)
{
    switch (granularity) {
    case StatisticsGranularity::day:
    case StatisticsGranularity::week:
        return qtText(granularityTexts(granularity).activityTitle.in(language));
    case StatisticsGranularity::month:
        return qtText(BilingualText{"月度专注热力图", "Monthly focus heatmap"}.in(language));
    case StatisticsGranularity::year:
        break;
    }
    return qtText(BilingualText{"年度专注热力图", "Yearly focus heatmap"}.in(language));
}

QString bucketToolTip(StatisticsGranularity granularity, const FocusTimeBucket& bucket,
                      const Calendar& calendar, AppLanguage language)
{
    QString when;
    switch (granularity) {
    case StatisticsGranularity::day:
        when = twoDigits(bucket.index) + QStringLiteral(":00");
        break;
    case StatisticsGranularity::week:
        when = qtText(calendar.text("MMMdEEEE", bucket.start));
        break;
    case StatisticsGranularity::month:
    case StatisticsGranularity::year:
        when = qtText(calendar.text("yMMMdEEEE", bucket.start));
        break;
    }
    return when + (language == AppLanguage::english ? QStringLiteral(" · %1 min · %2 Pomodoros")
                                                    : QStringLiteral(" · %1 分钟 · %2 个番茄"))
                      .arg(bucket.focusMinutes)
                      .arg(bucket.completedPomodoros);
}

QString bucketName(StatisticsGranularity granularity, const FocusTimeBucket& bucket, const Calendar& calendar,
                   AppLanguage language)
{
    const bool isEnglish = language == AppLanguage::english;
    switch (granularity) {
    case StatisticsGranularity::day:
        return isEnglish
                   ? QStringLiteral("Focus completed at ") + twoDigits(bucket.index) + QStringLiteral(":00")
                   : QString::number(bucket.index) + QStringLiteral(" 点完成的专注");
    case StatisticsGranularity::week:
        return qtText(calendar.text("MMMdEEEE", bucket.start));
    case StatisticsGranularity::month:
    case StatisticsGranularity::year:
        break;
    }
    return qtText(calendar.text("MMMd", bucket.start));
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
