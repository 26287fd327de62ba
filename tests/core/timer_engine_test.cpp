#include "core/timer_engine.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

const Instant t0{Seconds{8e8}};

Instant at(double seconds)
{
    return t0 + Seconds{seconds};
}

TEST(TimerEngine, a_stored_state_that_contradicts_itself_stays_as_it_is)
{
    TimerSnapshot snapshot = freshSnapshot({});
    snapshot.timeZoneIdentifierAtStart = "Asia/Tokyo";
    snapshot.completedFocusCount = -1;
    const auto expectUnchanged = [&](std::initializer_list<TimerTransition (*)(TimerEngine&)> operations) {
        TimerEngine engine({}, snapshot, [] { return "UTC"; });
        for (const auto& operation : operations) {
            EXPECT_EQ(operation(engine).snapshot, snapshot);
        }
        const auto ended = engine.endEarly(t0).finishedSession.value_or(FinishedSession{});
        EXPECT_EQ(ended.pauseDuration, Seconds{0});
        EXPECT_TRUE(!snapshot.isActive() || ended.timeZoneIdentifierAtStart == "Asia/Tokyo");
    };
    const auto resume = [](TimerEngine& engine) {
        return engine.resume(t0);
    };
    const auto addTime = [](TimerEngine& engine) {
        return engine.addTime(Seconds{60}, t0);
    };
    const auto reconcile = [](TimerEngine& engine) {
        return engine.reconcile(t0, false);
    };
    snapshot.runState = TimerRunState::paused;
    expectUnchanged({resume});
    snapshot.runState = TimerRunState::running;
    snapshot.pausedAt = at(-50);
    snapshot.pausedRemainingSeconds = Seconds{5};
    expectUnchanged({resume, addTime, reconcile});
    snapshot.runState = TimerRunState::ringing;
    snapshot.expectedEndAt = t0;
    expectUnchanged({addTime, reconcile});
    // A focus phase that ends makes the count 0, and no cycle is complete.
    snapshot.runState = TimerRunState::running;
    EXPECT_EQ(TimerEngine({}, snapshot, [] { return "UTC"; }).reconcile(t0, false).snapshot.phase,
              TimerPhase::shortBreak);
}

} // namespace
} // namespace brevlin
