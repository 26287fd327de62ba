#include "core/statistics_calculator.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <optional>

namespace brevlin {

namespace {

using std::chrono::days;

constexpr int summaryDayCount = 7;

/// Asks for a record that is looked at soon: with so much between the few fields that are read, the memory
/// would otherwise be waited for at nearly every one.
void prefetch(std::span<const SessionRecord> sessions, std::size_t index)
{
    constexpr std::size_t ahead = 24;
    if (index + ahead < sessions.size()) {
        __builtin_prefetch(&sessions[index + ahead].endedAt);
        __builtin_prefetch(&sessions[index + ahead].outcomeRawValue);
    }
}

bool isFocus(const SessionRecord& record)
{
    return record.phase() == TimerPhase::focus;
}

bool isCompleted(const SessionRecord& record)
{
    const auto outcome = record.outcome();
    return outcome && isCompletion(*outcome);
}

/// The completed focus records of one set, added up.
struct FocusTotal
{
    Seconds duration{0.0};
    std::int64_t count = 0;

    void add(const SessionRecord& record)
    {
        duration += std::max(record.effectiveDuration, Seconds::zero());
        ++count;
    }

    std::int64_t minutes() const
    {
        // A damaged record may claim more than an integer can hold.
        constexpr double limit = 9.0e18;
        return static_cast<std::int64_t>(std::min(duration.count() / 60.0, limit));
    }
};

/// Gives the local date of one instant after the other. Records come sorted, so most fall on the date of the
/// one before, which two comparisons tell.
class LocalDayReader final
{
public:
    explicit LocalDayReader(const Calendar& calendar) : m_calendar(calendar) {}

    LocalDay read(Instant instant)
    {
        if (!m_safe.contains(instant)) {
            m_day = m_calendar.localDay(instant);
            // Only the middle of the day: near midnight a clock that goes back may show either date.
            const Instant start = m_calendar.start(m_day);
            m_safe = {start + Seconds{7200.0}, start + Seconds{72'000.0}};
        }
        return m_day;
    }

private:
    const Calendar& m_calendar;
    LocalDay m_day;
    DateInterval m_safe;
};

std::int64_t currentStreak(std::vector<LocalDay> activeDays, LocalDay today, const Calendar& calendar)
{
    std::sort(activeDays.begin(), activeDays.end(), std::greater<>{});
    activeDays.erase(std::unique(activeDays.begin(), activeDays.end()), activeDays.end());
    auto active = std::lower_bound(activeDays.begin(), activeDays.end(), today, std::greater<>{});
    LocalDay day = today;
    if (active == activeDays.end() || *active != day) {
        day = calendar.dayBefore(today);
    }
    std::int64_t streak = 0;
    while (active != activeDays.end() && *active == day) {
        ++streak;
        ++active;
        // The date before as the calendar counts, or, where that one never was, the one before it.
        const LocalDay before = day - days{1};
        day = active != activeDays.end() && *active == before ? before : calendar.dayBefore(day);
    }
    return streak;
}

std::vector<Instant> bucketStarts(const StatisticsGranularityRow& kind, const DateInterval& interval,
                                  const Calendar& calendar)
{
    std::vector<Instant> starts;
    const LocalDay first = calendar.localDay(interval.start);
    const std::int64_t count =
        kind.bucketCount > 0 ? kind.bucketCount : calendar.dayDifference(interval.start, interval.end);
    for (std::int64_t offset = 0; offset < count; ++offset) {
        starts.push_back(kind.bucketSize == FocusTimeBucketSize::hour
                             ? calendar.date(first, static_cast<int>(offset))
                             : calendar.start(first + days{offset}));
    }
    return starts;
}

double rate(std::int64_t completed, std::int64_t attempted)
{
    return attempted == 0 ? 0.0 : static_cast<double>(completed) / static_cast<double>(attempted);
}

} // namespace

const StatisticsGranularityRow& row(StatisticsGranularity granularity)
{
    using enum StatisticsGranularity;
    static constexpr std::array rows{
        StatisticsGranularityRow{day, CalendarUnit::day, FocusTimeBucketSize::hour, 24},
        StatisticsGranularityRow{week, CalendarUnit::weekOfYear, FocusTimeBucketSize::day, 7},
        StatisticsGranularityRow{month, CalendarUnit::month, FocusTimeBucketSize::day, 0},
        StatisticsGranularityRow{year, CalendarUnit::year, FocusTimeBucketSize::day, 0},
    };
    return *std::find_if(rows.begin(), rows.end(),
                         [granularity](const auto& each) { return each.granularity == granularity; });
}

StatisticsSummary StatisticsCalculator::calculate(std::span<const SessionRecord> sessions, Instant now,
                                                  const Calendar& calendar)
{
    const LocalDay today = calendar.localDay(now);
    LocalDayReader localDays(calendar);
    std::int64_t attempted = 0;
    std::int64_t completed = 0;
    std::array<FocusTotal, summaryDayCount> recent; // by days before today
    std::vector<LocalDay> activeDays;
    for (std::size_t index = 0; index < sessions.size(); ++index) {
        prefetch(sessions, index);
        const SessionRecord& record = sessions[index];
        if (!isFocus(record)) {
            continue;
        }
        ++attempted;
        if (!isCompleted(record)) {
            continue;
        }
        ++completed;
        const LocalDay day = localDays.read(record.endedAt);
        if (activeDays.empty() || activeDays.back() != day) {
            activeDays.push_back(day);
        }
        const auto age = (today - day).count();
        if (age >= 0 && age < summaryDayCount) {
            recent.at(static_cast<std::size_t>(age)).add(record);
        }
    }

    StatisticsSummary summary;
    summary.todayFocusMinutes = recent.front().minutes();
    summary.completedPomodoros = completed;
    summary.completionRate = rate(completed, attempted);
    summary.currentStreak = currentStreak(std::move(activeDays), today, calendar);
    for (int age = summaryDayCount - 1; age >= 0; --age) {
        const LocalDay day = today - days{age};
        if (calendar.exists(day)) {
            const FocusTotal& total = recent.at(static_cast<std::size_t>(age));
            summary.lastSevenDays.push_back({calendar.start(day), total.minutes(), total.count});
        }
    }
    return summary;
}

PeriodStatistics StatisticsCalculator::calculatePeriod(std::span<const SessionRecord> sessions,
                                                       StatisticsGranularity granularity, Instant anchor,
                                                       const Calendar& calendar)
{
    PeriodStatistics result;
    result.granularity = granularity;
    const StatisticsGranularityRow& kind = row(granularity);
    result.interval = calendar.interval(kind.period, anchor);
    const std::vector<Instant> starts = bucketStarts(kind, result.interval, calendar);
    const LocalDay firstDay = calendar.localDay(result.interval.start);

    LocalDayReader localDays(calendar);
    FocusTotal whole;
    std::vector<FocusTotal> totals(starts.size());
    for (std::size_t index = 0; index < sessions.size(); ++index) {
        prefetch(sessions, index);
        const SessionRecord& record = sessions[index];
        if (!result.interval.contains(record.endedAt) || !isFocus(record)) {
            continue;
        }
        ++result.attemptedPomodoros;
        if (!isCompleted(record)) {
            continue;
        }
        whole.add(record);
        const std::int64_t bucket = kind.bucketSize == FocusTimeBucketSize::hour
                                        ? calendar.hour(record.endedAt)
                                        : (localDays.read(record.endedAt) - firstDay).count();
        if (bucket >= 0 && bucket < static_cast<std::int64_t>(totals.size())) {
            totals[static_cast<std::size_t>(bucket)].add(record);
        }
    }

    result.totalFocusMinutes = whole.minutes();
    result.completedPomodoros = whole.count;
    result.completionRate = rate(whole.count, result.attemptedPomodoros);
    for (std::size_t index = 0; index < starts.size(); ++index) {
        const FocusTotal& total = totals[index];
        result.buckets.push_back(
            {static_cast<std::int64_t>(index), starts[index], total.minutes(), total.count});
        result.activeUnitCount += total.count >= 1 ? 1 : 0;
    }
    return result;
}

} // namespace brevlin
