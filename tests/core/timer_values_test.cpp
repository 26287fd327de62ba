#include "core/finished_session.h"
#include "core/session_record.h"
#include "core/timer_engine.h"
#include "core/timer_settings.h"
#include "core/timer_snapshot.h"
#include "core/uuid.h"

#include <gtest/gtest.h>

#include <limits>
#include <tuple>

namespace brevlin {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
const Instant t0{Seconds{8e8}};
constexpr double undefined = std::numeric_limits<double>::quiet_NaN();

TEST(TimerSettings, unusable_values_become_usable_ones)
{
    for (const auto& [given, focus, shortBreak, longBreak] : {std::tuple{0.0, 1.0, 1.0, 1.0},
                                                              {-30.0, 1, 1, 1},
                                                              {0.5, 1, 1, 1},
                                                              {90.25, 90.25, 90.25, 90.25},
                                                              {infinity, 1500, 300, 900},
                                                              {-infinity, 1500, 300, 900},
                                                              {undefined, 1500, 300, 900}}) {
        TimerSettings settings;
        settings.focusDuration = settings.shortBreakDuration = settings.longBreakDuration = Seconds{given};
        const TimerSettings usable = settings.sanitized();
        EXPECT_EQ(usable.focusDuration.count(), focus) << given;
        EXPECT_EQ(usable.shortBreakDuration.count(), shortBreak) << given;
        EXPECT_EQ(usable.longBreakDuration.count(), longBreak) << given;
    }
    for (const std::int64_t given :
         {std::int64_t{0}, std::int64_t{-7}, std::numeric_limits<std::int64_t>::min()}) {
        TimerSettings settings;
        settings.focusSessionsPerLongBreak = given;
        EXPECT_EQ(settings.sanitized().focusSessionsPerLongBreak, 1);
    }
    for (const TimerPhase phase : allCases<TimerPhase>()) {
        TimerSettings settings;
        settings.setDuration(phase, Seconds{7});
        EXPECT_EQ(settings.duration(phase), Seconds{7});
    }
}

TEST(TimerSnapshot, remaining_time_is_never_negative_nor_undefined)
{
    const Instant now{Seconds{1000.0}};
    const auto remaining = [now](TimerRunState state, std::optional<Instant> end,
                                 std::optional<Seconds> paused) {
        TimerSnapshot snapshot;
        snapshot.runState = state;
        snapshot.plannedDuration = Seconds{1500.0};
        snapshot.expectedEndAt = end;
        snapshot.pausedRemainingSeconds = paused;
        return snapshot.remainingSeconds(now).count();
    };
    using enum TimerRunState;
    EXPECT_EQ(remaining(idle, std::nullopt, std::nullopt), 1500.0);
    EXPECT_EQ(remaining(running, now + Seconds{61.5}, std::nullopt), 61.5);
    EXPECT_EQ(remaining(running, now - Seconds{0.4}, std::nullopt), 0.0);
    EXPECT_EQ(remaining(running, Instant{Seconds{undefined}}, std::nullopt), 0.0);
    EXPECT_EQ(remaining(running, std::nullopt, std::nullopt), 0.0);
    EXPECT_EQ(remaining(paused, std::nullopt, Seconds{42.0}), 42.0);
    EXPECT_EQ(remaining(paused, std::nullopt, Seconds{-1.0}), 0.0);
    EXPECT_EQ(remaining(paused, std::nullopt, std::nullopt), 0.0);
    EXPECT_EQ(remaining(ringing, now + Seconds{5.0}, Seconds{5.0}), 0.0);
}

TEST(TimerEngine, a_stored_state_that_contradicts_itself_stays_as_it_is)
{
    TimerSnapshot snapshot = freshSnapshot({});
    snapshot.timeZoneIdentifierAtStart = "Asia/Tokyo";
    snapshot.completedFocusCount = -1;
    const auto engineOf = [&snapshot] {
        return TimerEngine({}, snapshot, [] { return "UTC"; });
    };
    using enum TimerRunState;
    for (const TimerRunState state : {paused, running, ringing}) {
        snapshot.runState = state;
        TimerEngine engine = engineOf();
        EXPECT_EQ(engine.resume(t0).snapshot, snapshot);
        if (state != paused) { // which more time may be added to
            EXPECT_EQ(engine.addTime(Seconds{60}, t0).snapshot, snapshot);
            EXPECT_EQ(engine.reconcile(t0, false).snapshot, snapshot);
        }
        const auto ended = engine.endEarly(t0).finishedSession.value_or(FinishedSession{});
        EXPECT_EQ(ended.pauseDuration, Seconds{0});
        EXPECT_TRUE(!snapshot.isActive() || ended.timeZoneIdentifierAtStart == "Asia/Tokyo");
        // Of another state than the next one.
        snapshot.pausedAt = t0 - Seconds{50};
        snapshot.pausedRemainingSeconds = Seconds{5};
        if (state == running) {
            snapshot.expectedEndAt = t0;
        }
    }
    // A focus phase that ends makes the count 0, and no cycle is complete.
    snapshot.runState = running;
    EXPECT_EQ(engineOf().reconcile(t0, false).snapshot.phase, TimerPhase::shortBreak);
}

TEST(Uuid, reads_both_letter_cases_and_nothing_else)
{
    const std::string canonical = "0F8FAD5B-D9CB-469F-A165-70867728950E";
    ASSERT_TRUE(Uuid::fromText(canonical));
    EXPECT_EQ(Uuid::fromText(canonical)->text(), canonical);
    EXPECT_EQ(Uuid::fromText("0f8fad5b-d9cb-469f-a165-70867728950e"), Uuid::fromText(canonical));
    for (const char* text :
         {"", "0F8FAD5B-D9CB-469F-A165-70867728950", "0F8FAD5B-D9CB-469F-A165-70867728950E0",
          "0F8FAD5B+D9CB-469F-A165-70867728950E", "0F8FAD5BAD9CB-469F-A165-70867728950E",
          "GF8FAD5B-D9CB-469F-A165-70867728950E", "0GFFAD5B-D9CB-469F-A165-70867728950E",
          "@F8FAD5B-D9CB-469F-A165-70867728950E", "{F8FAD5B-D9CB-469F-A165-70867728950}"}) {
        EXPECT_FALSE(Uuid::fromText(text)) << text;
    }
    EXPECT_NE(Uuid::random(), Uuid::random());
}

TEST(Intention, loses_white_space_of_every_script_at_its_ends)
{
    EXPECT_EQ(normalizedIntention(std::nullopt), std::nullopt);
    EXPECT_EQ(normalizedIntention("   "), std::nullopt);
    EXPECT_EQ(normalizedIntention(" \t\r\n\u3000\u00A0\u2029"), std::nullopt);
    EXPECT_EQ(normalizedIntention("\u3000写 报告\n"), "写 报告");
    EXPECT_EQ(normalizedIntention("  Write report\n"), "Write report");
}

TEST(RawValues, letter_case_counts_and_every_case_survives_storage)
{
    EXPECT_EQ(fromRawValue<TimerPhase>("shortbreak"), std::nullopt);
    EXPECT_EQ(fromRawValue<AppLanguage>("en"), std::nullopt);
    EXPECT_EQ(allCases<TimerPhase>().back(), TimerPhase::longBreak);
    for (const SessionOutcome outcome : allCases<SessionOutcome>()) {
        EXPECT_EQ(fromRawValue<SessionOutcome>(rawValue(outcome)), outcome);
    }
    const StoredRawValue<TimerPhase> later{std::string_view{"nap"}};
    EXPECT_EQ(later.value(), std::nullopt);
    EXPECT_EQ(later.text(), "nap");
    EXPECT_NE(later, StoredRawValue<TimerPhase>{TimerPhase::focus});
}

TEST(SessionRecord, fills_what_a_session_left_open)
{
    FinishedSession session;
    session.id = Uuid::random();
    session.startedAt = Instant{Seconds{100.0}};
    session.endedAt = Instant{Seconds{200.0}};
    const SessionRecord record{session};
    EXPECT_EQ(record.scheduledEndAt, session.endedAt);
    EXPECT_EQ(record.plannedStartAt, session.startedAt);
    EXPECT_EQ(record.actualStartAt, session.startedAt);
    EXPECT_EQ(record.intention, "");
    EXPECT_FALSE(endedLater(record, record)) << "a stable sort keeps equal ones as they are";
}

} // namespace
} // namespace brevlin
