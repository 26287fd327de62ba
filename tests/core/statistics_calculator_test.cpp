#include "core/statistics_calculator.h"
#include "platform/freedesktop/clock/system_time_zone.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

using std::chrono::Monday;

const Calendar berlin = Calendar(timeZoneOf("Europe/Berlin"), "en").withWeeks(Monday, 4);

// An instant by its date and time in Berlin.
Instant local(int y, unsigned m, unsigned d, int hour = 0, int minute = 0, double second = 0)
{
    const LocalDay day{std::chrono::year{y} / std::chrono::month{m} / d};
    return berlin.date(day, hour) + Seconds{minute * 60.0 + second};
}

SessionRecord record(Instant endedAt, double duration = 1500,
                     StoredRawValue<SessionOutcome> outcome = SessionOutcome::completed,
                     StoredRawValue<TimerPhase> phase = TimerPhase::focus)
{
    SessionRecord result;
    result.endedAt = endedAt;
    result.effectiveDuration = Seconds{duration};
    result.outcomeRawValue = outcome;
    result.phaseRawValue = phase;
    return result;
}

const Instant now = local(2026, 11, 24, 9);

TEST(StatisticsSummary, counts_completed_focus_and_nothing_else)
{
    const std::vector<SessionRecord> sessions{
        record(local(2026, 11, 26, 8)), // before the clock was set back
        record(local(2026, 11, 24, 8), 1499),
        record(local(2026, 11, 24, 7), -5, SessionOutcome::completedWhileAway),
        record(local(2026, 11, 24, 6), 600, SessionOutcome::skipped),
        record(local(2026, 11, 24, 5), 300, SessionOutcome::completed, TimerPhase::shortBreak),
        record(local(2026, 11, 24, 4), 300, SessionOutcome::completed, StoredRawValue<TimerPhase>{"nap"}),
        record(local(2026, 11, 24, 3), 900, StoredRawValue<SessionOutcome>{"dozed"}),
        record(local(2026, 11, 23, 23, 59, 59.9), 90),
        record(local(2026, 11, 17, 8)),
        record(local(2025, 1, 1), 6000),
    };
    const StatisticsSummary summary = StatisticsCalculator::calculate(sessions, now, berlin);
    EXPECT_EQ(summary.todayFocusMinutes, 24);
    EXPECT_EQ(summary.completedPomodoros, 6);
    EXPECT_DOUBLE_EQ(summary.completionRate, 6.0 / 8.0);
    EXPECT_EQ(summary.lastSevenDays[6], (DayFocusTotal{local(2026, 11, 24), 24, 2}));
    EXPECT_EQ(summary.lastSevenDays[5], (DayFocusTotal{local(2026, 11, 23), 1, 1}));
}

TEST(StatisticsSummary, a_streak_lives_until_a_whole_day_has_passed)
{
    for (const auto& [daysAgo, streak] : {std::pair{std::vector<int>{}, 0},
                                          {{0, 1, 2}, 3},
                                          {{1, 2}, 2},
                                          {{0, 2}, 1},
                                          {{2, 3}, 0},
                                          {{0}, 1},
                                          {{0, 1, 1, 2}, 3}}) {
        std::vector<SessionRecord> sessions;
        for (const int days : daysAgo) {
            sessions.push_back(record(berlin.adding(CalendarUnit::day, -days, local(2026, 11, 24, 8))));
        }
        EXPECT_EQ(StatisticsCalculator::calculate(sessions, now, berlin).currentStreak, streak);
    }
    // The date that the islands skipped breaks no streak and is no day of the week.
    const Calendar apia(timeZoneOf("Pacific/Apia"), "en");
    const auto noon = [&](unsigned d) {
        return apia.date(LocalDay{std::chrono::year{2011} / 12 / d}, 12);
    };
    const std::vector<SessionRecord> sessions{record(noon(31)), record(noon(29)), record(noon(28))};
    const StatisticsSummary summary = StatisticsCalculator::calculate(sessions, noon(31), apia);
    EXPECT_EQ(summary.currentStreak, 3);
    EXPECT_EQ(summary.lastSevenDays.size(), 6U);
}

TEST(StatisticsSummary, a_streak_is_followed_through_busy_and_quiet_days)
{
    std::vector<SessionRecord> sessions;
    std::int64_t day = 0;
    const auto add = [&](int days, int phases, int breaks) {
        for (const auto last = day + days; day < last; ++day) {
            const Instant evening = berlin.adding(CalendarUnit::day, -day, local(2026, 11, 24, 8));
            for (int minute = 0; minute < phases + breaks; ++minute) {
                const bool isFocus = minute >= breaks / 2 && minute < breaks / 2 + phases;
                sessions.push_back(record(evening - Seconds{60.0 * minute}, 60, SessionOutcome::completed,
                                          isFocus ? TimerPhase::focus : TimerPhase::shortBreak));
            }
        }
    };
    add(30, 1, 0);
    add(4, 1, 300);
    add(40, 1, 1);
    add(3, 300, 0);
    add(50, 2, 6);
    const std::int64_t streak = day;
    add(1, 0, 9);
    add(20, 5, 5);
    EXPECT_EQ(StatisticsCalculator::calculate(sessions, now, berlin).currentStreak, streak);
}

TEST(PeriodStatistics, put_each_record_where_it_ended)
{
    const std::vector<SessionRecord> sessions{
        record(local(2026, 11, 25, 0, 0, 0)),
        record(local(2026, 11, 24, 23, 59, 59)),
        record(local(2026, 11, 24, 14), 59.9),
        record(local(2026, 11, 24, 9, 50), 59.9),
        record(local(2026, 11, 24, 9, 10), 59.9),
        record(local(2026, 11, 24, 9, 5), 600, SessionOutcome::reset),
        record(local(2026, 11, 24, 9, 2), 300, SessionOutcome::completed, TimerPhase::shortBreak),
        record(local(2026, 11, 24, 0, 0, 0), 60),
        record(local(2026, 11, 23, 23, 59, 59)),
    };
    const auto period = [&](StatisticsGranularity granularity) {
        return StatisticsCalculator::calculatePeriod(sessions, granularity, now, berlin);
    };
    const PeriodStatistics day = period(StatisticsGranularity::day);
    EXPECT_EQ(day.granularity, StatisticsGranularity::day);
    EXPECT_EQ(day.completedPomodoros, 5);
    EXPECT_EQ(day.attemptedPomodoros, 6);
    EXPECT_EQ(day.activeUnitCount, 4);
    EXPECT_DOUBLE_EQ(day.completionRate, 5.0 / 6.0);
    EXPECT_EQ(day.totalFocusMinutes, 28); // 1739.7 s
    EXPECT_EQ(day.buckets[9], (FocusTimeBucket{9, local(2026, 11, 24, 9), 1, 2}));
    EXPECT_EQ(day.buckets[14].focusMinutes, 0);
    EXPECT_EQ(day.buckets[0].completedPomodoros, 1);
    EXPECT_EQ(day.buckets[23].completedPomodoros, 1);

    const PeriodStatistics week = period(StatisticsGranularity::week);
    EXPECT_EQ(week.activeUnitCount, 3);
    EXPECT_EQ(week.buckets[1].completedPomodoros, 5);
    EXPECT_EQ(period(StatisticsGranularity::month).buckets.size(), 30U);
    EXPECT_EQ(period(StatisticsGranularity::year).buckets[327],
              (FocusTimeBucket{327, local(2026, 11, 24), 28, 5}));
}

TEST(PeriodStatistics, a_record_near_a_midnight_that_comes_twice_keeps_its_date)
{
    // In Havana, 00:00 to 01:00 of 2024-11-03 comes twice.
    const Calendar havana = Calendar(timeZoneOf("America/Havana"), "en").withWeeks(Monday, 4);
    const Instant firstMidnight = havana.start(LocalDay{std::chrono::year{2024} / 11 / 3});
    std::vector<SessionRecord> sessions;
    for (const double offset : {7200.0, 5400.0, 3600.0, 1800.0, 0.0, -1.0}) {
        sessions.push_back(record(firstMidnight + Seconds{offset}));
    }
    const PeriodStatistics month =
        StatisticsCalculator::calculatePeriod(sessions, StatisticsGranularity::month, firstMidnight, havana);
    EXPECT_EQ(month.buckets[1].completedPomodoros, 1);
    EXPECT_EQ(month.buckets[2].completedPomodoros, 5);
    // In Saint John's the clock went back to the date before a minute after midnight: outside of every
    // bucket.
    const Calendar johns = Calendar(timeZoneOf("America/St_Johns"), "en").withWeeks(std::chrono::Sunday, 1);
    const Instant anchor = johns.start(LocalDay{std::chrono::year{2010} / 11 / 7});
    const std::vector<SessionRecord> late{record(anchor + Seconds{1800.0})};
    const PeriodStatistics week =
        StatisticsCalculator::calculatePeriod(late, StatisticsGranularity::week, anchor, johns);
    EXPECT_EQ(week.completedPomodoros, 1);
    EXPECT_EQ(week.activeUnitCount, 0);
}

TEST(PeriodStatistics, attempts_without_completion_and_absurd_durations_are_told_as_they_are)
{
    const std::vector<SessionRecord> attempts{record(now, 600, SessionOutcome::skipped)};
    const auto none =
        StatisticsCalculator::calculatePeriod(attempts, StatisticsGranularity::week, now, berlin);
    EXPECT_EQ(none.attemptedPomodoros, 1);
    EXPECT_EQ(none.completionRate, 0.0);
    EXPECT_EQ(none.activeUnitCount, 0);
    const std::vector<SessionRecord> absurd{record(now, 1e300)};
    EXPECT_GT(StatisticsCalculator::calculate(absurd, now, berlin).todayFocusMinutes, 0);
}

} // namespace
} // namespace brevlin
