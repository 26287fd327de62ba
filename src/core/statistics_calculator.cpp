#include "core/statistics_calculator.h"

#include <algorithm>
#include <chrono>
#include <optional>

namespace brevlin {

namespace {

using std::chrono::days;

constexpr int summaryDayCount = 7;

bool isFocus(const SessionRecord& record)
{
    return record.phaseRawValue == TimerPhase::focus;
}

bool isCompleted(const SessionRecord& record)
{
    const auto outcome = record.outcome();
    return outcome && isCompletion(*outcome);
}

bool isCompletedFocusRecord(const SessionRecord& record)
{
    return isFocus(record) && isCompleted(record);
}

using Sessions = std::span<const SessionRecord>;

/// The first record that ended before this instant.
Sessions::iterator firstBefore(Sessions sessions, Instant instant)
{
    return std::partition_point(sessions.begin(), sessions.end(),
                                [instant](const SessionRecord& record) { return record.endedAt >= instant; });
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

/// Whether a focus phase was completed on a date, asked of one date after the other, each before the last.
/// Years of records take long to come from memory, so most are passed over: those of a date are looked for,
/// to both sides, from where the dates before make them likely.
class ActiveDays final
{
public:
    ActiveDays(Sessions sessions, const Calendar& calendar) : m_sessions(sessions), m_calendar(calendar) {}

    bool contain(LocalDay day)
    {
        // From a date's first instant to its last, also where a zone moves over the date line and shows it
        // twice.
        constexpr Seconds longestDate{72.0 * 3600.0};
        const Instant begin = m_calendar.start(day);
        const std::size_t guess = std::min(m_latest + m_pace, m_sessions.size());
        if (const std::size_t soon = guess + 3 * m_pace; soon < m_sessions.size()) {
            __builtin_prefetch(&m_sessions[soon]);
        }
        for (std::size_t older = guess; older < m_sessions.size() && m_sessions[older].endedAt >= begin;
             ++older) {
            if (isOf(day, older)) {
                return true;
            }
        }
        for (std::size_t newer = guess; newer-- > 0 && m_sessions[newer].endedAt < begin + longestDate;) {
            if (m_sessions[newer].endedAt >= begin && isOf(day, newer)) {
                return true;
            }
        }
        return false;
    }

private:
    bool isOf(LocalDay day, std::size_t place)
    {
        const SessionRecord& record = m_sessions[place];
        if (!isCompletedFocusRecord(record) || m_calendar.localDay(record.endedAt) != day) {
            return false;
        }
        m_pace = (3 * m_pace + (place - std::min(m_latest, place)) + 2) / 4;
        m_latest = place;
        return true;
    }

    Sessions m_sessions;
    const Calendar& m_calendar;
    std::size_t m_latest = 0; // where the last date was found
    std::size_t m_pace = 0;   // records from a date to the one before, of late
};

/// Days in a row with a completed focus phase, up to today or yesterday. Looks no further back than they go.
std::int64_t currentStreak(Sessions sessions, LocalDay today, const Calendar& calendar)
{
    ActiveDays activeDays(sessions, calendar);
    LocalDay day = activeDays.contain(today) ? today : calendar.dayBefore(today);
    bool isInIt = activeDays.contain(day);
    std::int64_t streak = 0;
    while (isInIt) {
        ++streak;
        const LocalDay later = day;
        day = later - days{1};
        isInIt = activeDays.contain(day);
        if (!isInIt && !calendar.exists(day)) {
            // A date that never was breaks no streak.
            day = calendar.dayBefore(later);
            isInIt = activeDays.contain(day);
        }
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
    starts.reserve(static_cast<std::size_t>(count));
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

FocusCounts::FocusCounts(std::span<const SessionRecord> sessions)
{
    for (const SessionRecord& record : sessions) {
        add(record);
    }
}

void FocusCounts::add(const SessionRecord& record)
{
    attempted += isFocus(record) ? 1 : 0;
    completed += isCompletedFocusRecord(record) ? 1 : 0;
}

void FocusCounts::remove(const SessionRecord& record)
{
    attempted -= isFocus(record) ? 1 : 0;
    completed -= isCompletedFocusRecord(record) ? 1 : 0;
}

StatisticsSummary StatisticsCalculator::calculate(std::span<const SessionRecord> sessions, Instant now,
                                                  const Calendar& calendar)
{
    return calculate(sessions, FocusCounts(sessions), now, calendar);
}

StatisticsSummary StatisticsCalculator::calculate(std::span<const SessionRecord> sessions,
                                                  const FocusCounts& counts, Instant now,
                                                  const Calendar& calendar)
{
    const LocalDay today = calendar.localDay(now);
    const LocalDay firstDay = today - days{summaryDayCount - 1};
    std::array<FocusTotal, summaryDayCount> recent; // by days before today
    const auto first = sessions.begin();
    for (const SessionRecord& record : Sessions{first, firstBefore(sessions, calendar.start(firstDay))}) {
        const auto age = (today - calendar.localDay(record.endedAt)).count();
        if (isCompletedFocusRecord(record) && age >= 0 && age < summaryDayCount) {
            recent.at(static_cast<std::size_t>(age)).add(record);
        }
    }

    StatisticsSummary summary;
    summary.todayFocusMinutes = recent.front().minutes();
    summary.completedPomodoros = counts.completed;
    summary.completionRate = rate(counts.completed, counts.attempted);
    summary.currentStreak = currentStreak(sessions, today, calendar);
    for (int age = summaryDayCount - 1; age >= 0; --age) {
        const LocalDay day = today - days{age};
        if (calendar.exists(day)) {
            const FocusTotal& total = recent.at(static_cast<std::size_t>(age));
            summary.lastSevenDays.push_back({calendar.start(day), total.minutes(), total.count});
        }
    }
    return summary;
}

Sessions StatisticsCalculator::endedWithin(Sessions sessions, const DateInterval& interval)
{
    const auto first = firstBefore(sessions, interval.end);
    return {first, std::max(first, firstBefore(sessions, interval.start))};
}

bool StatisticsCalculator::isCompletedFocus(const SessionRecord& record)
{
    return isCompletedFocusRecord(record);
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

    FocusTotal whole;
    std::vector<FocusTotal> totals(starts.size());
    const Sessions within = endedWithin(sessions, result.interval);
    for (std::size_t index = 0; index < within.size(); ++index) {
        constexpr std::size_t ahead = 40; // the processor by itself fetches no further than a page's end
        __builtin_prefetch(&within[std::min(index + ahead, within.size() - 1)]);
        const SessionRecord& record = within[index];
        if (!isFocus(record)) {
            continue;
        }
        ++result.attemptedPomodoros;
        if (!isCompleted(record)) {
            continue;
        }
        whole.add(record);
        const std::int64_t bucket = kind.bucketSize == FocusTimeBucketSize::hour
                                        ? calendar.hour(record.endedAt)
                                        : (calendar.localDay(record.endedAt) - firstDay).count();
        if (bucket >= 0 && bucket < static_cast<std::int64_t>(totals.size())) {
            totals[static_cast<std::size_t>(bucket)].add(record);
        }
    }

    result.totalFocusMinutes = whole.minutes();
    result.completedPomodoros = whole.count;
    result.completionRate = rate(whole.count, result.attemptedPomodoros);
    result.buckets.reserve(starts.size());
    for (std::size_t index = 0; index < starts.size(); ++index) {
        const FocusTotal& total = totals[index];
        result.buckets.push_back(
            {static_cast<std::int64_t>(index), starts[index], total.minutes(), total.count});
        result.activeUnitCount += total.count >= 1 ? 1 : 0;
    }
    return result;
}

} // namespace brevlin
