#include "app/model_fixture.h"
#include "app/timer_control.h"

namespace brevlin::test {
namespace {

using enum TimerVerb;
using State = TimerRunState;

class TimerControlTest : public ModelTest
{
protected:
    void bringInto(State state)
    {
        modelOrNone.reset();
        ActiveTimerPersistence(disk()).clear();
        launch();
        if (state != State::idle) {
            model().start();
        }
        if (state == State::paused) {
            model().pause();
        } else if (state == State::ringing) {
            model().endCurrentPhase();
        }
        ASSERT_EQ(runState(), state);
    }
};

// In the order idle, running, paused, ringing; "-" for a verb that is refused.
struct Row
{
    TimerVerb verb;
    const char* outcomes[4];
};

TEST_F(TimerControlTest, every_verb_does_in_every_state_what_it_says_or_is_refused_and_changes_nothing)
{
    const Row rows[] = {
        {start, {"focus running", "-", "-", "shortBreak running"}},
        {pause, {"-", "focus paused", "-", "-"}},
        {resume, {"-", "-", "focus running", "-"}},
        {toggle, {"focus running", "focus paused", "focus running", "shortBreak running"}},
        {skip, {"-", "shortBreak running", "shortBreak running", "focus ringing"}},
        {stop, {"-", "shortBreak ringing", "shortBreak ringing", "shortBreak idle"}},
        {extend, {"-", "focus running", "focus paused", "-"}},
        {silence, {"-", "-", "-", "-"}},
    };
    for (const Row& row : rows) {
        for (const State state : allCases<State>()) {
            SCOPED_TRACE(std::string(rawValue(row.verb)) + " while " + std::string(rawValue(state)));
            bringInto(state);
            const TimerSnapshot before = model().snapshot();
            const auto done = TimerControl::carryOut(model(), row.verb);
            const std::string expected = row.outcomes[static_cast<int>(state)];
            ASSERT_EQ(bool(done), expected != "-");
            if (!done) {
                EXPECT_EQ(model().snapshot(), before);
                continue;
            }
            EXPECT_EQ(std::string(rawValue(model().snapshot().phase)) + " " +
                          std::string(rawValue(runState())),
                      expected);
            EXPECT_EQ(model().snapshot().plannedDuration == Seconds{1800}, row.verb == extend);
        }
    }
}

TEST_F(TimerControlTest, an_alert_is_silenced_once)
{
    launchAndStart();
    scheduler.advance(Seconds{1500});
    ASSERT_TRUE(model().isAlertSoundPlaying());
    EXPECT_TRUE(TimerControl::carryOut(model(), silence));
    EXPECT_FALSE(model().isAlertSoundPlaying());
    EXPECT_FALSE(TimerControl::carryOut(model(), silence));
}

TEST_F(TimerControlTest, the_status_adds_up_what_was_completed_today_alone)
{
    launchAndStart();
    scheduler.advance(Seconds{1500});
    model().advance();
    model().endCurrentPhase();
    model().start();
    TimerStatus status = TimerControl::status(model());
    EXPECT_EQ(status.completedToday, 1);
    EXPECT_EQ(status.focusToday, Seconds{1500});
    scheduler.advance(Seconds{86'400});
    status = TimerControl::status(model());
    EXPECT_EQ(status.focusToday, Seconds::zero());
}

} // namespace
} // namespace brevlin::test
