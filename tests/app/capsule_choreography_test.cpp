#include "app/capsule_choreography.h"
#include "app/model_fixture.h"

namespace brevlin {
namespace {

using enum TimerRunState;

/// A capsule that shows nothing and remembers the last thing that it was to show.
class FakeCapsule final : public Capsule
{
public:
    void setObserver(Observer newObserver) override { observer = std::move(newObserver); }
    bool isVisible() const override { return visible; }
    void show(const CapsuleContent& newContent, const CapsuleLayout& newLayout) override
    {
        EXPECT_FALSE(visible);
        visible = true;
        content = newContent;
        layout = newLayout;
    }
    void update(const CapsuleContent& newContent, const CapsuleLayout& newLayout) override
    {
        EXPECT_TRUE(visible);
        content = newContent;
        layout = newLayout;
    }
    void hide() override { visible = false; }
    HorizontalAnchor preferredExpansionAnchor(double width) const override
    {
        askedWidth = width;
        return anchor;
    }
    bool hasPointerWithin(double /*distance*/) const override { return pointerIsNear; }

    Observer observer;
    bool visible = false;
    CapsuleContent content;
    CapsuleLayout layout;
    HorizontalAnchor anchor = HorizontalAnchor::leading;
    mutable double askedWidth = 0;
    bool pointerIsNear = false;
};

class CapsuleChoreographyTest : public test::ModelTest
{
protected:
    void open(bool showsWhileRunning = true)
    {
        storePreferences([&](AppPreferences& p) {
            p.showTopCapsuleWhileRunning = showsWhileRunning;
            p.timerSettings.alertIntensity = AlertIntensity::strong;
        });
        close();
        modelOrNone = std::make_unique<AppModel>(makeParts());
        choreography.emplace(capsule, scheduler, *modelOrNone);
        scheduler.runPending();
    }
    void close()
    {
        choreography.reset();
        EXPECT_FALSE(capsule.observer.hovered);
        modelOrNone.reset();
        capsule.visible = false;
    }

    /// What the capsule shows, in a word and its width.
    std::string shown() const
    {
        if (!capsule.visible) {
            return "hidden";
        }
        const CapsuleContent& c = capsule.content;
        EXPECT_FALSE(c.showsCompactTimer && c.revealsExpandedTimerContent);
        const std::string state = c.showsMinimizedCompletion ? "minimised"
                                  : c.showsCompletion        ? "island"
                                  : c.showsCompactTimer ? (c.showsProgressBorder ? "circle" : "bare circle")
                                  : c.revealsExpandedTimerContent ? "expanded"
                                                                  : "expanding";
        return state + " " + std::to_string(static_cast<int>(capsule.layout.width));
    }
    // Each gives what is shown after it.
    std::string ring()
    {
        scheduler.advance(model().remainingSeconds());
        EXPECT_EQ(runState(), ringing);
        return shown();
    }
    std::string wait(double seconds)
    {
        scheduler.advance(Seconds{seconds});
        return shown();
    }
    std::string hover(bool isHovering)
    {
        capsule.observer.hovered(isHovering);
        return shown();
    }
    std::string command(CapsuleCommand what)
    {
        capsule.observer.commanded(what);
        return shown();
    }
    std::string after(void (AppModel::*act)())
    {
        (model().*act)();
        return shown();
    }

    FakeCapsule capsule;
    std::optional<CapsuleChoreography> choreography;
};

TEST_F(CapsuleChoreographyTest, the_circle_lives_while_a_phase_is_under_way)
{
    open();
    EXPECT_EQ(shown(), "hidden");
    EXPECT_EQ(after(&AppModel::start), "circle 50");
    EXPECT_EQ(capsule.content.clockText, "25:00");
    wait(375);
    EXPECT_EQ(capsule.content.clockText, "18:45");
    EXPECT_DOUBLE_EQ(capsule.content.progress, 0.25);
    EXPECT_EQ(capsule.content.runState, running);
    EXPECT_EQ(capsule.content.language, AppLanguage::english);
    EXPECT_EQ(capsule.content.endTimeText, model().endTimeText());
    EXPECT_EQ(capsule.content.cycleSummaryText, "Cycle 1/4 · 6 focus min");
    EXPECT_EQ(after(&AppModel::pause), "circle 50");
    hover(true);
    model().setShowTopCapsuleWhileRunning(false);
    EXPECT_EQ(shown(), "hidden");
    model().setShowTopCapsuleWhileRunning(true);
    EXPECT_EQ(shown(), "circle 50") << "it was folded";
    EXPECT_EQ(capsule.layout.horizontalAnchor, HorizontalAnchor::center);
    EXPECT_EQ(wait(1), "circle 50");
    hover(true);
    wait(1);
    model().setTopTimerAppearance(TopTimerAppearance::light);
    EXPECT_EQ(shown(), "expanded 316");
    EXPECT_EQ(capsule.content.appearance, TopTimerAppearance::light);
    EXPECT_EQ(after(&AppModel::restoreDefaultPreferences), "circle 50") << "defaults fold it";
}

TEST_F(CapsuleChoreographyTest, each_command_silences_the_alert_and_shows_what_follows_from_it)
{
    struct Case
    {
        void (AppModel::*command)();
        TimerRunState before;
        TimerRunState after;
        std::string shown;
        std::optional<std::string> title;
    };
    const Case cases[] = {
        {&AppModel::start, idle, running, "circle 50", {}},
        {&AppModel::pause, running, paused, "circle 50", {}},
        {&AppModel::resume, running, running, "circle 50", {}},
        {&AppModel::addFiveMinutes, ringing, ringing, "island 460", "Focus complete"},
        {&AppModel::endCurrentPhase, running, ringing, "island 460", "Ended Focus early"},
        {&AppModel::endCurrentPhase, ringing, ringing, "island 460", {}},
        {&AppModel::switchToNextPhase, running, running, "circle 50", {}},
        {&AppModel::switchToNextPhase, ringing, ringing, "island 460", {}},
        {&AppModel::advance, ringing, running, "circle 50", {}},
        {&AppModel::advance, idle, running, "circle 50", {}},
        {&AppModel::skipPendingPhase, ringing, ringing, "island 460", "Skipped Break"},
        {&AppModel::skipPendingPhase, idle, idle, "hidden", {}},
        {&AppModel::dismissCompletion, ringing, idle, "hidden", {}},
        {&AppModel::dismissCompletion, idle, idle, "hidden", {}},
    };
    for (const Case& c : cases) {
        const auto number = &c - cases;
        close();
        defaults.values.erase("Brevlin.activeTimerSnapshot.v1");
        open();
        if (c.before != idle) {
            model().start();
        }
        if (c.before == ringing) {
            ring();
        }
        ASSERT_EQ(model().isAlertSoundPlaying(), c.before == ringing);
        (model().*c.command)();
        EXPECT_EQ(runState(), c.after) << number;
        EXPECT_FALSE(model().isAlertSoundPlaying()) << number;
        EXPECT_EQ(shown(), c.shown) << number;
        if (capsule.visible) {
            EXPECT_EQ(capsule.content.completionTitle, c.title) << number;
        }
    }
}

TEST_F(CapsuleChoreographyTest, hovering_widens_and_leaving_waits)
{
    for (const auto anchor : {HorizontalAnchor::leading, HorizontalAnchor::trailing}) {
        capsule.anchor = anchor;
        open();
        model().start();
        hover(true);
        EXPECT_EQ(capsule.askedWidth, 316);
        EXPECT_EQ(capsule.layout.horizontalAnchor, anchor);
        if (anchor == HorizontalAnchor::leading) {
            EXPECT_EQ(shown(), "expanding 316");
            wait(0.056);
        }
        EXPECT_EQ(shown(), "expanded 316");
        hover(false);
        EXPECT_EQ(wait(0.13), "expanded 316");
        hover(true);
        EXPECT_EQ(wait(1), "expanded 316") << "back in time";
        capsule.pointerIsNear = true;
        hover(false);
        EXPECT_EQ(wait(1), "expanded 316") << "the exit was spurious";
        capsule.pointerIsNear = false;
        hover(false);
        EXPECT_EQ(wait(0.15), "circle 50");
        hover(true);
        EXPECT_EQ(capsule.content.revealsExpandedTimerContent, anchor == HorizontalAnchor::trailing);
        wait(1);
        model().endCurrentPhase();
        model().dismissCompletion();
    }
}

TEST_F(CapsuleChoreographyTest, a_pointer_that_leaves_before_the_reveal_sees_no_content)
{
    open();
    model().start();
    hover(true);
    wait(0.03);
    hover(false);
    EXPECT_EQ(wait(0.1), "expanding 316");
    EXPECT_EQ(wait(0.1), "circle 50");
}

TEST_F(CapsuleChoreographyTest, a_visible_circle_grows_into_the_island_and_back)
{
    open();
    model().start();
    EXPECT_EQ(ring(), "island 460");
    EXPECT_FALSE(capsule.content.showsCompactTimer || capsule.content.showsProgressBorder);
    EXPECT_EQ(capsule.content.completionTitle, "Focus complete");
    EXPECT_TRUE(capsule.content.isAlertSoundPlaying);
    hover(true);
    EXPECT_EQ(wait(1), "island 460") << "the pointer does not expand an island";
    EXPECT_EQ(capsule.askedWidth, 0);
    EXPECT_EQ(command(CapsuleCommand::minimize), "minimised 50");
    choreography->toggleCompletionSize();
    EXPECT_EQ(shown(), "island 460");
    choreography->toggleCompletionSize();
    EXPECT_EQ(shown(), "minimised 50");
    EXPECT_EQ(command(CapsuleCommand::restore), "island 460");
    EXPECT_EQ(capsule.content.completionTitle, "Focus complete");
    EXPECT_EQ(command(CapsuleCommand::primary), "circle 50");
    EXPECT_EQ(capsule.content.phase, TimerPhase::shortBreak);
    EXPECT_FALSE(capsule.content.isAlertSoundPlaying);
}

TEST_F(CapsuleChoreographyTest, what_was_expanded_or_minimised_before_an_end_is_forgotten)
{
    launchAndStart();
    modelOrNone.reset();
    open();
    EXPECT_EQ(shown(), "circle 50") << "the first thing that it shows";
    for (int turn = 0; turn < 2; ++turn) {
        EXPECT_EQ(hover(true), "expanding 316");
        EXPECT_EQ(wait(1), "expanded 316");
        EXPECT_EQ(ring(), "island 460");
        EXPECT_FALSE(capsule.content.revealsExpandedTimerContent);
        EXPECT_EQ(model().currentCycleFocusMinutes(), 25) << "what is to come does not count";
        command(CapsuleCommand::minimize);
        EXPECT_EQ(command(CapsuleCommand::primary), "circle 50");
        EXPECT_EQ(capsule.layout.horizontalAnchor, HorizontalAnchor::center);
    }
    hover(true);
    EXPECT_EQ(after(&AppModel::switchToNextPhase), "circle 50");
}

TEST_F(CapsuleChoreographyTest, with_the_circle_switched_off_the_island_comes_and_goes_through_it)
{
    open(false);
    EXPECT_EQ(after(&AppModel::start), "hidden");
    EXPECT_EQ(ring(), "bare circle 50");
    EXPECT_EQ(capsule.content.progress, 0.0);
    hover(true);
    EXPECT_EQ(capsule.askedWidth, 0);
    EXPECT_EQ(wait(0.081), "island 460");
    EXPECT_EQ(capsule.content.completionTitle, "Focus complete");
    command(CapsuleCommand::primary);
    hover(true);
    EXPECT_EQ(capsule.askedWidth, 0);
    EXPECT_EQ(shown(), "bare circle 50");
    EXPECT_EQ(wait(0.47), "bare circle 50");
    EXPECT_EQ(wait(0.02), "hidden");
    EXPECT_EQ(runState(), running);
}

TEST_F(CapsuleChoreographyTest, whatever_comes_next_supersedes_a_step_that_is_pending)
{
    open(false);
    model().start();
    ring();
    command(CapsuleCommand::dismiss); // before the circle became the island
    EXPECT_EQ(wait(2), "hidden");
    model().setShowTopCapsuleWhileRunning(true);
    EXPECT_EQ(after(&AppModel::start), "circle 50");
    model().setShowTopCapsuleWhileRunning(false);
    ring();
    EXPECT_EQ(after(&AppModel::skipPendingPhase), "island 460");
    model().advance();
    ring();
    wait(0.1);
    command(CapsuleCommand::primary);
    model().endCurrentPhase(); // while the circle is about to go
    EXPECT_EQ(wait(2), "island 460");
    EXPECT_EQ(capsule.content.completionTitle, "Ended Focus early");
}

TEST_F(CapsuleChoreographyTest, a_sound_that_starts_widens_the_expanded_capsule)
{
    storePreferences([](AppPreferences& p) { p.timerSettings.autoStartBreaks = true; });
    open();
    model().start();
    ASSERT_TRUE(model().preferences().timerSettings.autoStartBreaks);
    hover(true);
    wait(1500);
    ASSERT_EQ(runState(), running) << "the break started by itself, with the alert sounding";
    EXPECT_EQ(shown(), "circle 50");
    hover(true);
    EXPECT_EQ(wait(0.1), "expanded 350");
    EXPECT_EQ(command(CapsuleCommand::stopAlert), "expanded 316");
}

TEST_F(CapsuleChoreographyTest, the_controls_of_the_capsule_drive_the_timer)
{
    open();
    command(CapsuleCommand::primary);
    command(CapsuleCommand::addTime);
    EXPECT_EQ(model().remainingSeconds(), Seconds{1800});
    command(CapsuleCommand::primary);
    EXPECT_EQ(runState(), paused);
    command(CapsuleCommand::primary);
    EXPECT_EQ(runState(), running);
    command(CapsuleCommand::skip);
    EXPECT_EQ(model().snapshot().phase, TimerPhase::shortBreak);
    EXPECT_EQ(command(CapsuleCommand::end), "island 460");
    EXPECT_EQ(capsule.content.completionTitle, "Ended Break early");
    EXPECT_EQ(command(CapsuleCommand::skipPending), "island 460");
    EXPECT_EQ(capsule.content.completionTitle, "Skipped Focus");
}

TEST_F(CapsuleChoreographyTest, a_ringing_timer_shows_its_island_after_a_restart)
{
    open();
    model().start();
    ring();
    open();
    EXPECT_EQ(shown(), "island 460");
    EXPECT_EQ(capsule.content.completionTitle, std::nullopt);
    hover(true);
    EXPECT_EQ(capsule.askedWidth, 0);
    model().setAppLanguage(AppLanguage::simplifiedChinese);
    EXPECT_EQ(capsule.content.language, AppLanguage::simplifiedChinese);
    EXPECT_EQ(command(CapsuleCommand::minimize), "minimised 50");
    EXPECT_EQ(command(CapsuleCommand::restore), "island 460");
}

} // namespace
} // namespace brevlin
