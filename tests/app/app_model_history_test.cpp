#include "app/absence_announcer.h"
#include "app/absence_text.h"
#include "app/model_fixture.h"
#include "support/record_differences.h"

namespace brevlin {
namespace {

using enum TimerRunState;
using enum AbsenceDecision;

class HistoryTest : public test::ModelTest
{
protected:
    HistoryEditor& editor() { return model().historyEditor(); }
    std::vector<SessionRecord> records() { return model().sessions(); }
    SessionRecord latest() { return model().sessions().front(); }
    /// What a start would read.
    std::string storedDifferences()
    {
        const SessionStore store(HistoryLocation{"/data/sessions-v1.json", std::nullopt}, historyDisk());
        return test::differences(store.sessions(), model().sessions());
    }
    const SessionDetails& details() { return editor().detailsOf(*m_session); }

    // Starts a phase of 25 minutes and is away from its 12th minute on, for so long.
    void goAway(double minutes)
    {
        launch().endCurrentPhase();
        model().dismissCompletion();
        while (model().snapshot().phase != TimerPhase::focus) {
            model().advance();
            model().endCurrentPhase();
        }
        model().dismissCompletion();
        model().clearHistory();
        model().start();
        m_session = model().snapshot().sessionID;
        QObject::connect(&model().absences(), &AbsenceQuestions::asked, &model(), [this] { ++m_asked; });
        scheduler.advance(Seconds{720});
        events.observer.willSleep();
        clock.jump(Seconds{minutes * 60});
        events.observer.didWake();
    }
    void relaunch()
    {
        launch();
        QObject::connect(&model().absences(), &AbsenceQuestions::asked, &model(), [this] { ++m_asked; });
    }
    bool isAsking() { return model().absences().current().has_value(); }

    std::optional<Uuid> m_session;
    int m_asked = 0;
};

TEST_F(HistoryTest, every_correction_can_be_taken_back_and_made_again)
{
    launchAndStart();
    for (int phase = 0; phase < 3; ++phase) {
        scheduler.advance(Seconds{1500});
        model().advance();
    }
    model().endCurrentPhase();
    const std::vector<SessionRecord> before = records();
    ASSERT_EQ(before.size(), 4U);
    SessionRecord corrected = before[1];
    corrected.endedAt -= Seconds{3600};
    corrected.intention = "thesis";
    SessionRecord forgotten = before[0];
    forgotten.id = Uuid::random();
    std::vector<std::vector<SessionRecord>> states{before};
    const auto step = [&](const auto& action) {
        action();
        states.push_back(records());
        EXPECT_EQ(storedDifferences(), "");
    };
    step([&] { editor().change(corrected); });
    EXPECT_EQ(editor().detailsOf(corrected.id).asRecorded, before[1]);
    step([&] { editor().add(forgotten); });
    EXPECT_EQ(records()[1].id, forgotten.id) << "behind the one that ends at the same instant";
    step([&] { editor().remove({before[0].id, before[2].id}); });
    step([&] { editor().renameIntention("thesis", "#thesis"); });
    step([&] { editor().import({before[0]}, {}); });
    step([&] { editor().restore({before[3]}, {}); });
    for (std::size_t state = states.size() - 1; state-- > 0;) {
        editor().undo();
        EXPECT_EQ(records(), states[state]) << state;
    }
    EXPECT_FALSE(editor().undoable());
    EXPECT_TRUE(editor().detailsOf(corrected.id).isEmpty());
    for (std::size_t state = 1; state < states.size(); ++state) {
        editor().redo();
        EXPECT_EQ(records(), states[state]) << state;
    }
    EXPECT_FALSE(editor().redoable());
    EXPECT_EQ(storedDifferences(), "");
    editor().undo();
    editor().add(forgotten);
    EXPECT_FALSE(editor().redoable()) << "what was taken back before another step is gone";
    for (int count = 0; count < 60; ++count) {
        SessionRecord one = forgotten;
        one.id = Uuid::random();
        editor().add(one);
    }
    int depth = 0;
    for (; editor().undoable(); ++depth) {
        editor().undo();
    }
    EXPECT_GE(depth, 50);
}

TEST_F(HistoryTest, a_step_that_the_disk_refuses_is_none)
{
    launchAndStart();
    scheduler.advance(Seconds{1500});
    SessionRecord corrected = latest();
    corrected.intention = "thesis";
    editor().change(corrected);
    SessionRecord refused = corrected;
    refused.endedAt -= Seconds{60};
    files.failures.failFrom(1);
    editor().change(refused);
    EXPECT_EQ(latest(), corrected);
    EXPECT_EQ(model().messages().appMessages().back().title, "Unable to change records");
    EXPECT_TRUE(editor().detailsOf(corrected.id).isEmpty());
    editor().remove({corrected.id});
    EXPECT_EQ(latest(), corrected);
    EXPECT_FALSE(model().undoOffer().current());
    files.failures.failNothing();
    editor().undo();
    EXPECT_EQ(latest().intention.view(), "");
    EXPECT_FALSE(editor().undoable());
}

TEST_F(HistoryTest, clearing_is_final)
{
    goAway(5);
    model().endCurrentPhase();
    editor().remove({latest().id});
    editor().undo();
    files.failures.failFrom(1);
    model().clearHistory();
    EXPECT_FALSE(details().isEmpty()) << "nothing was cleared";
    files.failures.failNothing();
    model().clearHistory();
    EXPECT_FALSE(editor().undoable());
    EXPECT_FALSE(editor().redoable());
    EXPECT_FALSE(isAsking());
    EXPECT_TRUE(details().isEmpty());
    EXPECT_FALSE(files.files.contains("/data/session-details-v1.json"));
}

TEST_F(HistoryTest, what_was_removed_is_offered_back_for_eight_seconds)
{
    launchAndStart();
    scheduler.advance(Seconds{1500});
    const SessionRecord record = latest();
    model().deleteSession(record);
    scheduler.advance(Seconds{7.9});
    ASSERT_TRUE(model().undoOffer().current());
    model().undoOffer().accept();
    EXPECT_EQ(latest(), record);
    model().deleteSession(record);
    scheduler.advance(Seconds{8.1});
    EXPECT_FALSE(model().undoOffer().current());
    EXPECT_TRUE(editor().undoable()) << "by the keyboard, as long as the program runs";
}

TEST_F(HistoryTest, a_phase_that_was_ended_by_mistake_goes_on_as_if_nothing_had_happened)
{
    for (const bool isPaused : {false, true}) {
        for (const bool switches : {false, true}) {
            launchAndStart();
            model().setIntention("thesis");
            scheduler.advance(Seconds{300});
            if (isPaused) {
                model().pause();
                scheduler.advance(Seconds{60});
            }
            const TimerSnapshot before = model().snapshot();
            if (switches) {
                model().switchToNextPhase();
            } else {
                model().endCurrentPhase();
            }
            ASSERT_EQ(records().size(), 1U);
            scheduler.advance(Seconds{5});
            model().undoOffer().accept();
            EXPECT_EQ(model().snapshot(), before);
            EXPECT_TRUE(records().empty());
            EXPECT_TRUE(editor().detailsOf(*before.sessionID).isEmpty());
            launch();
            EXPECT_EQ(model().snapshot(), before);
            model().switchToNextPhase();
            model().pause();
            EXPECT_FALSE(model().undoOffer().current()) << "the user has gone on";
            model().endCurrentPhase();
            model().historyEditor().clear();
            model().dismissCompletion();
        }
    }
    launchAndStart();
    scheduler.advance(Seconds{1500});
    const TimerSnapshot ringing = model().snapshot();
    model().skipPendingPhase();
    model().undoOffer().accept();
    EXPECT_EQ(model().snapshot(), ringing);
    EXPECT_EQ(records().size(), 1U);
}

TEST_F(HistoryTest, a_phase_whose_end_came_while_it_could_be_taken_back_has_ended)
{
    launchAndStart();
    scheduler.advance(Seconds{1497});
    model().endCurrentPhase();
    scheduler.advance(Seconds{5});
    model().undoOffer().accept();
    EXPECT_EQ(runState(), ringing);
    ASSERT_EQ(records().size(), 1U);
    EXPECT_EQ(latest().outcome(), SessionOutcome::completed);
    EXPECT_EQ(latest().effectiveDuration, Seconds{1500});
}

TEST_F(HistoryTest, an_intention_lasts_for_its_phase)
{
    launch();
    model().setIntention(" write\nthe thesis ");
    EXPECT_EQ(model().intention(), "write the thesis");
    model().start();
    EXPECT_EQ(model().snapshot().intention, "write the thesis");
    model().setIntention("rest");
    const Instant end = *model().snapshot().expectedEndAt;
    EXPECT_NE(center.pending.back().body.find("rest"), std::string::npos) << center.pending.back().body;
    launch();
    EXPECT_EQ(model().intention(), "rest");
    EXPECT_EQ(model().snapshot().expectedEndAt, end);
    scheduler.advance(Seconds{1500});
    EXPECT_EQ(latest().intention.view(), "rest");
    EXPECT_EQ(model().intention(), "");
    model().setIntention("later");
    model().advance();
    EXPECT_EQ(model().snapshot().intention, std::nullopt) << "a break is for nothing";
    EXPECT_EQ(model().intention(), "later");
    model().switchToNextPhase();
    EXPECT_EQ(model().snapshot().intention, "later");
    model().switchToNextPhase();
    model().switchToNextPhase();
    EXPECT_EQ(model().snapshot().intention, std::nullopt);
}

TEST_F(HistoryTest, what_was_typed_while_a_focus_phase_waits_is_what_it_is_for)
{
    launchAndStart();
    model().endCurrentPhase();
    model().advance();
    model().endCurrentPhase();
    ASSERT_EQ(model().snapshot().phase, TimerPhase::focus);
    model().setIntention("thesis");
    model().advance();
    EXPECT_EQ(model().snapshot().intention, "thesis");
}

TEST_F(HistoryTest, the_instants_of_pauses_are_kept)
{
    launchAndStart();
    m_session = model().snapshot().sessionID;
    const Instant start = clock.now();
    for (int count = 0; count < 2; ++count) {
        scheduler.advance(Seconds{60});
        model().pause();
        scheduler.advance(Seconds{30});
        launch();
        count == 0 ? model().resume() : model().endCurrentPhase();
    }
    const auto& pauses = details().pauses;
    ASSERT_EQ(pauses.size(), 2U);
    EXPECT_EQ(pauses[0], (DateInterval{start + Seconds{60}, start + Seconds{90}}));
    EXPECT_EQ(pauses[1], (DateInterval{start + Seconds{150}, start + Seconds{180}}));
    EXPECT_EQ(latest().pauseDuration, Seconds{60});
}

TEST_F(HistoryTest, nobody_is_asked_of_what_was_short_or_no_focus)
{
    goAway(2.9);
    EXPECT_FALSE(isAsking());
    EXPECT_TRUE(details().isEmpty());
    model().pause();
    events.observer.willSleep();
    clock.jump(Seconds{3600});
    events.observer.didWake();
    EXPECT_FALSE(isAsking());
    model().switchToNextPhase();
    model().setSessionLocked(true);
    scheduler.advance(Seconds{200});
    model().setSessionLocked(false);
    EXPECT_FALSE(isAsking()) << "a break runs on";
    model().endCurrentPhase();
    model().setAsksAboutAbsences(false);
    model().advance();
    model().setSessionLocked(true);
    scheduler.advance(Seconds{200});
    model().setSessionLocked(false);
    EXPECT_FALSE(isAsking());
    EXPECT_EQ(m_asked, 0);
    launch();
    EXPECT_FALSE(model().addedPreferences().asksAboutAbsences);
}

TEST_F(HistoryTest, an_absence_is_asked_about_once_whatever_comes_between)
{
    goAway(5);
    ASSERT_TRUE(isAsking());
    const auto question = *model().absences().current();
    EXPECT_EQ(question.away.end - question.away.start, Seconds{300});
    EXPECT_EQ(m_asked, 1);
    events.observer.didWake();
    model().setSessionLocked(true);
    events.observer.willSleep();
    events.observer.willSleep();
    scheduler.advance(Seconds{1});
    events.observer.didWake();
    EXPECT_FALSE(isAsking()) << "still locked, so nobody is there";
    model().setSessionLocked(false);
    ASSERT_TRUE(isAsking());
    EXPECT_EQ(model().absences().current()->away.start, question.away.start)
        << "a lock that comes with the waking is the same absence";
    EXPECT_EQ(details().absences.size(), 1U);
    m_asked = 0;
    relaunch();
    EXPECT_TRUE(isAsking());
    EXPECT_EQ(m_asked, 0);
    model().absences().putAside();
    EXPECT_FALSE(isAsking());
    EXPECT_EQ(details().absences[0].decision, undecided) << "and marked in the history";
    relaunch();
    clock.jump(Seconds{13.0 * 3600});
    relaunch();
    EXPECT_FALSE(isAsking()) << "what is long past is not asked by itself";
}

TEST_F(HistoryTest, an_end_of_the_process_during_the_absence_changes_nothing)
{
    launchAndStart();
    m_session = model().snapshot().sessionID;
    scheduler.advance(Seconds{720});
    model().setSessionLocked(true);
    modelOrNone.reset();
    clock.jump(Seconds{3600});
    relaunch();
    ASSERT_TRUE(isAsking());
    EXPECT_EQ(latest().outcome(), SessionOutcome::completedWhileAway);
    model().decideAbsence(*m_session, 0, endAtStart);
    EXPECT_EQ(latest().effectiveDuration, Seconds{720});
    EXPECT_FALSE(isAsking());
}

TEST_F(HistoryTest, two_absences_are_two_questions_one_after_the_other)
{
    goAway(4);
    scheduler.advance(Seconds{60});
    model().setSessionLocked(true);
    scheduler.advance(Seconds{240});
    model().setSessionLocked(false);
    EXPECT_EQ(m_asked, 2);
    EXPECT_EQ(model().absences().current()->index, 0U);
    model().decideAbsence(*m_session, 0, doNotCount);
    EXPECT_EQ(model().absences().current()->index, 1U);
    model().decideAbsence(*m_session, 1, keep);
    EXPECT_FALSE(isAsking());
    scheduler.advance(Seconds{1500});
    EXPECT_EQ(latest().pauseDuration, Seconds{240});
}

TEST_F(HistoryTest, a_notification_asks_once_about_what_the_window_asks_and_goes_with_the_answer)
{
    test::FakeNotificationCenter questions;
    launchAndStart();
    m_session = model().snapshot().sessionID;
    const AbsenceAnnouncer announcer(model(), [&]() -> UserNotificationCenter& { return questions; });
    const auto goAndComeBack = [this] {
        model().setSessionLocked(true);
        scheduler.advance(Seconds{240});
        model().setSessionLocked(false);
    };
    goAndComeBack();
    scheduler.advance(Seconds{60});
    goAndComeBack();
    ASSERT_EQ(questions.pending.size(), 1U) << "the second waits for the answer to the first";
    EXPECT_EQ(questions.pending[0].title, "You were away from 08:13 to 08:17.");
    questions.respond(defaultNotificationActionIdentifier, questions.pending[0].userInfo);
    EXPECT_EQ(details().absences[0].decision, undecided);
    questions.respond(questions.categories[0].actions[1].identifier, questions.pending[0].userInfo);
    EXPECT_EQ(details().absences[0].decision, doNotCount);
    ASSERT_EQ(questions.pending.size(), 1U);
    EXPECT_EQ(questions.pending[0].userInfo.at("absence"), "1");
    model().absences().putAside();
    EXPECT_TRUE(questions.pending.empty());
    EXPECT_EQ(center.pending.size(), 1U) << "the end of the phase is announced beside it";
    const auto mark = [&](std::size_t index, AppLanguage language) {
        return AbsenceText::mark(details().absences[index], model().calendar(), language);
    };
    EXPECT_EQ(mark(0, AppLanguage::english), "Away 08:13 – 08:17, not counted");
    EXPECT_EQ(mark(1, AppLanguage::simplifiedChinese), "08:18 – 08:22 离开，尚未回答");
    model().decideAbsence(*m_session, 1, endAtStart);
    EXPECT_EQ(mark(1, AppLanguage::english), "Left at 08:18, ended then");
}

TEST_F(HistoryTest, an_answer_while_the_phase_runs_moves_its_end_or_ends_it)
{
    goAway(5);
    const Instant end = *model().snapshot().expectedEndAt;
    model().decideAbsence(*m_session, 0, keep);
    EXPECT_EQ(model().snapshot().expectedEndAt, end);

    goAway(5);
    model().decideAbsence(*m_session, 0, doNotCount);
    model().decideAbsence(*m_session, 0, doNotCount);
    EXPECT_EQ(model().snapshot().expectedEndAt, *model().snapshot().startedAt + Seconds{1800});
    launch();
    scheduler.advance(Seconds{1500});
    EXPECT_EQ(latest().outcome(), SessionOutcome::completed);
    EXPECT_EQ(latest().effectiveDuration, Seconds{1500});
    EXPECT_EQ(latest().pauseDuration, Seconds{300});
    model().decideAbsence(*m_session, 0, keep);
    EXPECT_EQ(latest().effectiveDuration, Seconds{1800}) << "changed later";
    model().decideAbsence(*m_session, 0, endAtStart);
    EXPECT_EQ(latest().effectiveDuration, Seconds{720});
    EXPECT_EQ(latest().outcome(), SessionOutcome::endedEarly);
    editor().undo();
    editor().undo();
    EXPECT_EQ(latest().pauseDuration, Seconds{300});
    EXPECT_EQ(storedDifferences(), "");
}

TEST_F(HistoryTest, a_phase_that_runs_ends_where_the_absence_began)
{
    goAway(5);
    const TimerSnapshot before = model().snapshot();
    scheduler.advance(Seconds{30});
    model().decideAbsence(*m_session, 0, endAtStart);
    EXPECT_EQ(runState(), ringing);
    EXPECT_EQ(latest().endedAt, *before.startedAt + Seconds{720});
    EXPECT_EQ(latest().effectiveDuration, Seconds{720});
    EXPECT_EQ(latest().outcome(), SessionOutcome::endedEarly);
    const SessionRecord ended = latest();
    model().decideAbsence(*m_session, 0, keep);
    EXPECT_EQ(latest().effectiveDuration, Seconds{1050}) << "it would have run until the answer";
    editor().undo();
    EXPECT_EQ(latest(), ended);
    model().undoOffer().accept();

    goAway(5);
    model().decideAbsence(*m_session, 0, endAtStart);
    model().undoOffer().accept();
    EXPECT_EQ(model().snapshot().sessionID, m_session);
    EXPECT_EQ(runState(), running);
    EXPECT_TRUE(isAsking()) << "as if nothing had been answered";
}

TEST_F(HistoryTest, a_crash_between_two_files_leaves_what_was_decided)
{
    for (const AbsenceDecision decision : {doNotCount, endAtStart}) {
        for (const bool isRunning : {true, false}) {
            goAway(isRunning ? 5 : 60);
            const auto before = files.files;
            const auto defaultsBefore = defaults.values;
            model().decideAbsence(*m_session, 0, decision);
            const std::vector<SessionRecord> decided = records();
            const TimerSnapshot snapshot = model().snapshot();
            modelOrNone.reset();
            // The details were written, the rest was not.
            files.files["/data/sessions-v1.json"] =
                before.contains("/data/sessions-v1.json") ? before.at("/data/sessions-v1.json") : "";
            if (files.files["/data/sessions-v1.json"].empty()) {
                files.files.erase("/data/sessions-v1.json");
            }
            defaults.values = defaultsBefore;
            launch();
            EXPECT_EQ(records().size(), decided.size());
            if (!records().empty()) {
                EXPECT_EQ(latest().effectiveDuration, decided.front().effectiveDuration);
                EXPECT_EQ(latest().endedAt, decided.front().endedAt);
            }
            EXPECT_EQ(model().snapshot().expectedEndAt, snapshot.expectedEndAt);
            EXPECT_EQ(model().snapshot().runState, snapshot.runState);
            EXPECT_FALSE(isAsking());
            model().clearHistory();
            model().dismissCompletion();
            if (model().snapshot().isActive()) {
                model().endCurrentPhase();
                model().dismissCompletion();
                model().clearHistory();
            }
        }
    }
}

} // namespace
} // namespace brevlin
