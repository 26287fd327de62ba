// Reads a history and questions from the standard input and prints the figures as JSON, one line a question,
// for figures.py to compare with its own. First the number of records, and a line for each:
// end and length in seconds, phase, outcome. Then the questions: zone, granularity, anchor.

#include "core/statistics_calculator.h"
#include "platform/freedesktop/clock/system_time_zone.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <map>
#include <string>

using namespace brevlin;

namespace {

void print(const PeriodStatistics& statistics, const StatisticsSummary& summary)
{
    std::printf(
        "{\"start\":%.3f,\"end\":%.3f,\"minutes\":%lld,\"completed\":%lld,\"attempted\":%lld,\"active\":%lld,"
        "\"rate\":%.9f,\"streak\":%lld,\"today\":%lld,\"buckets\":[",
        statistics.interval.start.time_since_epoch().count(),
        statistics.interval.end.time_since_epoch().count(),
        static_cast<long long>(statistics.totalFocusMinutes),
        static_cast<long long>(statistics.completedPomodoros),
        static_cast<long long>(statistics.attemptedPomodoros),
        static_cast<long long>(statistics.activeUnitCount), statistics.completionRate,
        static_cast<long long>(summary.currentStreak), static_cast<long long>(summary.todayFocusMinutes));
    const char* separator = "";
    for (const FocusTimeBucket& bucket : statistics.buckets) {
        std::printf("%s[%lld,%lld]", separator, static_cast<long long>(bucket.focusMinutes),
                    static_cast<long long>(bucket.completedPomodoros));
        separator = ",";
    }
    std::puts("]}");
}

} // namespace

int main()
{
    std::size_t count = 0;
    std::cin >> count;
    std::vector<SessionRecord> records(count);
    for (SessionRecord& record : records) {
        double end = 0;
        double length = 0;
        std::string phase;
        std::string outcome;
        std::cin >> end >> length >> phase >> outcome;
        record.endedAt = Instant{Seconds{end}};
        record.effectiveDuration = Seconds{length};
        record.phaseRawValue = StoredRawValue<TimerPhase>(phase);
        record.outcomeRawValue = StoredRawValue<SessionOutcome>(outcome);
    }
    std::stable_sort(records.begin(), records.end(), endedLater);
    std::map<std::string, Calendar> calendars;
    std::string zone;
    std::string granularity;
    double anchor = 0;
    while (std::cin >> zone >> granularity >> anchor) {
        const Calendar& calendar =
            calendars.try_emplace(zone, Calendar(timeZoneOf(zone), "en").withWeeks(std::chrono::Monday, 4))
                .first->second;
        const Instant instant{Seconds{anchor}};
        print(StatisticsCalculator::calculatePeriod(
                  records, fromRawValue<StatisticsGranularity>(granularity).value(), instant, calendar),
              StatisticsCalculator::calculate(records, instant, calendar));
    }
    return 0;
}
