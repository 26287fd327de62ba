#include "core/absences.h"
#include "core/intention.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

// Minutes from the start of a phase of 25 minutes.
Instant at(double minute)
{
    return Instant{Seconds{8e8 + minute * 60}};
}

SessionRecord phase(double endedAt = 25)
{
    SessionRecord record;
    record.actualStartAt = record.plannedStartAt = at(0);
    record.endedAt = record.scheduledEndAt = at(endedAt);
    record.plannedDuration = Seconds{1500};
    record.effectiveDuration = Seconds{1500};
    record.outcomeRawValue = SessionOutcome::completedWhileAway;
    record.completedWhileAway = true;
    return record;
}

Absence away(double start, double end, AbsenceDecision decision)
{
    return {at(start), at(end), decision};
}

TEST(Absences, what_was_decided_of_them_is_in_the_record)
{
    using enum AbsenceDecision;
    struct Case
    {
        SessionDetails details;
        double effective; // minutes
        double paused;
        std::int64_t interruptions;
        double end;
        SessionOutcome outcome;
    };
    const auto whileAway = SessionOutcome::completedWhileAway;
    const auto early = SessionOutcome::endedEarly;
    for (const auto& [details, effective, paused, interruptions, end, outcome] : {
             Case{{{}, {away(12, 40, undecided)}, {}, {}}, 25, 0, 0, 25, whileAway},
             {{{}, {away(12, 40, keep)}, {}, {}}, 25, 0, 0, 25, whileAway},
             {{{}, {away(12, 40, doNotCount)}, {}, {}}, 12, 13, 1, 25, whileAway},
             {{{}, {away(12, 40, endAtStart)}, {}, {}}, 12, 0, 0, 12, early},
             {{{}, {away(-5, 10, doNotCount)}, {}, {}}, 15, 10, 1, 25, whileAway},
             {{{}, {away(-5, 10, endAtStart)}, {}, {}}, 0, 0, 0, 0, early},
             {{{}, {away(30, 40, doNotCount)}, {}, {}}, 25, 0, 0, 25, whileAway},
             {{{}, {away(3, 6, doNotCount), away(10, 14, doNotCount)}, {}, {}}, 18, 7, 2, 25, whileAway},
             {{{}, {away(3, 6, doNotCount), away(10, 14, endAtStart)}, {}, {}}, 7, 3, 1, 10, early},
             {{{}, {away(3, 6, endAtStart), away(10, 14, doNotCount)}, {}, {}}, 3, 0, 0, 3, early},
             {{{}, {{at(12), {}, doNotCount}}, {}, {}}, 25, 0, 0, 25, whileAway},
         }) {
        const SessionRecord record = withAbsences(phase(), details);
        EXPECT_EQ(record.effectiveDuration, Seconds{effective * 60});
        EXPECT_EQ(record.pauseDuration, Seconds{paused * 60});
        EXPECT_EQ(record.interruptionCount, interruptions);
        EXPECT_EQ(record.endedAt, at(end));
        EXPECT_EQ(record.outcome(), outcome);
        EXPECT_EQ(record.completedWhileAway, outcome == whileAway);
        EXPECT_EQ(record.scheduledEndAt, at(25));
    }
}

TEST(Absences, a_pause_is_never_left_out_twice)
{
    // Paused from 10 to 14, over at 29.
    SessionRecord record = phase(29);
    record.pauseDuration = Seconds{240};
    record.interruptionCount = 1;
    SessionDetails details{{{at(10), at(14)}}, {away(8, 20, AbsenceDecision::doNotCount)}, {}, {}};
    EXPECT_EQ(countedLength(details.absences[0], record, details.pauses), Seconds{480});
    const SessionRecord uncounted = withAbsences(record, details);
    EXPECT_EQ(uncounted.effectiveDuration, Seconds{1020});
    EXPECT_EQ(uncounted.pauseDuration, Seconds{720});
    EXPECT_EQ(withoutAbsences(uncounted, details), record) << "and the way back";
    details.absences[0].decision = AbsenceDecision::endAtStart;
    const SessionRecord ended = withAbsences(record, details);
    EXPECT_EQ(ended.effectiveDuration, Seconds{480});
    EXPECT_EQ(ended.pauseDuration, Seconds{0}) << "the pause came later";
    EXPECT_EQ(ended.interruptionCount, 0);
}

TEST(Intention, what_is_typed_is_one_short_line)
{
    const std::string snowmen = "☃☃☃☃☃☃";
    for (const auto& [typed, text] : {std::pair{"  read\tbook ", "read\tbook"},
                                      {"one\ntwo\r\n\r\nthree\n", "one two three"},
                                      {"\n\n", ""},
                                      {"写\u2028报告\u3000", "写 报告"},
                                      {"\xff"
                                       "a",
                                       "\uFFFD"
                                       "a"}}) {
        EXPECT_EQ(typedIntention(typed, 200), text);
    }
    EXPECT_EQ(typedIntention(snowmen, 4), snowmen.substr(0, 12)) << "characters, not bytes";
    EXPECT_EQ(typedIntention("abc defg", 4), "abc");
    EXPECT_EQ(typedIntention("abc\ndefg", 4), "abc");
    EXPECT_EQ(typedIntention("😀😀😀", 2), "😀😀");
}

TEST(Intention, words_with_a_sign_are_labels)
{
    for (const auto& [intention, words] : {std::pair<std::string, std::vector<std::string>>{
                                               "Write #thesis, #chapter-2.", {"thesis", "chapter-2"}},
                                           {"#a #b #a", {"a", "b"}},
                                           {"C# in issue#5 # ## #", {}},
                                           {"##deep", {"deep"}},
                                           {"写报告#论文 ＃毕业。", {"论文", "毕业"}},
                                           {"#v1.2/x+y_z…", {"v1.2/x+y_z"}},
                                           {"(#R&D)", {"R"}},
                                           {"#a#b", {"a"}}}) {
        EXPECT_EQ(labels(intention), words) << intention;
    }
}

} // namespace
} // namespace brevlin
