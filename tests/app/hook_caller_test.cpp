#include "app/model_fixture.h"

#include <gmock/gmock.h>

namespace brevlin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class HookCallerTest : public ModelTest
{
protected:
    static std::string variable(const HookCall& call, const std::string& name)
    {
        for (const auto& [each, value] : call.variables) {
            if (each == name) {
                return value;
            }
        }
        return "(none)";
    }
    /// Event and phase of each call since the last time.
    std::vector<std::string> told()
    {
        std::vector<std::string> result;
        for (const HookCall& call : std::exchange(hookPrograms->calls, {})) {
            result.push_back(variable(call, "BREVLIN_EVENT") + " " + variable(call, "BREVLIN_PHASE"));
        }
        return result;
    }
};

TEST_F(HookCallerTest, every_transition_is_told_once_and_what_is_over_before_what_begins)
{
    launch();
    EXPECT_THAT(told(), IsEmpty());
    model().start();
    EXPECT_THAT(told(), ElementsAre("phase-started focus"));
    model().pause();
    model().pause();
    EXPECT_THAT(told(), ElementsAre("phase-paused focus"));
    model().resume();
    model().addFiveMinutes();
    model().setIntention("x");
    EXPECT_THAT(told(), ElementsAre("phase-resumed focus"));
    model().switchToNextPhase();
    EXPECT_THAT(told(), ElementsAre("phase-skipped focus", "phase-started shortBreak"));
    scheduler.advance(Seconds{300});
    EXPECT_THAT(told(), ElementsAre("phase-ended shortBreak"));
    model().skipPendingPhase();
    EXPECT_THAT(told(), ElementsAre("phase-skipped focus"));
    model().dismissCompletion();
    EXPECT_THAT(told(), IsEmpty());
    model().commitTimerSettings([&] {
        TimerSettings settings = model().preferences().timerSettings;
        settings.autoStartFocus = true;
        return settings;
    }());
    model().start();
    scheduler.advance(Seconds{300});
    EXPECT_THAT(told(),
                ElementsAre("phase-started shortBreak", "phase-ended shortBreak", "phase-started focus"));
}

TEST_F(HookCallerTest, the_end_comes_with_its_record_and_a_late_one_says_so)
{
    launchAndStart().setIntention("R&D");
    hookPrograms->calls.clear();
    modelOrNone.reset();
    clock.jump(Seconds{5000});
    launch();
    ASSERT_EQ(hookPrograms->calls.size(), 1);
    const HookCall& call = hookPrograms->calls.front();
    EXPECT_EQ(variable(call, "BREVLIN_OUTCOME"), "completedWhileAway");
    EXPECT_EQ(variable(call, "BREVLIN_INTENTION"), "R&D");
    EXPECT_EQ(variable(call, "BREVLIN_EFFECTIVE_SECONDS"), "1500");
    EXPECT_EQ(variable(call, "BREVLIN_STATE"), "ringing");
    EXPECT_THAT(call.input, HasSubstr(R"("record":{"id":")"));
    model().advance();
    EXPECT_THAT(hookPrograms->calls.back().input, Not(HasSubstr("record")));
}

TEST_F(HookCallerTest, slow_programs_hold_nothing_up_and_what_cannot_wait_is_left_out_and_said)
{
    hookThread.runsAtOnce = false;
    launchAndStart();
    for (std::size_t turn = 0; turn < HookCaller::mostWaiting; ++turn) {
        model().pause();
        model().resume();
    }
    EXPECT_EQ(hookThread.waitingCount(), HookCaller::mostWaiting);
    EXPECT_EQ(model().hooks().records().size(), HookCaller::mostRecords);
    EXPECT_EQ(model().hooks().records().front().kind, HookRecord::Kind::leftOut);

    hookPrograms->results = {{"a", HookEvent::phasePaused, HookResult::Kind::failed, 3, "no lamp"}};
    hookThread.runAll();
    EXPECT_EQ(hookPrograms->calls.size(), HookCaller::mostWaiting);
    EXPECT_EQ(model().hooks().records().front().result, hookPrograms->results.front());
    EXPECT_EQ(model().hooks().records().size(), HookCaller::mostRecords);
    model().pause();
    EXPECT_EQ(hookThread.waitingCount(), 1);
    modelOrNone.reset();
    hookThread.runAll(); // what comes back then reaches nobody
}

} // namespace
} // namespace brevlin::test
