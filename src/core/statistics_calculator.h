#pragma once

#include "core/calendar.h"
#include "core/instant.h"
#include "core/raw_value.h"
#include "core/session_record.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace brevlin {

/// What was completed on one day.
struct DayFocusTotal
{
    Instant day; ///< the day's first instant
    std::int64_t focusMinutes = 0;
    std::int64_t completedPomodoros = 0;

    bool operator==(const DayFocusTotal&) const = default;
};

/// What of all time only every record tells. Whoever keeps a history keeps them beside it: to count anew is
/// to wait for the memory of every record.
struct FocusCounts
{
    std::int64_t attempted = 0; ///< focus phases, whatever their outcome
    std::int64_t completed = 0;

    FocusCounts() = default;
    explicit FocusCounts(std::span<const SessionRecord> sessions);
    void add(const SessionRecord& record);
    void remove(const SessionRecord& record);
    bool operator==(const FocusCounts&) const = default;
};

/// Today, the last seven days and the whole history in a few figures.
struct StatisticsSummary
{
    std::int64_t todayFocusMinutes = 0;
    std::int64_t completedPomodoros = 0; ///< of all time
    std::int64_t currentStreak =
        0;                       ///< consecutive days with a completed focus phase, up to today or yesterday
    double completionRate = 0.0; ///< completed / attempted focus phases of all time, 0 to 1
    std::vector<DayFocusTotal> lastSevenDays; ///< oldest first; a date that never was is left out

    bool operator==(const StatisticsSummary&) const = default;
};

enum class StatisticsGranularity { day, week, month, year };

enum class FocusTimeBucketSize { hour, day };

template <>
struct RawValues<StatisticsGranularity>
{
    static constexpr std::array cases{
        RawValueCase<StatisticsGranularity>{StatisticsGranularity::day, "day"},
        RawValueCase<StatisticsGranularity>{StatisticsGranularity::week, "week"},
        RawValueCase<StatisticsGranularity>{StatisticsGranularity::month, "month"},
        RawValueCase<StatisticsGranularity>{StatisticsGranularity::year, "year"},
    };
};

/// What a granularity means to the calendar.
struct StatisticsGranularityRow
{
    StatisticsGranularity granularity = StatisticsGranularity::week;
    CalendarUnit period = CalendarUnit::weekOfYear;
    FocusTimeBucketSize bucketSize = FocusTimeBucketSize::day;
    int bucketCount = 0; ///< 0 for as many days as the period has
};
const StatisticsGranularityRow& row(StatisticsGranularity granularity);

/// One hour of a day, or one day of a longer period.
struct FocusTimeBucket
{
    std::int64_t index = 0; ///< position in the period, from 0
    Instant start;
    std::int64_t focusMinutes = 0;
    std::int64_t completedPomodoros = 0;

    bool operator==(const FocusTimeBucket&) const = default;
};

/// One day, week, month or year of the history.
struct PeriodStatistics
{
    StatisticsGranularity granularity = StatisticsGranularity::week;
    DateInterval interval;
    std::int64_t totalFocusMinutes =
        0; ///< of the whole period; buckets round down one by one and may add up to less
    std::int64_t completedPomodoros = 0;
    std::int64_t attemptedPomodoros = 0; ///< focus phases, whatever their outcome
    std::int64_t activeUnitCount = 0;    ///< buckets with a completed focus phase
    double completionRate = 0.0;         ///< 0 to 1
    std::vector<FocusTimeBucket> buckets;

    bool operator==(const PeriodStatistics&) const = default;
};

/// All figures about past focus work. Breaks, and records whose phase names no case, never count; a record
/// belongs to the local date and hour of its end. The records are sorted as in the history, latest end first.
namespace StatisticsCalculator {

StatisticsSummary calculate(std::span<const SessionRecord> sessions, Instant now, const Calendar& calendar);
/// The same, for sessions whose counts are known.
StatisticsSummary calculate(std::span<const SessionRecord> sessions, const FocusCounts& counts, Instant now,
                            const Calendar& calendar);

/// The period of the given kind that contains the anchor.
PeriodStatistics calculatePeriod(std::span<const SessionRecord> sessions, StatisticsGranularity granularity,
                                 Instant anchor, const Calendar& calendar);

/// The records of the period.
std::span<const SessionRecord> endedWithin(std::span<const SessionRecord> sessions,
                                           const DateInterval& interval);
/// Whether the record counts in the focus time.
bool isCompletedFocus(const SessionRecord& record);

} // namespace StatisticsCalculator

} // namespace brevlin
