#include "core/reference_engine.h"
#include "core/timer_engine.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <random>

namespace brevlin {
namespace {

using test::Arguments;
using test::Operation;
using test::ReferenceEngine;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double undefined = std::numeric_limits<double>::quiet_NaN();

/// Plays the part of a user, a clock and a settings screen that stop at nothing.
class Dice final
{
public:
    explicit Dice(unsigned seed) : m_generator(seed) {}

    int below(int bound) { return std::uniform_int_distribution{0, bound - 1}(m_generator); }
    bool flip() { return below(2) == 0; }
    double real(double low, double high) { return std::uniform_real_distribution{low, high}(m_generator); }

    Instant nextInstant(Instant now, const TimerSnapshot& state)
    {
        switch (below(40)) {
        case 0:
        case 1:
        case 2:
        case 3:
            return state.expectedEndAt.value_or(now);
        case 4:
            return now - Seconds{real(0.0, 5000.0)};
        case 5:
            return Instant{Seconds{infinity}};
        case 6:
            return Instant{Seconds{-infinity}};
        case 7:
            return Instant{Seconds{undefined}};
        case 8:
            return state.expectedEndAt.value_or(now) + Seconds{real(0.0, 90'000.0)};
        default:
            return now + Seconds{real(0.0, 400.0)};
        }
    }

    Seconds nextLength()
    {
        const std::array odd{0.0, -5.0, infinity, -infinity, undefined, 1e-9, 300.0};
        return Seconds{flip() ? 300.0 : odd.at(static_cast<std::size_t>(below(odd.size())))};
    }

    TimerSettings nextSettings()
    {
        const std::array odd{0.0, -1.0, infinity, undefined};
        const auto duration = [&] {
            return Seconds{below(10) == 0 ? odd.at(static_cast<std::size_t>(below(odd.size())))
                                          : real(1.0, 2000.0)};
        };
        return TimerSettings{
            duration(), duration(), duration(), below(6) - 1, flip(), flip(), AlertIntensity::gentle}
            .sanitized();
    }

private:
    std::mt19937 m_generator;
};

TimerTransition perform(TimerEngine& engine, Operation operation, const Arguments& a)
{
    switch (operation) {
    case Operation::start:
        return engine.start(a.now, a.intention);
    case Operation::pause:
        return engine.pause(a.now);
    case Operation::resume:
        return engine.resume(a.now);
    case Operation::addTime:
        return engine.addTime(a.length, a.now);
    case Operation::skip:
        return engine.skip(a.now);
    case Operation::reset:
        return engine.reset(a.now);
    case Operation::endEarly:
        return engine.endEarly(a.now);
    case Operation::switchAndStart:
        return engine.switchAndStart(a.now);
    case Operation::advance:
        return engine.advance(a.now);
    case Operation::skipPendingPhase:
        return engine.skipPendingPhase(a.now);
    case Operation::selectPhase:
        return engine.selectPhase(a.phase);
    case Operation::updateSettings:
        return engine.updateSettings(a.settings);
    case Operation::reconcile:
        return engine.reconcile(a.now, false);
    case Operation::reconcileAway:
        break;
    }
    return engine.reconcile(a.now, true);
}

bool same(Seconds a, Seconds b)
{
    return a == b || (std::isnan(a.count()) && std::isnan(b.count()));
}

template <typename T>
bool same(const std::optional<T>& a, const std::optional<T>& b)
{
    if constexpr (std::is_same_v<T, Instant>) {
        return a.has_value() == b.has_value() && (!a || same(a->time_since_epoch(), b->time_since_epoch()));
    } else {
        return a.has_value() == b.has_value() && (!a || same(*a, *b));
    }
}

// The reference gives no identifiers, and undefined numbers differ from themselves.
::testing::AssertionResult agree(const TimerSnapshot& a, const TimerSnapshot& b)
{
    const bool equal =
        a.phase == b.phase && a.runState == b.runState &&
        a.sessionID.has_value() == b.sessionID.has_value() && a.intention == b.intention &&
        same(a.startedAt, b.startedAt) && same(a.expectedEndAt, b.expectedEndAt) &&
        same(a.pausedAt, b.pausedAt) && same(a.pausedRemainingSeconds, b.pausedRemainingSeconds) &&
        same(a.plannedDuration, b.plannedDuration) &&
        same(a.accumulatedPauseSeconds, b.accumulatedPauseSeconds) &&
        a.interruptionCount == b.interruptionCount && a.completedFocusCount == b.completedFocusCount &&
        a.timeZoneIdentifierAtStart == b.timeZoneIdentifierAtStart;
    return equal ? ::testing::AssertionSuccess() : ::testing::AssertionFailure() << "the snapshots differ";
}

::testing::AssertionResult agree(const std::optional<FinishedSession>& a,
                                 const std::optional<FinishedSession>& b)
{
    if (a.has_value() != b.has_value()) {
        return ::testing::AssertionFailure()
               << (a ? "only the engine" : "only the reference") << " ended a phase";
    }
    if (!a) {
        return ::testing::AssertionSuccess();
    }
    const bool equal = a->phase == b->phase && a->outcome == b->outcome &&
                       same(a->startedAt.time_since_epoch(), b->startedAt.time_since_epoch()) &&
                       same(a->scheduledEndAt, b->scheduledEndAt) &&
                       same(a->endedAt.time_since_epoch(), b->endedAt.time_since_epoch()) &&
                       same(a->plannedDuration, b->plannedDuration) &&
                       same(a->effectiveDuration, b->effectiveDuration) &&
                       same(a->pauseDuration, b->pauseDuration) && a->cycleIndex == b->cycleIndex &&
                       a->interruptionCount == b->interruptionCount && a->intention == b->intention &&
                       a->completedWhileAway == b->completedWhileAway &&
                       a->timeZoneIdentifierAtStart == b->timeZoneIdentifierAtStart;
    return equal ? ::testing::AssertionSuccess() : ::testing::AssertionFailure() << "the sessions differ";
}

TEST(TimerEngine, agrees_with_a_second_reading_of_its_rules_over_a_hundred_thousand_operations)
{
    constexpr int games = 200;
    constexpr int operationsPerGame = 500;
    int endedPhases = 0;
    for (int game = 0; game < games; ++game) {
        Dice dice(static_cast<unsigned>(game));
        const TimerSettings settings = dice.nextSettings();
        TimerEngine engine(settings, std::nullopt, [] { return "Europe/Berlin"; });
        ReferenceEngine reference(settings, freshSnapshot(settings), "Europe/Berlin");
        Instant now{Seconds{8e8}};
        for (int step = 0; step < operationsPerGame; ++step) {
            const TimerSnapshot before = engine.snapshot();
            Arguments arguments;
            arguments.now = dice.nextInstant(now, before);
            arguments.intention = dice.flip() ? std::optional<std::string>{"write"} : std::nullopt;
            arguments.length = dice.nextLength();
            arguments.phase = allCases<TimerPhase>().at(static_cast<std::size_t>(dice.below(3)));
            arguments.settings = dice.nextSettings();
            const auto operation = static_cast<Operation>(dice.below(test::operationCount));
            const TimerTransition actual = perform(engine, operation, arguments);
            const TimerTransition expected = reference.perform(operation, arguments);
            ASSERT_TRUE(agree(actual.snapshot, expected.snapshot))
                << "game " << game << ", step " << step << ", operation " << static_cast<int>(operation);
            ASSERT_TRUE(agree(actual.finishedSession, expected.finishedSession))
                << "game " << game << ", step " << step << ", operation " << static_cast<int>(operation);
            ASSERT_TRUE(agree(actual.snapshot, engine.snapshot()));
            if (actual.finishedSession) {
                ++endedPhases;
                EXPECT_TRUE(!before.sessionID || actual.finishedSession->id == *before.sessionID);
            }
            if (std::isfinite(arguments.now.time_since_epoch().count())) {
                now = arguments.now;
            }
        }
    }
    EXPECT_GT(endedPhases, games * operationsPerGame / 20) << "the play hardly ever ends a phase";
}

} // namespace
} // namespace brevlin
