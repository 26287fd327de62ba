#include "core/session_correction.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

// Minutes from the start of a phase.
Instant at(double minute)
{
    return Instant{Seconds{8e8 + minute * 60}};
}

SessionRecord phase(double start, double end, double paused = 0)
{
    SessionRecord record;
    record.id = Uuid::random();
    record.plannedStartAt = record.actualStartAt = at(start);
    record.scheduledEndAt = record.endedAt = at(end);
    record.pauseDuration = Seconds{paused * 60};
    record.plannedDuration = record.effectiveDuration = Seconds{(end - start - paused) * 60};
    return record;
}

TEST(SessionCorrection, what_counts_follows_the_times_and_nothing_else)
{
    const SessionRecord record = phase(0, 30, 5);
    const SessionDetails known{{{at(10), at(15)}}, {}, {}, {}};
    struct Case
    {
        double start;
        double end;
        SessionDetails details;
        double effective; // minutes
        double paused;
    };
    for (const auto& [start, end, details, effective, paused] : {Case{0, 30, {}, 25, 5},
                                                                 {0, 40, {}, 35, 5},
                                                                 {10, 30, {}, 15, 5},
                                                                 {0, 3, {}, 0, 3},
                                                                 {0, 12, known, 10, 2},
                                                                 {12, 40, known, 25, 3},
                                                                 {20, 40, known, 20, 0}}) {
        SessionCorrection correction = correctionOf(record);
        correction.start = at(start);
        correction.end = at(end);
        const SessionRecord result = corrected(record, correction, details);
        EXPECT_EQ(result.effectiveDuration, Seconds{effective * 60}) << start << " to " << end;
        EXPECT_EQ(result.pauseDuration, Seconds{paused * 60}) << start << " to " << end;
        EXPECT_EQ(result.id, record.id);
        EXPECT_EQ(result.actualStartAt, at(start));
    }
    SessionCorrection words = correctionOf(record);
    words.intention = "thesis";
    words.phase = TimerPhase::longBreak;
    words.outcome = SessionOutcome::completedWhileAway;
    const SessionRecord renamed = corrected(record, words, {});
    EXPECT_EQ(renamed.effectiveDuration, record.effectiveDuration);
    EXPECT_EQ(correctionOf(renamed), words);
    EXPECT_TRUE(renamed.completedWhileAway);
}

TEST(SessionCorrection, strings_of_a_later_release_stay_unless_they_are_corrected)
{
    SessionRecord record = phase(0, 25);
    record.phaseRawValue = StoredRawValue<TimerPhase>("siesta");
    record.outcomeRawValue = StoredRawValue<SessionOutcome>("dreamt");
    SessionCorrection correction = correctionOf(record);
    EXPECT_EQ(corrected(record, correction, {}), record);
    correction.outcome = SessionOutcome::completed;
    EXPECT_EQ(corrected(record, correction, {}).phaseRawValue.text(), "siesta");
    EXPECT_EQ(corrected(record, correction, {}).outcomeRawValue.text(), "completed");
}

TEST(SessionCorrection, none_ends_in_the_future_or_before_it_starts)
{
    using Problem = std::optional<CorrectionProblem>;
    for (const auto& [start, end, problem] : {std::tuple{0.0, 10.0, Problem{}},
                                              {10.0, 10.0, Problem{}},
                                              {5.0, 4.0, Problem{CorrectionProblem::endsBeforeStart}},
                                              {5.0, 10.1, Problem{CorrectionProblem::endsInFuture}},
                                              {30.0, 20.0, Problem{CorrectionProblem::endsBeforeStart}}}) {
        EXPECT_EQ(problemOf({TimerPhase::focus, SessionOutcome::completed, at(start), at(end), {}}, at(10)),
                  problem)
            << start << " to " << end;
    }
}

TEST(SessionCorrection, the_latest_record_that_overlaps_is_named)
{
    const std::vector<SessionRecord> records{phase(60, 85), phase(30, 55), phase(0, 25)};
    const auto found = [&](double start, double end, std::optional<Uuid> except = {}) {
        const SessionRecord* record = overlapping(records, {at(start), at(end)}, except);
        return record == nullptr ? -1 : static_cast<int>(record - records.data());
    };
    EXPECT_EQ(found(25, 30), -1);
    EXPECT_EQ(found(24, 31), 1);
    EXPECT_EQ(found(24, 31, records[1].id), 2);
    EXPECT_EQ(found(24.999, 30.001), -1) << "neighbours that the clock told a moment apart";
    EXPECT_EQ(found(40, 45), 1);
    EXPECT_EQ(found(0, 200), 0);
    EXPECT_EQ(found(90, 100), -1);
}

} // namespace
} // namespace brevlin
