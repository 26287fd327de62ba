#include "ui/screens/statistics/statistics_texts.h"

#include "ui/screens/statistics/granularity_row.h"
#include "ui/style/text.h"

#include <chrono>
#include <cmath>

namespace brevlin {

namespace {

QString insightTitle(const PeriodStatistics& statistics, const FocusTimeBucket& best,
                     const Calendar& calendar, AppLanguage language)
{
    const bool isEnglish = language == AppLanguage::english;
    if (row(statistics.granularity).bucketSize == FocusTimeBucketSize::hour) {
        const QString hour = hourText(best);
        return isEnglish ? QStringLiteral("Most focus completed at ") + hour
                         : hour + QStringLiteral(" 完成的专注最多");
    }
    const QString day = qtText(calendar.text(granularityRow(statistics.granularity).bestBucket, best.start));
    return isEnglish ? QStringLiteral("Most focus completed on ") + day
                     : day + QStringLiteral("完成的专注最多");
}

} // namespace

QString hourText(const FocusTimeBucket& bucket)
{
    return QStringLiteral("%1:00").arg(bucket.index, 2, 10, QLatin1Char('0'));
}

Calendar statisticsCalendar(const TimeZone& zone, AppLanguage language)
{
    // The year's first week is the one with its first Thursday, as ISO 8601 counts.
    constexpr int minimalDays = 4;
    return Calendar(zone, std::string(localeIdentifier(language)))
        .withWeeks(std::chrono::Monday, minimalDays);
}

QString periodTitle(const PeriodStatistics& statistics, const Calendar& calendar)
{
    const GranularityRow& kind = granularityRow(statistics.granularity);
    QString first = qtText(calendar.text(kind.period, statistics.interval.start));
    if (!kind.isPeriodOfTwoDates) {
        return first;
    }
    const Instant last = calendar.adding(CalendarUnit::day, -1, statistics.interval.end);
    return first + QStringLiteral(" – ") + qtText(calendar.text(kind.period, last));
}

QString focusDurationText(std::int64_t minutes, AppLanguage language)
{
    const bool isEnglish = language == AppLanguage::english;
    if (minutes < 60) {
        return QString::number(minutes) + (isEnglish ? QStringLiteral(" min") : QStringLiteral(" 分"));
    }
    const QString hours = QString::number(minutes / 60);
    if (minutes % 60 == 0) {
        return hours + (isEnglish ? QStringLiteral(" hr") : QStringLiteral(" 小时"));
    }
    const QString rest = QString::number(minutes % 60);
    return isEnglish ? hours + QStringLiteral(" hr ") + rest + QStringLiteral(" min")
                     : hours + QStringLiteral("时 ") + rest + QStringLiteral("分");
}

QString percentText(double rate)
{
    return QString::number(std::llround(rate * 100)) + QLatin1Char('%');
}

QString activitySubtitle(const PeriodStatistics& statistics, AppLanguage language)
{
    const bool isEnglish = language == AppLanguage::english;
    if (statistics.attemptedPomodoros == 0) {
        return isEnglish ? QStringLiteral("No focus sessions in this period")
                         : QStringLiteral("这个时间范围内还没有专注记录");
    }
    return (isEnglish ? QStringLiteral("Completed %1 of %2 attempts")
                      : QStringLiteral("完成 %1 个，共尝试 %2 个番茄"))
        .arg(statistics.completedPomodoros)
        .arg(statistics.attemptedPomodoros);
}

std::optional<FocusTimeBucket> bestBucket(const PeriodStatistics& statistics)
{
    std::optional<FocusTimeBucket> best;
    for (const FocusTimeBucket& bucket : statistics.buckets) {
        if (bucket.focusMinutes >= 1 && (!best || bucket.focusMinutes > best->focusMinutes)) {
            best = bucket;
        }
    }
    return best;
}

Insight insight(const PeriodStatistics& statistics, const std::optional<FocusTimeBucket>& best,
                const Calendar& calendar, AppLanguage language)
{
    const bool isEnglish = language == AppLanguage::english;
    if (!best) {
        return {isEnglish ? QStringLiteral("Start with one complete Pomodoro")
                          : QStringLiteral("从一个完整番茄开始"),
                isEnglish ? QStringLiteral("Insights will appear after you complete a focus session.")
                          : QStringLiteral("完成一轮后，专注分布与节奏洞察会自动出现在这里。")};
    }
    const std::int64_t average =
        statistics.completedPomodoros == 0 ? 0 : statistics.totalFocusMinutes / statistics.completedPomodoros;
    return {insightTitle(statistics, *best, calendar, language),
            (isEnglish ? QStringLiteral("Peak: %1 min; average completed Pomodoro: %2 min.")
                       : QStringLiteral("最高记录为 %1 分钟；平均每个完整番茄专注 %2 分钟。"))
                .arg(best->focusMinutes)
                .arg(average)};
}

QString streakText(std::int64_t days, AppLanguage language)
{
    return (language == AppLanguage::english ? QStringLiteral("%1-day streak") : QStringLiteral("连续 %1 天"))
        .arg(days);
}

} // namespace brevlin
