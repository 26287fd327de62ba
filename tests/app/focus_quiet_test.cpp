#include "app/model_fixture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace brevlin {
namespace {

using State = NotificationSilencer::State;
using Lasts = NotificationSilencer::Lasts;

const NotificationSilencer::Switch dunst{"dunst", Lasts::whileServerRuns};
const NotificationSilencer::Switch xfce{"xfce", Lasts::always};
const NotificationSilencer::Switch plasma{"plasma", Lasts::whileProgramRuns};
const std::string noteKey{SilenceNoteStore::key};

class FocusQuietTest : public test::ModelTest
{
protected:
    FocusQuietTest()
    {
        silencer.states = {{"dunst", State::heard}, {"xfce", State::heard}, {"plasma", State::heard}};
    }

    /// Starts the program (again) on this desktop with the preference as it is stored, or on.
    AppModel& open(const NotificationSilencer::Switch& found)
    {
        silencer.present = found;
        kill();
        return launch();
    }
    /// The first start of all, with a focus phase.
    AppModel& openAndFocus(const NotificationSilencer::Switch& found)
    {
        kill();
        defaults.values.clear();
        open(found).setSilencesNotifications(true);
        model().start();
        return model();
    }
    /// kill -9: nobody says goodbye, and what waits for the disk is lost.
    void kill()
    {
        const auto onDisk = defaults.values;
        modelOrNone.reset();
        silencer.forget();
        silencer.hangs = false;
        thread.runsAtOnce = true;
        thread.runAll();
        defaults.values = onDisk;
    }
    State state() { return silencer.state(silencer.present->name); }
    bool hasNote() { return defaults.values.contains(noteKey); }
    void announce()
    {
        model().focusQuiet().announce([this] { shown.push_back(state()); });
    }

    std::vector<State> shown; ///< what stood at each announcement
};

TEST_F(FocusQuietTest, focus_is_silent_and_whatever_ends_it_gives_back)
{
    struct Case
    {
        const char* name;
        std::function<void()> end;
        State after = State::heard;
    };
    const std::vector<Case> cases{
        {"a pause",
         [&] {
             model().pause();
         }},
        {"the end",
         [&] {
             scheduler.advance(model().remainingSeconds());
         }},
        {"ending early",
         [&] {
             model().endCurrentPhase();
         }},
        {"a break",
         [&] {
             model().switchToNextPhase();
         }},
        {"the preference",
         [&] {
             model().setSilencesNotifications(false);
         }},
        {"the defaults",
         [&] {
             model().restoreDefaultPreferences();
         }},
        {"the end of the program",
         [&] {
             model().focusQuiet().end();
         }},
        {"a sudden end",
         [&] {
             model().focusQuiet().giveBackNow();
         }},
        {"five minutes more", [&] { model().addFiveMinutes(); }, State::silent},
    };
    for (const auto& found : {dunst, xfce, plasma}) {
        for (const Case& each : cases) {
            openAndFocus(found);
            EXPECT_EQ(state(), State::silent) << each.name;
            EXPECT_EQ(hasNote(), found != plasma);
            EXPECT_FALSE(model().focusQuiet().isAtRest());
            each.end();
            EXPECT_EQ(state(), each.after) << each.name << " on " << found.name;
            EXPECT_EQ(hasNote(), each.after == State::silent && found != plasma) << each.name;
            EXPECT_EQ(model().focusQuiet().isAtRest(), each.after == State::heard) << each.name;
            silencer.states[found.name] = State::heard;
        }
    }
    openAndFocus(dunst).pause();
    model().resume();
    EXPECT_EQ(state(), State::silent);
}

TEST_F(FocusQuietTest, nothing_is_touched_or_looked_at_where_the_user_does_not_wish_it)
{
    open(dunst).start();
    EXPECT_EQ(silencer.log, std::vector<std::string>{});
    EXPECT_EQ(silencer.looks, 0);
    const auto waiting = scheduler.pendingCount();
    announce();
    EXPECT_EQ(shown, std::vector{State::heard});
    EXPECT_EQ(scheduler.pendingCount(), waiting) << "nothing wakes up for it";
    model().setSilencesNotifications(true);
    EXPECT_EQ(state(), State::silent) << "in the midst of a phase";
    open(dunst);
    EXPECT_TRUE(model().addedPreferences().silencesNotifications);
}

TEST_F(FocusQuietTest, what_the_user_has_turned_stays_until_the_next_focus_phase)
{
    for (const auto& found : {dunst, xfce}) {
        silencer.states[found.name] = State::silent; // before the phase
        openAndFocus(found);
        silencer.log.clear();
        model().pause();
        model().resume();
        EXPECT_EQ(state(), State::silent);
        silencer.userTurns(State::heard);
        model().pause();
        model().resume();
        EXPECT_EQ(state(), State::heard) << "within the same phase";
        EXPECT_EQ(silencer.log, std::vector<std::string>{});

        model().switchToNextPhase();
        model().switchToNextPhase();
        EXPECT_EQ(state(), State::silent) << "the next one";
        silencer.userTurns(State::heard);
        EXPECT_FALSE(hasNote());
        silencer.userTurns(State::silent);
        model().endCurrentPhase();
        EXPECT_EQ(state(), State::silent) << "and the user's";

        silencer.states[found.name] = State::heard;
        model().advance();
        model().switchToNextPhase();
        silencer.userTurns(State::silent); // once more, as only some desktops tell
        model().endCurrentPhase();
        EXPECT_EQ(state(), State::silent) << "the user has said so";
    }
}

TEST_F(FocusQuietTest, the_next_start_gives_back_what_a_kill_left_at_any_step)
{
    for (const auto& found : {dunst, xfce}) {
        // One step is what the disk has to do, or one answer of the desktop.
        for (int step = 0; step < 9; ++step) {
            silencer.states[found.name] = State::heard;
            openAndFocus(found).pause();
            silencer.hangs = true;
            thread.runsAtOnce = false;
            model().resume();
            for (int done = 0; done < step; ++done) {
                if (done == 4) { // with the note written and the switch turned
                    model().pause();
                }
                thread.waitingCount() > 0 ? thread.runAll() : silencer.answerOne();
            }
            EXPECT_TRUE(state() == State::heard || hasNote()) << "step " << step;
            kill();
            open(found).setSilencesNotifications(false);
            EXPECT_EQ(state(), State::heard) << "step " << step << " on " << found.name;
            EXPECT_FALSE(hasNote()) << "step " << step;
        }
    }
}

TEST_F(FocusQuietTest, after_a_kill_only_what_is_still_as_it_was_made_is_given_back)
{
    struct Case
    {
        const char* name;
        NotificationSilencer::Switch found;
        State left;
        bool isFocus = false;
        State after;
        bool hasNote = false;
    };
    const std::vector<Case> cases{
        {"a phase that still runs", xfce, State::silent, true, State::silent, true},
        {"over", xfce, State::silent, false, State::heard, false},
        {"turned by the user", xfce, State::heard, true, State::heard, false},
        {"lost with its server", dunst, State::heard, true, State::silent, true},
        {"lost with its server, and over", dunst, State::heard, false, State::heard, false},
        {"gone with its desktop", dunst, State::absent, false, State::absent, false},
    };
    for (const Case& each : cases) {
        silencer.states[each.found.name] = State::heard;
        openAndFocus(each.found);
        ASSERT_TRUE(hasNote()) << each.name;
        kill();
        silencer.states[each.found.name] = each.left;
        if (!each.isFocus) {
            clock.jump(Seconds{4000});
        }
        open(each.found);
        EXPECT_EQ(state(), each.after) << each.name;
        EXPECT_EQ(hasNote(), each.hasNote) << each.name;
    }
    defaults.values[noteKey] = R"({"switch":"xfce","wasSilent":true,"isSilent":true})";
    silencer.states["xfce"] = State::silent;
    open(xfce);
    EXPECT_EQ(state(), State::silent) << "a note that says nothing of ours";
}

TEST_F(FocusQuietTest, an_announcement_is_seen_first_and_does_not_wait_for_a_hung_server)
{
    openAndFocus(dunst);
    announce();
    EXPECT_EQ(shown, std::vector{State::heard});
    EXPECT_FALSE(hasNote());
    scheduler.advance(FocusQuiet::announcementMoment - Seconds{0.1});
    EXPECT_EQ(state(), State::heard) << "so long it is to be seen";
    scheduler.advance(Seconds{0.1});
    EXPECT_EQ(state(), State::silent) << "the phase goes on";

    silencer.hangs = true;
    announce();
    scheduler.advance(FocusQuiet::announcementPatience - Seconds{0.01});
    EXPECT_EQ(shown.size(), 1U);
    scheduler.advance(Seconds{0.01});
    EXPECT_EQ(shown.size(), 2U);
    EXPECT_TRUE(hasNote()) << "what was not given back is remembered";
    silencer.recover();
    EXPECT_EQ(state(), State::heard);
    EXPECT_FALSE(hasNote());
    EXPECT_EQ(shown.size(), 2U) << "once";

    model().focusQuiet().announcementIsGone();
    model().pause();
    model().resume();
    EXPECT_EQ(state(), State::silent) << "nothing is there to be seen any more";
    silencer.hangs = true;
    model().focusQuiet().end();
    scheduler.advance(FocusQuiet::endPatience);
    EXPECT_TRUE(model().focusQuiet().isAtRest()) << "a hung server does not hold up the end";
    model().focusQuiet().giveBackNow();
    EXPECT_TRUE(hasNote());
}

TEST_F(FocusQuietTest, nothing_is_turned_before_the_note_is_on_the_disk)
{
    open(xfce).setSilencesNotifications(true);
    defaults.failures.failFrom(1);
    model().start();
    EXPECT_EQ(state(), State::heard);
    defaults.failures.failNothing();
    scheduler.advance(RetryTimer::firstDelay);
    EXPECT_EQ(state(), State::silent);
    EXPECT_TRUE(hasNote());
    model().pause();
    defaults.failures.failFrom(1);
    model().resume();
    model().endCurrentPhase();
    defaults.failures.failNothing();
    silencer.log.clear();
    scheduler.advance(Seconds{60.0});
    EXPECT_EQ(silencer.log, std::vector<std::string>{}) << "the phase was over by then";
    EXPECT_FALSE(hasNote());
    model().dismissCompletion();

    defaults.values[noteKey] = R"({"switch":"xfce","wasSilent":false,"isSilent":true})";
    silencer.states["xfce"] = State::silent;
    kill();
    defaults.unreadable.insert(noteKey);
    open(xfce).start();
    EXPECT_EQ(silencer.log, std::vector<std::string>{}) << "who knows what was left";
    model().endCurrentPhase();
    defaults.unreadable.clear();
    scheduler.advance(RetryTimer::firstDelay);
    EXPECT_EQ(state(), State::heard) << "known late, and given back";
}

TEST_F(FocusQuietTest, another_server_has_its_own_switch_and_never_two_are_turned)
{
    silencer.present.reset();
    kill();
    launch().setSilencesNotifications(true);
    model().start();
    silencer.serverIs(dunst);
    EXPECT_EQ(state(), State::silent) << "one that comes late";
    silencer.states["dunst"] = State::absent;
    silencer.serverIs(std::nullopt);
    silencer.states["dunst"] = State::heard;
    silencer.serverIs(dunst);
    EXPECT_EQ(state(), State::silent) << "it had forgotten";
    silencer.serverIs(dunst);
    silencer.log.clear();
    silencer.serverIs(xfce);
    EXPECT_EQ(silencer.log, (std::vector<std::string>{"give back dunst", "silence xfce"}));
    silencer.serverIs(std::nullopt);
    silencer.serverIs(xfce);
    EXPECT_EQ(silencer.log.size(), 2U) << "that one outlives its server";

    silencer.log.clear();
    silencer.refuses = true;
    silencer.serverIs(plasma);
    EXPECT_EQ(silencer.state("xfce"), State::silent);
    EXPECT_EQ(state(), State::heard) << "not while the other one is turned";
    EXPECT_TRUE(hasNote());
    silencer.refuses = false;
    model().endCurrentPhase();
    EXPECT_EQ(silencer.state("xfce"), State::heard);
}

TEST_F(FocusQuietTest, a_change_of_mind_while_the_desktop_answers_holds)
{
    openAndFocus(xfce).pause();
    silencer.hangs = true;
    model().resume();
    silencer.answerOne(); // it is heard
    model().pause();      // while it is being turned
    silencer.recover();
    EXPECT_EQ(state(), State::heard);
    EXPECT_FALSE(hasNote());
    model().resume();
    silencer.hangs = true;
    model().pause();
    model().resume();
    silencer.recover();
    EXPECT_EQ(state(), State::silent);
    EXPECT_TRUE(hasNote());
    silencer.refuses = true;
    model().endCurrentPhase();
    model().dismissCompletion();
    EXPECT_TRUE(hasNote()) << "it could not be given back";

    openAndFocus(dunst);
    EXPECT_TRUE(model().focusQuiet().isAtRest()) << "it refuses to be turned";
    EXPECT_FALSE(hasNote());
    silencer.refuses = false;
    openAndFocus(dunst).pause();
    silencer.log.clear();
    thread.runsAtOnce = false;
    model().resume();
    model().focusQuiet().giveBackNow();
    thread.runAll();
    EXPECT_EQ(silencer.log, std::vector<std::string>{}) << "the note was not yet written";
    EXPECT_FALSE(hasNote());
}

} // namespace
} // namespace brevlin
