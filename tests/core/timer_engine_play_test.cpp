#include "core/timer_engine.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <random>

namespace brevlin {
namespace {

using enum TimerRunState;
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double undefined = std::numeric_limits<double>::quiet_NaN();

struct Arguments
{
    Instant now;
    std::optional<std::string> intention;
    Seconds length{0.0};
    TimerPhase phase = TimerPhase::focus;
    TimerSettings settings;
};

/// Plays the part of a user, a clock and a settings screen that stop at nothing.
class Dice final
{
public:
    explicit Dice(unsigned seed) : m_generator(seed) {}

    std::size_t below(std::size_t bound)
    {
        return std::uniform_int_distribution{std::size_t{0}, bound - 1}(m_generator);
    }
    bool flip() { return below(2) == 0; }
    double real(double low, double high) { return std::uniform_real_distribution{low, high}(m_generator); }

    Instant nextInstant(Instant now, const TimerSnapshot& state)
    {
        const Instant end = state.expectedEndAt.value_or(now);
        const std::array odd{
            end, end, end, end, now - Seconds{real(0.0, 5000.0)}, end + Seconds{real(0.0, 90'000.0)}};
        const std::size_t choice = below(40);
        return choice < odd.size() ? odd.at(choice) : now + Seconds{real(0.0, 400.0)};
    }
    Arguments next(Instant now, const TimerSnapshot& state)
    {
        const std::array lengths{0.0, -5.0, infinity, -infinity, undefined, 1e-9, 300.0};
        return {nextInstant(now, state), flip() ? std::optional<std::string>{" write\n"} : std::nullopt,
                Seconds{flip() ? 300.0 : lengths.at(below(lengths.size()))},
                allCases<TimerPhase>().at(below(3)), nextSettings()};
    }
    TimerSettings nextSettings()
    {
        const auto duration = [&] {
            return Seconds{below(10) == 0 ? undefined : real(1.0, 2000.0)};
        };
        const std::int64_t cycle = static_cast<std::int64_t>(below(6)) - 1;
        return TimerSettings{duration(), duration(), duration(), cycle, flip(), flip(), {}}.sanitized();
    }

private:
    std::mt19937 m_generator;
};

enum class Effect {
    nothing,
    complete, // what is due, before anything else
    begin,
    beginWithoutIntention,
    pause,
    resume,
    lengthen,
    becomeIdle,
    skip,
    reset,
    endEarly,
    switchAndBegin,
    prepareOther,
    choosePhase,
    takeDuration,
};

/// An operation: how it treats what is due, and its effect where nothing is, by the state that it finds.
struct Row
{
    enum class Due { ignored, completed, completedAndNextBegun, completedAway };

    const char* name;
    TimerTransition (*perform)(TimerEngine&, const Arguments&);
    Due due;
    std::array<Effect, 4> effects; // idle, running, paused, ringing
};

using E = Effect;
using Engine = TimerEngine;
using A = Arguments;
// clang-format off
constexpr Row rows[] = {
    {"start", [](Engine& e, const A& a) { return e.start(a.now, a.intention); }, Row::Due::ignored, {E::begin, E::nothing, E::nothing, E::nothing}},
    {"pause", [](Engine& e, const A& a) { return e.pause(a.now); }, Row::Due::completed, {E::nothing, E::pause, E::nothing, E::nothing}},
    {"resume", [](Engine& e, const A& a) { return e.resume(a.now); }, Row::Due::ignored, {E::nothing, E::nothing, E::resume, E::nothing}},
    {"add time", [](Engine& e, const A& a) { return e.addTime(a.length, a.now); }, Row::Due::completed, {E::nothing, E::lengthen, E::lengthen, E::nothing}},
    {"skip", [](Engine& e, const A& a) { return e.skip(a.now); }, Row::Due::completed, {E::nothing, E::skip, E::skip, E::becomeIdle}},
    {"reset", [](Engine& e, const A& a) { return e.reset(a.now); }, Row::Due::completed, {E::nothing, E::reset, E::reset, E::becomeIdle}},
    {"end early", [](Engine& e, const A& a) { return e.endEarly(a.now); }, Row::Due::completed, {E::nothing, E::endEarly, E::endEarly, E::nothing}},
    {"switch", [](Engine& e, const A& a) { return e.switchAndStart(a.now); }, Row::Due::completedAndNextBegun, {E::nothing, E::switchAndBegin, E::switchAndBegin, E::nothing}},
    {"advance", [](Engine& e, const A& a) { return e.advance(a.now); }, Row::Due::completedAndNextBegun, {E::nothing, E::nothing, E::nothing, E::beginWithoutIntention}},
    {"skip pending", [](Engine& e, const A& a) { return e.skipPendingPhase(a.now); }, Row::Due::ignored, {E::nothing, E::nothing, E::nothing, E::prepareOther}},
    {"select", [](Engine& e, const A& a) { return e.selectPhase(a.phase); }, Row::Due::ignored, {E::choosePhase, E::nothing, E::nothing, E::nothing}},
    {"settings", [](Engine& e, const A& a) { return e.updateSettings(a.settings); }, Row::Due::ignored, {E::takeDuration, E::nothing, E::nothing, E::nothing}},
    {"reconcile", [](Engine& e, const A& a) { return e.reconcile(a.now, false); }, Row::Due::completed, {}},
    {"reconcile away", [](Engine& e, const A& a) { return e.reconcile(a.now, true); }, Row::Due::completedAway, {}},
};
// clang-format on

Seconds atLeastZero(Seconds value)
{
    return value > Seconds::zero() ? value : Seconds::zero();
}

TimerPhase other(TimerPhase phase)
{
    return phase == TimerPhase::focus ? TimerPhase::shortBreak : TimerPhase::focus;
}

class Play final
{
public:
    explicit Play(unsigned seed)
        : m_dice(seed)
        , m_settings(m_dice.nextSettings())
        , m_engine(m_settings, std::nullopt, [] { return "Europe/Berlin"; })
    {}

    void step()
    {
        const Row& row = rows[m_dice.below(std::size(rows))];
        const Arguments a = m_dice.next(m_now, m_engine.snapshot());
        const TimerSnapshot before = m_engine.snapshot();
        const TimerTransition made = row.perform(m_engine, a);
        SCOPED_TRACE(row.name);
        ASSERT_TRUE(made.snapshot == m_engine.snapshot());
        m_settings = std::string_view(row.name) == "settings" ? a.settings : m_settings;
        const Effect effect = effectOf(row, a, before);
        const std::map<Effect, SessionOutcome> outcomes{{E::complete, row.due == Row::Due::completedAway
                                                                          ? SessionOutcome::completedWhileAway
                                                                          : SessionOutcome::completed},
                                                        {E::skip, SessionOutcome::skipped},
                                                        {E::reset, SessionOutcome::reset},
                                                        {E::endEarly, SessionOutcome::endedEarly},
                                                        {E::switchAndBegin, SessionOutcome::switchedEarly}};
        ASSERT_EQ(made.finishedSession.has_value(), outcomes.contains(effect));
        if (made.finishedSession) {
            ++endedPhases;
            checkSession(*made.finishedSession, outcomes.at(effect), before, a.now);
        }
        checkSnapshot(made.snapshot, effect, row, before, a);
        m_now = a.now;
    }

    int endedPhases = 0;

private:
    static Effect effectOf(const Row& row, const Arguments& a, const TimerSnapshot& before)
    {
        const Effect effect = row.effects.at(static_cast<std::size_t>(before.runState));
        if (std::string_view(row.name) == "add time" &&
            !(a.length > Seconds::zero() && std::isfinite(a.length.count()))) {
            return E::nothing;
        }
        const bool isDue = before.runState == running && *before.expectedEndAt <= a.now;
        return isDue && row.due != Row::Due::ignored ? E::complete : effect;
    }

    void checkSession(const FinishedSession& session, SessionOutcome outcome, const TimerSnapshot& before,
                      Instant now) const
    {
        const Instant end = isCompletion(outcome) ? *before.expectedEndAt : now;
        const Seconds pause =
            before.runState == paused ? atLeastZero(end - *before.pausedAt) : Seconds::zero();
        const std::int64_t place = before.completedFocusCount % m_settings.focusSessionsPerLongBreak;
        FinishedSession expected;
        expected.id = *before.sessionID;
        expected.phase = before.phase;
        expected.outcome = outcome;
        expected.startedAt = *before.startedAt;
        expected.scheduledEndAt = before.expectedEndAt;
        expected.endedAt = end;
        expected.plannedDuration = expected.effectiveDuration = before.plannedDuration;
        expected.pauseDuration = before.accumulatedPauseSeconds + pause;
        if (!isCompletion(outcome)) {
            expected.effectiveDuration = std::min(
                atLeastZero(end - *before.startedAt - expected.pauseDuration), before.plannedDuration);
        }
        expected.cycleIndex = before.phase == TimerPhase::focus ? place + 1
                              : place > 0                       ? place
                              : before.completedFocusCount > 0  ? m_settings.focusSessionsPerLongBreak
                                                                : 1;
        expected.interruptionCount = before.interruptionCount;
        expected.intention = before.intention;
        expected.completedWhileAway = outcome == SessionOutcome::completedWhileAway;
        expected.timeZoneIdentifierAtStart = "Europe/Berlin";
        EXPECT_TRUE(session == expected);
    }

    // What the effect does not name is as it was.
    void checkSnapshot(const TimerSnapshot& after, Effect effect, const Row& row, const TimerSnapshot& before,
                       const Arguments& a)
    {
        TimerSnapshot expected = before;
        const auto prepare = [&](TimerPhase phase, TimerRunState state) {
            expected = TimerSnapshot{};
            expected.phase = phase;
            expected.runState = state;
            expected.plannedDuration = m_settings.duration(phase);
            expected.completedFocusCount = before.completedFocusCount;
        };
        const auto begin = [&](const std::optional<std::string>& intention = {}) {
            EXPECT_NE(after.sessionID, before.sessionID);
            ASSERT_TRUE(after.sessionID);
            expected.runState = running;
            expected.sessionID = after.sessionID;
            expected.intention = intention;
            expected.startedAt = a.now;
            expected.expectedEndAt = a.now + expected.plannedDuration;
            expected.timeZoneIdentifierAtStart = "Europe/Berlin";
        };
        switch (effect) {
        case E::nothing:
            break;
        case E::complete: {
            const bool wasFocus = before.phase == TimerPhase::focus;
            const std::int64_t count = before.completedFocusCount + (wasFocus ? 1 : 0);
            const TimerPhase breakPhase = count % m_settings.focusSessionsPerLongBreak == 0
                                              ? TimerPhase::longBreak
                                              : TimerPhase::shortBreak;
            prepare(wasFocus ? breakPhase : TimerPhase::focus, ringing);
            expected.completedFocusCount = count;
            if (row.due == Row::Due::completedAndNextBegun ||
                (wasFocus ? m_settings.autoStartBreaks : m_settings.autoStartFocus)) {
                begin();
            }
            break;
        }
        case E::begin:
            begin(normalizedIntention(a.intention));
            break;
        case E::beginWithoutIntention:
            begin();
            break;
        case E::pause:
            expected.runState = paused;
            expected.pausedAt = a.now;
            expected.pausedRemainingSeconds = atLeastZero(*before.expectedEndAt - a.now);
            expected.expectedEndAt.reset();
            ++expected.interruptionCount;
            break;
        case E::resume:
            expected.runState = running;
            expected.expectedEndAt = a.now + *before.pausedRemainingSeconds;
            expected.accumulatedPauseSeconds += atLeastZero(a.now - *before.pausedAt);
            expected.pausedAt.reset();
            expected.pausedRemainingSeconds.reset();
            break;
        case E::lengthen:
            expected.plannedDuration += a.length;
            if (before.runState == paused) {
                *expected.pausedRemainingSeconds += a.length;
            } else {
                *expected.expectedEndAt += a.length;
            }
            break;
        case E::becomeIdle:
            expected.runState = idle;
            break;
        case E::skip:
        case E::endEarly:
        case E::prepareOther:
            prepare(other(before.phase), ringing);
            break;
        case E::reset:
            prepare(before.phase, idle);
            break;
        case E::switchAndBegin:
            prepare(other(before.phase), idle);
            begin();
            break;
        case E::choosePhase:
            expected.phase = a.phase;
            [[fallthrough]];
        case E::takeDuration:
            expected.plannedDuration = m_settings.duration(expected.phase);
            break;
        }
        EXPECT_TRUE(after == expected);
    }

    Dice m_dice;
    TimerSettings m_settings;
    TimerEngine m_engine;
    Instant m_now{Seconds{8e8}};
};

TEST(TimerEngine, keeps_to_the_table_of_effects_over_a_hundred_thousand_operations)
{
    int endedPhases = 0;
    for (unsigned seed = 0; seed < 200; ++seed) {
        SCOPED_TRACE(seed);
        Play play(seed);
        for (int step = 0; step < 500 && !testing::Test::HasFailure(); ++step) {
            play.step();
        }
        endedPhases += play.endedPhases;
    }
    EXPECT_GT(endedPhases, 5000) << "the play hardly ever ends a phase";
}

} // namespace
} // namespace brevlin
