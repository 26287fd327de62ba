// What the figures of a long history cost.

#include "core/focus_breakdown.h"
#include "core/intention_index.h"
#include "core/statistics_calculator.h"
#include "platform/freedesktop/clock/system_time_zone.h"
#include "report.h"

#include <cmath>
#include <cstdlib>
#include <random>

namespace {

using namespace brevlin;
using namespace brevlin::bench;

constexpr int turns = 25;
constexpr double span = 27 * 365.25 * 86'400.0; // seconds from the oldest record to now
const Instant now{Seconds{8.2e8}};

/// Latest first as in the store: ten phases a day, in turn focus and break, now and then one that was cut
/// short. There is hardly a day without one, so the streak leads through all of it.
std::vector<SessionRecord> history(int count)
{
    std::mt19937_64 random(20260131);
    std::uniform_real_distribution<double> fraction(0.0, 1.0);
    std::vector<SessionRecord> records(static_cast<std::size_t>(count));
    double age = 0.0;
    for (int index = 0; index < count; ++index) {
        SessionRecord& record = records[static_cast<std::size_t>(index)];
        const bool isFocus = index % 2 == 0;
        age += 2.0 * fraction(random) * span / count;
        record.id = Uuid::random();
        record.phaseRawValue = isFocus ? TimerPhase::focus : TimerPhase::shortBreak;
        record.outcomeRawValue =
            fraction(random) < 0.15 ? SessionOutcome::endedEarly : SessionOutcome::completed;
        record.endedAt = now - Seconds{age};
        record.plannedDuration = Seconds{isFocus ? 1500.0 : 300.0};
        record.effectiveDuration = record.plannedDuration;
        record.timeZoneIdentifierAtStart = "Europe/Berlin";
    }
    return records;
}

/// The same with a day off in every week.
std::vector<SessionRecord> withDaysOff(std::vector<SessionRecord> records)
{
    constexpr double week = 7 * 86'400.0;
    std::erase_if(records, [](const SessionRecord& record) {
        return std::fmod(record.endedAt.time_since_epoch().count(), week) < week / 7;
    });
    return records;
}

/// In every second one of many texts, each of which the records share as those of a file do.
std::vector<SessionRecord> withIntentions(std::vector<SessionRecord> records)
{
    std::vector<SharedText> texts;
    for (int index = 0; index < 400; ++index) {
        texts.emplace_back("Chapter " + std::to_string(index) + " #book #part" + std::to_string(index % 30));
    }
    for (std::size_t index = 0; index < records.size(); ++index) {
        records[index].intention = index % 4 < 2 ? texts[index % texts.size()] : SharedText();
    }
    return records;
}

} // namespace

int main()
{
    const std::vector<SessionRecord> records = history(100'000);
    const std::vector<SessionRecord> manyRecords = history(1'000'000);
    const Calendar calendar(timeZoneOf("Europe/Berlin"), "de_DE");
    const Instant anchor = now - Seconds{400.0 * 86'400.0}; // the year before, which is complete

    const std::vector<SessionRecord> intended = withIntentions(records);
    const DateInterval wholeYear = calendar.interval(CalendarUnit::year, anchor);
    const std::vector<SessionRecord> restful = withDaysOff(history(116'667));
    const FocusCounts restfulCounts(restful);
    const FocusCounts counts(records);
    const FocusCounts manyCounts(manyRecords);
    std::vector<double> summary;
    std::vector<double> restfulSummary;
    std::vector<double> longSummary;
    std::vector<double> year;
    std::vector<double> byIntention;
    std::vector<double> byLabel;
    std::int64_t checksum = 0; // keeps the work from being left out
    for (int turn = 0; turn < turns; ++turn) {
        longSummary.push_back(seconds([&] {
            checksum +=
                StatisticsCalculator::calculate(manyRecords, manyCounts, now, calendar).completedPomodoros;
        }));
        checksum += FocusCounts(manyRecords).completed; // leaves nothing in the processor's caches
        summary.push_back(seconds([&] {
            checksum += StatisticsCalculator::calculate(records, counts, now, calendar).completedPomodoros;
        }));
        restfulSummary.push_back(seconds([&] {
            checksum +=
                StatisticsCalculator::calculate(restful, restfulCounts, now, calendar).completedPomodoros;
        }));
        year.push_back(seconds([&] {
            checksum +=
                StatisticsCalculator::calculatePeriod(records, StatisticsGranularity::year, anchor, calendar)
                    .completedPomodoros;
        }));
        const auto breakDown = [&](std::vector<double>& times, FocusGrouping grouping) {
            times.push_back(seconds(
                [&] { checksum += focusBreakdown(intended, wholeYear, grouping).groups.front().phases; }));
        };
        breakDown(byIntention, FocusGrouping::intention);
        breakDown(byLabel, FocusGrouping::label);
    }
    // As if no phase had ever been for the same thing twice.
    std::vector<SessionRecord> named = records;
    for (std::size_t index = 0; index < named.size(); ++index) {
        named[index].intention =
            "Chapter " + std::to_string(index) + (index % 2 == 0 ? " of the #thesis" : "，写论文");
    }
    const IntentionIndex intentions(named);
    std::vector<double> suggestions;
    for (int turn = 0; turn < turns; ++turn) {
        suggestions.push_back(seconds([&] {
            checksum += static_cast<std::int64_t>(intentions.find("nothing begins like this", 5).size() +
                                                  intentions.find("写论", 5).size() + 1);
        }));
    }
    if (checksum == 0) {
        std::fputs("statistics_bench: nothing was counted\n", stderr);
        return EXIT_FAILURE;
    }
    printTime("calculate, 100,000 records", restfulSummary, 0.4e-3);
    printTime("calculate, 100,000, never a day off", summary, 0.4e-3);
    printTime("calculate, 1,000,000, never a day off", longSummary, 4e-3);
    printTime("calculatePeriod of a year, 100,000 records", year, 0.05e-3);
    printTime("focusBreakdown of a year by intention, 100,000 records", byIntention, 2e-3);
    printTime("focusBreakdown of a year by label, 100,000 records", byLabel, 2e-3);
    printTime("two suggestions, 100,000 different intentions", suggestions, 10e-3);
    return EXIT_SUCCESS;
}
