#include "core/focus_breakdown.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>

namespace brevlin {
namespace {

const DateInterval period{Instant{Seconds{8e8}}, Instant{Seconds{8e8 + 86'400}}};

/// One phase after the other, the first of these the latest.
std::vector<SessionRecord> history(std::initializer_list<std::pair<const char*, double>> phases)
{
    std::vector<SessionRecord> records;
    for (const auto& [intention, duration] : phases) {
        SessionRecord record;
        record.endedAt = period.end - Seconds{60.0 * static_cast<double>(records.size() + 1)};
        record.effectiveDuration = Seconds{duration};
        record.intention = intention;
        records.push_back(record);
    }
    return records;
}

using Row = std::tuple<std::string, double, std::int64_t, std::int64_t>;

std::vector<Row> rows(const FocusBreakdown& breakdown)
{
    std::vector<Row> result;
    for (const FocusGroup& group : breakdown.groups) {
        result.emplace_back(group.name, group.duration.count(), group.minutes, group.phases);
    }
    return result;
}

TEST(FocusBreakdown, counts_each_completed_phase_of_the_period_under_its_intention)
{
    std::vector<SessionRecord> records = history({{"", 5000},
                                                  {"letters", 600},
                                                  {"thesis", 600},
                                                  {"thesis", 900},
                                                  {"walk", 600},
                                                  {"Thesis", 300},
                                                  {"rest", 300},
                                                  {"given up", 300},
                                                  {"before", 300}});
    records[6].phaseRawValue = TimerPhase::shortBreak;
    records[7].outcomeRawValue = SessionOutcome::endedEarly;
    records[8].endedAt = period.start - Seconds{1};
    const FocusBreakdown found = focusBreakdown(records, period, FocusGrouping::intention);
    EXPECT_EQ(rows(found), (std::vector<Row>{{"thesis", 1500, 25, 2},
                                             {"letters", 600, 10, 1},
                                             {"walk", 600, 10, 1},
                                             {"Thesis", 300, 5, 1},
                                             {"", 5000, 83, 1}}));
    EXPECT_DOUBLE_EQ(found.groups[0].share, 1500.0 / 8000.0);
    EXPECT_TRUE(found.isNamed);
    EXPECT_FALSE(found.overlaps);
    const FocusBreakdown nameless = focusBreakdown(history({{"", 60}}), period, FocusGrouping::intention);
    EXPECT_FALSE(nameless.isNamed);
    EXPECT_EQ(nameless.groups.size(), 1U);
}

TEST(FocusBreakdown, counts_a_phase_under_each_of_its_labels_whatever_their_letter_case)
{
    const FocusBreakdown found = focusBreakdown(history({{"read #Thesis #reading", 600},
                                                         {"write #thesis #THESIS", 900},
                                                         {"写 #阅读", 60},
                                                         {"letters", 300},
                                                         {"", 60}}),
                                                period, FocusGrouping::label);
    EXPECT_EQ(rows(found),
              (std::vector<Row>{
                  {"Thesis", 1500, 25, 2}, {"reading", 600, 10, 1}, {"阅读", 60, 1, 1}, {"", 360, 6, 2}}));
    EXPECT_TRUE(found.overlaps);
    EXPECT_DOUBLE_EQ(found.groups[0].share, 1500.0 / 1920.0);
    EXPECT_FALSE(focusBreakdown(history({{"#a #A", 60}}), period, FocusGrouping::label).overlaps);
}

TEST(FocusBreakdown, shown_minutes_add_up_to_the_total_of_the_period)
{
    EXPECT_EQ(rows(focusBreakdown(history({{"a", 59}, {"b", 58}, {"c", 95}, {"", 30}}), period,
                                  FocusGrouping::intention)),
              (std::vector<Row>{{"c", 95, 2, 1}, {"a", 59, 1, 1}, {"b", 58, 1, 1}, {"", 30, 0, 1}}));
    std::mt19937 random(7);
    for (int turn = 0; turn < 200; ++turn) {
        std::vector<SessionRecord> records =
            history({{"a", 0}, {"b", 0}, {"a #c", 0}, {"", 0}, {"e", 0}, {"a", 0}});
        double seconds = 0;
        for (SessionRecord& record : records) {
            record.effectiveDuration = Seconds{static_cast<double>(random() % 400) - 20};
            seconds += std::max(record.effectiveDuration.count(), 0.0);
        }
        const auto groups = focusBreakdown(records, period, FocusGrouping::intention).groups;
        Seconds sum{0};
        std::int64_t minutes = 0;
        for (const FocusGroup& group : groups) {
            sum += group.duration;
            minutes += group.minutes;
            EXPECT_LT(std::abs(static_cast<double>(group.minutes) - group.duration.count() / 60), 1);
        }
        EXPECT_EQ(sum.count(), seconds);
        EXPECT_EQ(minutes, static_cast<std::int64_t>(seconds / 60));
    }
    const auto absurd =
        focusBreakdown(history({{"a", 1e300}, {"b", 1e308}, {"", 1e308}}), period, FocusGrouping::intention);
    EXPECT_GT(absurd.groups[0].minutes, 0);
}

} // namespace
} // namespace brevlin
