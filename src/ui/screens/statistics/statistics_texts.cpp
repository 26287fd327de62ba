#include "ui/screens/statistics/statistics_texts.h"

#include "ui/style/text.h"

#include <array>
#include <chrono>
#include <cmath>

namespace brevlin {

namespace {

// In the order of StatisticsGranularity.
constexpr std::array texts{
    GranularityTexts{{"天", "Day"},
                     {"日", "D"},
                     {"按完成时刻查看 24 小时分布", "24-hour distribution by completion time"},
                     {"当日专注", "Daily focus"},
                     {"24 小时专注分布", "24-hour focus distribution"}},
    GranularityTexts{{"周", "Week"},
                     {"周", "W"},
                     {"按天查看本周节奏", "Daily rhythm for the week"},
                     {"本周专注", "Weekly focus"},
                     {"一周专注趋势", "Weekly focus trend"}},
    GranularityTexts{{"月", "Month"},
                     {"月", "M"},
                     {"按日期查看专注热力", "Daily focus heatmap for the month"},
                     {"本月专注", "Monthly focus"},
                     {"月度专注热力", "Monthly focus heatmap"}},
    GranularityTexts{{"年", "Year"},
                     {"年", "Y"},
                     {"按天查看全年专注热力", "Daily focus heatmap for the year"},
                     {"本年专注", "Yearly focus"},
                     {"年度专注热力", "Yearly focus heatmap"}},
};

constexpr std::string_view monthAndDay = "MMMd";

QString insightTitle(const PeriodStatistics& statistics, const FocusTimeBucket& best,
                     const Calendar& calendar, AppLanguage language)
{
    const bool isEnglish = language == AppLanguage::english;
    switch (statistics.granularity) {
    case StatisticsGranularity::day: {
        const QString hour = QStringLiteral("%1:00").arg(best.index, 2, 10, QLatin1Char('0'));
        return isEnglish ? QStringLiteral("Most focus completed at ") + hour
                         : hour + QStringLiteral(" 完成的专注最多");
    }
    case StatisticsGranularity::week:
    case StatisticsGranularity::month:
    case StatisticsGranularity::year:
        break;
    }
    const bool isWeek = statistics.granularity == StatisticsGranularity::week;
    const QString day = qtText(calendar.text(isWeek ? "EEEE" : monthAndDay, best.start));
    return isEnglish ? QStringLiteral("Most focus completed on ") + day
                     : day + QStringLiteral("完成的专注最多");
}

} // namespace

const GranularityTexts& granularityTexts(StatisticsGranularity granularity)
{
    return texts.at(static_cast<std::size_t>(granularity));
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
    const Instant start = statistics.interval.start;
    switch (statistics.granularity) {
    case StatisticsGranularity::day:
        return qtText(calendar.text("yMMMdEEEE", start));
    case StatisticsGranularity::week: {
        const Instant last = calendar.adding(CalendarUnit::day, -1, statistics.interval.end);
        return qtText(calendar.text(monthAndDay, start)) + QStringLiteral(" – ") +
               qtText(calendar.text(monthAndDay, last));
    }
    case StatisticsGranularity::month:
        return qtText(calendar.text("yMMMM", start));
    case StatisticsGranularity::year:
        break;
    }
    return qtText(calendar.text("y", start));
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
