#include "app/model_fixture.h"

namespace brevlin {
namespace {

using enum TimerRunState;
using enum ShortcutAction;

class ShortcutsTest : public test::ModelTest
{
protected:
    void press(ShortcutAction action) { shortcuts.observer.activated(action, "token"); }
    /// The timer in this state, in its first phase or at its end.
    void reach(TimerRunState state)
    {
        launch();
        if (state != idle) {
            model().start();
        }
        if (state == paused) {
            model().pause();
        } else if (state == ringing) {
            scheduler.advance(Seconds{1500});
        }
    }
};

TEST_F(ShortcutsTest, each_key_does_in_each_state_what_it_is_for)
{
    struct Case
    {
        ShortcutAction action;
        TimerRunState before;
        TimerRunState after;
        TimerPhase phase;
    };
    for (const auto& [action, before, after, phase] :
         {Case{toggle, idle, running, TimerPhase::focus}, Case{toggle, running, paused, TimerPhase::focus},
          Case{toggle, paused, running, TimerPhase::focus},
          Case{toggle, ringing, running, TimerPhase::shortBreak}, Case{skip, idle, idle, TimerPhase::focus},
          Case{skip, running, running, TimerPhase::shortBreak},
          Case{skip, paused, running, TimerPhase::shortBreak},
          Case{skip, ringing, ringing, TimerPhase::focus}, Case{silence, idle, idle, TimerPhase::focus},
          Case{addTime, idle, idle, TimerPhase::focus}}) {
        reach(before);
        press(action);
        EXPECT_EQ(runState(), after) << rawValue(action) << " while " << rawValue(before);
        EXPECT_EQ(model().snapshot().phase, phase) << rawValue(action) << " while " << rawValue(before);
        model().dismissCompletion();
        modelOrNone.reset();
        defaults.values.clear();
    }
    reach(running);
    press(addTime);
    EXPECT_EQ(model().remainingSeconds(), Seconds{1800});
    std::string token;
    QObject::connect(&model(), &AppModel::mainWindowActivationRequested,
                     [&](const std::string& given) { token = given; });
    press(show);
    EXPECT_EQ(token, "token");
    scheduler.advance(Seconds{1800});
    ASSERT_TRUE(model().isAlertSoundPlaying());
    press(silence);
    EXPECT_FALSE(model().isAlertSoundPlaying());
    EXPECT_EQ(runState(), ringing);
}

TEST_F(ShortcutsTest, the_desktop_is_asked_nothing_before_there_is_a_key)
{
    const auto key = KeyCombination::fromText("Ctrl+Alt+P");
    launch();
    model().setAppLanguage(AppLanguage::simplifiedChinese);
    EXPECT_EQ(std::exchange(shortcuts.log, ""), "");
    model().setShortcut(toggle, key);
    EXPECT_EQ(shortcuts.held[toggle], key);
    EXPECT_EQ(model().shortcuts().otherWith(*key, skip), toggle);
    EXPECT_FALSE(model().shortcuts().otherWith(*key, toggle));
    EXPECT_EQ(std::exchange(shortcuts.log, ""), "hold ");
    launch();
    EXPECT_EQ(shortcuts.held[toggle], key);
    EXPECT_EQ(std::exchange(shortcuts.log, ""), "hold ");
    model().restoreDefaultPreferences();
    EXPECT_EQ(shortcuts.held, ShortcutKeys{});
}

TEST_F(ShortcutsTest,
       keys_of_the_desktops_dialog_are_resumed_once_they_were_bound_and_forgotten_with_all_else)
{
    launch();
    model().shortcuts().openDialog(1);
    EXPECT_EQ(shortcuts.titles[addTime], "Add 5 minutes");
    shortcuts.observer.bound();
    EXPECT_TRUE(model().shortcuts().hasBound());
    EXPECT_EQ(std::exchange(shortcuts.log, ""), "dialog resume ");
    launch();
    EXPECT_EQ(std::exchange(shortcuts.log, ""), "resume ");
    model().restoreDefaultPreferences();
    EXPECT_EQ(std::exchange(shortcuts.log, ""), "forget ");
    launch();
    EXPECT_EQ(shortcuts.log, "");
}

} // namespace
} // namespace brevlin
