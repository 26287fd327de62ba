#include "app/model_fixture.h"
#include "support/plain_desktop.h"
#include "ui/controls/bar_buttons.h"
#include "ui/controls/capsule_button.h"
#include "ui/controls/empty_state_view.h"
#include "ui/controls/numeric_text.h"
#include "ui/controls/text_field.h"
#include "ui/main/absence_bar.h"
#include "ui/main/main_window.h"
#include "ui/main/message_dialog.h"
#include "ui/main/message_presenter.h"
#include "ui/main/metric_view.h"
#include "ui/main/quit_sequence.h"
#include "ui/main/timer_card.h"
#include "ui/main/today_strip.h"
#include "ui/main/top_bar.h"
#include "ui/main/windows.h"
#include "ui/screens/settings/import_dialog.h"
#include "ui/screens/statistics/breakdown_row.h"
#include "ui/timer/timer_control_row.h"
#include "ui/timer/timer_cycle_indicator.h"
#include "ui/timer/timer_ring_view.h"

#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QDropEvent>
#include <QMimeData>
#include <QScrollArea>
#include <QTest>
#include <QUrl>

#include <algorithm>

namespace brevlin {
namespace {

class MainWindowTest : public test::ModelTest
{
protected:
    MainWindow& open()
    {
        m_presenter.reset();
        m_window.reset();
        launch();
        m_selection = std::make_unique<SectionSelection>(m_store);
        m_window = std::make_unique<MainWindow>(model(), *m_selection, m_store, m_windowSystem, m_panels);
        m_presenter = std::make_unique<MessagePresenter>(
            model().messages(), [this](const std::string& title, const std::string& text) {
                m_notified.push_back(title + ": " + text);
            });
        m_presenter->addWindow(m_window.get());
        m_window->present({});
        m_presenter->start();
        QApplication::processEvents();
        return *m_window;
    }
    MainWindow& window() { return *m_window; }

    std::vector<std::string> buttons()
    {
        std::vector<std::string> texts;
        for (const auto* button : window().findChild<TimerControlRow*>()->findChildren<CapsuleButton*>()) {
            if (!button->isHidden()) {
                texts.push_back(button->text().toStdString());
            }
        }
        return texts;
    }
    void press(Qt::Key key)
    {
        QWidget* target = QApplication::focusWidget() != nullptr ? QApplication::focusWidget() : &window();
        QTest::keyClick(target, key);
        QApplication::processEvents();
    }
    static std::string spoken(QWidget* widget)
    {
        QAccessibleInterface* element = QAccessible::queryAccessibleInterface(widget);
        EXPECT_EQ(element->childCount(), 0);
        return element->text(QAccessible::Name).toStdString();
    }

    MainWindowStore m_store{disk()};
    test::PlainWindowSystem m_windowSystem;
    test::NoPanels m_panels;
    std::unique_ptr<SectionSelection> m_selection;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<MessagePresenter> m_presenter;
    std::vector<std::string> m_notified;
};

TEST_F(MainWindowTest, windows_are_made_once_and_only_when_they_are_asked_for)
{
    launch();
    SectionSelection selection(m_store);
    Windows windows(model(), selection, m_store, m_windowSystem, m_panels);
    std::vector<QWidget*> made;
    int paintings = 0;
    QObject::connect(&windows, &Windows::made, &windows, [&](QWidget* window) { made.push_back(window); });
    QObject::connect(&windows, &Windows::painted, &windows, [&] { ++paintings; });
    windows.close();
    EXPECT_TRUE(made.empty());
    windows.presentSettings();
    windows.presentMain({});
    windows.showMain();
    QApplication::processEvents();
    made.at(1)->repaint();
    QApplication::processEvents();
    ASSERT_EQ(made.size(), 2U);
    EXPECT_TRUE(made[0]->isVisible() && made[1]->isVisible());
    EXPECT_EQ(paintings, 1);
    windows.close();
    EXPECT_FALSE(made[0]->isVisible() || made[1]->isVisible());
}

TEST_F(MainWindowTest, the_controls_are_those_of_the_state_and_the_language)
{
    using Texts = std::vector<std::string>;
    storePreferences([](AppPreferences& p) { p.timerSettings.alertIntensity = AlertIntensity::strong; });
    open();
    EXPECT_EQ(buttons(), Texts{"Start Focus"});
    model().start();
    EXPECT_EQ(buttons(), (Texts{"+5 min", "Pause", "End", "Switch"}));
    model().pause();
    EXPECT_EQ(buttons(), (Texts{"+5 min", "Resume", "End", "Switch"}));
    model().setAppLanguage(AppLanguage::simplifiedChinese);
    EXPECT_EQ(buttons(), (Texts{"+5 分钟", "继续", "结束", "切换"}));
    model().setAppLanguage(AppLanguage::english);
    model().resume();
    scheduler.advance(Seconds{1500});
    EXPECT_EQ(buttons(), (Texts{"Stop sound", "Skip Break", "Start Break"}));
    scheduler.advance(Seconds{60});
    EXPECT_EQ(buttons(), (Texts{"Skip Break", "Start Break"})) << "the sound has stopped by itself";
}

TEST_F(MainWindowTest, a_window_that_was_hidden_shows_the_time_of_now_at_once)
{
    open();
    model().start();
    window().hide();
    scheduler.advance(Seconds{61});
    window().show();
    auto* time = window().findChild<TimerRingView*>()->findChild<NumericText*>();
    EXPECT_EQ(time->text(), QStringLiteral("23:59"));
    EXPECT_FALSE(time->transition().isRunning());
}

TEST_F(MainWindowTest, a_phase_that_begins_by_itself_keeps_the_buttons_and_the_keyboard_goes_on)
{
    storePreferences([](AppPreferences& p) { p.timerSettings.autoStartBreaks = true; });
    open();
    model().start();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    const auto shown = window().findChild<TimerControlRow*>()->findChildren<CapsuleButton*>();
    shown.at(0)->setFocus();
    scheduler.advance(Seconds{1500});
    ASSERT_EQ(model().snapshot().phase, TimerPhase::shortBreak);
    EXPECT_EQ(window().findChild<TimerControlRow*>()->findChildren<CapsuleButton*>(), shown);
    EXPECT_EQ(QApplication::focusWidget(), shown.at(1));
    press(Qt::Key_Space);
    EXPECT_EQ(model().snapshot().runState, TimerRunState::paused);
}

TEST_F(MainWindowTest, what_is_drawn_is_told_to_assistive_technology)
{
    open();
    auto* ring = window().findChild<TimerRingView*>();
    auto* cycle = window().findChild<TimerCycleIndicator*>();
    model().start();
    scheduler.advance(Seconds{61});
    EXPECT_EQ(spoken(ring), "Focus, 23:59 remaining");
    EXPECT_EQ(spoken(cycle), "Pomodoro cycle 1/4");
    model().setAppLanguage(AppLanguage::simplifiedChinese);
    EXPECT_EQ(spoken(ring), "专注，剩余 23:59");
}

TEST_F(MainWindowTest, todays_figures_follow_the_records_and_the_language)
{
    open();
    const auto figures = [this] {
        std::string all;
        for (MetricView* metric : window().findChildren<MetricView*>()) {
            all += (all.empty() ? "" : " | ") + spoken(metric);
        }
        return all;
    };
    EXPECT_EQ(figures(), "Focus today, 0 min | Completed, 0 | Current streak, 0 days | Completion rate, 0%");
    for (int phase = 0; phase < 8; ++phase) {
        model().performPrimaryAction();
        scheduler.advance(Seconds{60});
        phase < 7 ? scheduler.advance(Seconds{1500}) : model().endCurrentPhase();
        model().skipPendingPhase();
    }
    EXPECT_EQ(figures(),
              "Focus today, 175 min | Completed, 7 | Current streak, 1 days | Completion rate, 88%");
    model().setAppLanguage(AppLanguage::simplifiedChinese);
    EXPECT_EQ(figures(), "今日专注, 175 分钟 | 完成番茄, 7 个 | 连续天数, 1 天 | 完成率, 88%");
    scheduler.advance(Seconds{86'400});
    EXPECT_EQ(figures().find("今日专注, 0 分钟"), 0U) << "midnight has passed";
}

TEST_F(MainWindowTest, no_figure_is_shown_before_the_history_is_known)
{
    const auto figure = [this] {
        return spoken(window().findChild<MetricView*>());
    };
    for (const bool canBeRead : {true, false}) {
        thread.runsAtOnce = false;
        open();
        EXPECT_EQ(figure().find('0'), std::string::npos);
        m_selection->select(AppSection::history);
        QApplication::processEvents();
        EXPECT_FALSE(window().findChild<EmptyStateView*>()->isVisible());
        if (!canBeRead)
            files.failures.failFrom(1);
        thread.runAll();
        EXPECT_TRUE(window().findChild<EmptyStateView*>()->isVisible());
        m_selection->select(AppSection::timer);
        QApplication::processEvents();
        EXPECT_NE(figure().find("0 min"), std::string::npos);
    }
}

TEST_F(MainWindowTest, the_smallest_window_holds_its_screen_also_after_it_was_too_low)
{
    open();
    EXPECT_EQ(window().findChild<QScrollArea*>(), nullptr) << "nothing to scroll";
    window().setMinimumSize(1, 1);
    window().resize(680, 400);
    QApplication::processEvents();
    EXPECT_NE(window().findChild<QScrollArea*>(), nullptr);
    m_selection->select(AppSection::statistics);
    QApplication::processEvents();
    EXPECT_EQ(m_store.section(), "statistics");
    m_selection->select(AppSection::timer);
    window().resize(802, 572); // 800 x 570 and a hairline
    QApplication::processEvents();
    EXPECT_EQ(window().findChild<TopBar*>()->width(), 800);
    const auto* card = window().findChild<TimerCard*>();
    EXPECT_EQ(card->parentWidget()->parentWidget()->height(), 520);
}

TEST_F(MainWindowTest, a_place_that_is_stored_outlives_a_desktop_that_tells_none)
{
    ASSERT_TRUE(m_store.saveGeometry({WindowPlace{20, 30}, 860, 600, false}));
    m_windowSystem.placesAreTold = false;
    open().resize(850, 610);
    window().move(0, 0);
    QApplication::processEvents();
    window().close();
    const auto stored = m_store.geometry();
    ASSERT_TRUE(stored && stored->place);
    EXPECT_EQ(stored->place->x, 20);
    EXPECT_EQ(stored->place->y, 30);
    EXPECT_NE(stored->width, 860);

    m_windowSystem.placesAreTold = true;
    open().move(40, 50);
    QApplication::processEvents();
    window().close();
    EXPECT_EQ(m_store.geometry()->place->x, 41); // within its hairline
}

TEST_F(MainWindowTest, messages_are_shown_one_after_the_other_and_told_of_while_the_window_is_closed)
{
    defaults.values["Brevlin.activeTimerSnapshot.v1"] = "{";
    open();
    const auto alert = [this] {
        return window().findChild<MessageDialog*>();
    };
    const auto accept = [&] {
        alert()->accept();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    ASSERT_NE(alert(), nullptr);
    files.failures.failFrom(1);
    model().clearHistory();
    EXPECT_EQ(alert()->windowTitle(), QStringLiteral("Timer state reset"));
    accept();
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->windowTitle(), QStringLiteral("Unable to clear history"));
    accept();
    EXPECT_EQ(alert(), nullptr);
    EXPECT_TRUE(m_notified.empty());

    window().close();
    model().clearHistory();
    loginItem.failure = "no room";
    model().launchAtLogin().setLaunchAtLogin(true);
    ASSERT_EQ(m_notified.size(), 2U);
    EXPECT_TRUE(m_notified[0].starts_with("Unable to clear history: "));
    EXPECT_EQ(m_notified[1], m_notified[0] + "\nLaunch at login failed\n无法开启登录时启动：no room");
    window().present({});
    QApplication::processEvents();
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->windowTitle(), QStringLiteral("Unable to clear history"));
    accept();
    accept();
    EXPECT_EQ(alert(), nullptr);
    EXPECT_EQ(m_notified.size(), 2U);
}

TEST_F(MainWindowTest, a_file_that_is_dropped_on_it_is_one_to_import)
{
    MainWindow& target = open();
    const QUrl one = QUrl::fromLocalFile(QStringLiteral("/in.csv"));
    for (const auto& [urls, dialogs] :
         {std::pair(QList<QUrl>{QUrl(QStringLiteral("http://a/b.csv"))}, 0),
          std::pair(QList<QUrl>{one, one}, 0), std::pair(QList<QUrl>{one}, 1)}) {
        QMimeData data;
        data.setUrls(urls);
        const auto send = [&](auto event) {
            event.setAccepted(false);
            QApplication::sendEvent(&target, &event);
            EXPECT_EQ(event.isAccepted(), dialogs == 1);
        };
        send(QDragEnterEvent({20, 200}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                             Qt::NoModifier));
        send(QDropEvent({20, 200}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier));
        EXPECT_EQ(target.findChildren<ImportDialog*>().size(), dialogs);
    }
}

TEST_F(MainWindowTest, quitting_waits_for_the_disk_and_then_says_what_it_did_not_take)
{
    open();
    int ends = 0;
    std::unique_ptr<QuitSequence> quit;
    const auto begin = [&](QuitSequence::Origin origin) {
        quit = std::make_unique<QuitSequence>(model(), thread, scheduler);
        QObject::connect(quit.get(), &QuitSequence::finished, [&] { ++ends; });
        quit->begin(origin);
    };
    begin(QuitSequence::Origin::user);
    EXPECT_EQ(ends, 1) << "there is nothing to wait for";

    thread.runsAtOnce = false;
    model().start();
    begin(QuitSequence::Origin::system);
    scheduler.advance(Seconds{3});
    EXPECT_EQ(ends, 1);
    thread.runAll();
    scheduler.advance(Seconds{0.1});
    EXPECT_EQ(ends, 2);

    thread.runsAtOnce = true;
    files.files["/data/sessions-v1.json"] = "half a copy";
    model().endCurrentPhase();
    begin(QuitSequence::Origin::user);
    scheduler.advance(Seconds{8.5});
    EXPECT_EQ(ends, 2) << "whoever copies is given time";
    scheduler.advance(Seconds{1});
    EXPECT_EQ(ends, 3) << "and then the copy is kept beside ours";
    EXPECT_EQ(files.files.size(), 3U) << "with the day's backup";

    quit.reset();
    defaults.failures.failFrom(1);
    files.failures.failFrom(1);
    model().advance();
    model().endCurrentPhase();
    begin(QuitSequence::Origin::user);
    scheduler.advance(Seconds{70});
    const auto widgets = QApplication::topLevelWidgets();
    const auto told = std::find_if(widgets.begin(), widgets.end(), [](QWidget* each) {
        return each->windowTitle() == QStringLiteral("Not everything could be saved") && each->isVisible();
    });
    ASSERT_NE(told, widgets.end());
    EXPECT_EQ(ends, 3);
    static_cast<QDialog*>(*told)->accept();
    EXPECT_EQ(ends, 4);
}

TEST_F(MainWindowTest, the_sections_are_one_stop_and_the_windows_own_buttons_come_last)
{
    open();
    const auto stops = [this](int count) {
        std::vector<std::string> names;
        for (int stop = 0; stop < count; ++stop) {
            press(Qt::Key_Tab);
            const auto* button = qobject_cast<QAbstractButton*>(QApplication::focusWidget());
            const QString name = button != nullptr && !button->text().isEmpty()
                                     ? button->text()
                                     : QApplication::focusWidget()->accessibleName();
            names.push_back(name.toStdString());
        }
        return names;
    };
    using Names = std::vector<std::string>;
    EXPECT_EQ(stops(7),
              (Names{"Focus", "Intention", "Start Focus", "Close", "Minimize", "Maximize", "Focus"}));
    press(Qt::Key_Right);
    EXPECT_EQ(m_selection->section(), AppSection::history);
    for (int count = 0; count < 4; ++count) {
        press(Qt::Key_Left);
    }
    EXPECT_EQ(m_selection->section(), AppSection::timer);
    EXPECT_EQ(stops(2), (Names{"Intention", "Start Focus"}));
    press(Qt::Key_Space);
    // The keyboard is on Pause. More time changes nothing but the time, and may be wanted again.
    QApplication::focusWidget()->previousInFocusChain()->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    press(Qt::Key_Space);
    EXPECT_EQ(model().remainingSeconds(), Seconds{2100});
    EXPECT_EQ(stops(6), (Names{"Pause", "End", "Switch", "Close", "Minimize", "Maximize"}));
}

TEST_F(MainWindowTest, a_choice_of_a_section_is_told_once_and_an_unknown_one_forgotten)
{
    SectionSelection selection(m_store);
    int changes = 0;
    QObject::connect(&selection, &SectionSelection::sectionChanged, [&] { ++changes; });
    selection.select(AppSection::statistics);
    selection.select(AppSection::statistics);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(SectionSelection(m_store).section(), AppSection::statistics);
    defaults.values["com.quillmark.brevlin.mainSection"] = "\"diary\"";
    EXPECT_EQ(SectionSelection(m_store).section(), AppSection::timer);
}

TEST_F(MainWindowTest, what_the_time_was_for_leads_to_its_records_in_the_history)
{
    open();
    for (const char* intention : {"thesis", "letters"}) {
        model().setIntention(intention);
        model().start();
        scheduler.advance(Seconds{1500});
        model().skipPendingPhase();
        model().dismissCompletion();
    }
    m_selection->select(AppSection::statistics);
    QApplication::processEvents();
    window().findChildren<BreakdownRow*>().back()->click();
    QApplication::processEvents();
    EXPECT_EQ(m_selection->section(), AppSection::history);
    EXPECT_EQ(window().findChild<TextField*>()->text(), QStringLiteral("\"thesis\""));
    m_selection->select(AppSection::timer);
    m_selection->select(AppSection::history);
    EXPECT_EQ(window().findChild<TextField*>()->text(), QString());
}

/// Back from time away in a focus phase.
class AbsenceTest : public MainWindowTest
{
protected:
    void goAway()
    {
        events.observer.willSleep();
        clock.jump(Seconds{300});
        events.observer.didWake();
        QApplication::processEvents();
    }
    AbsenceBar& bar() { return *window().findChild<AbsenceBar*>(); }
    /// Each answer, and putting aside as the last.
    QList<QAbstractButton*> answers() { return bar().findChildren<QAbstractButton*>(); }
    std::string said()
    {
        return QAccessible::queryAccessibleInterface(&bar())->text(QAccessible::Name).toStdString();
    }
    AbsenceDecision decision(std::size_t index)
    {
        return model().historyEditor().detailsOf(*model().snapshot().sessionID).absences.at(index).decision;
    }
};

TEST_F(AbsenceTest, is_asked_about_above_the_screen_until_it_is_answered)
{
    open();
    model().start();
    scheduler.advance(Seconds{300});
    EXPECT_TRUE(bar().isHidden());
    goAway();
    scheduler.advance(Seconds{60});
    goAway();
    EXPECT_EQ(said(), "You were away from 08:18 to 08:23.");
    ASSERT_EQ(answers().size(), 4);
    EXPECT_EQ(answers()[2]->text(), QStringLiteral("End at 08:18"));
    model().setAppLanguage(AppLanguage::simplifiedChinese);
    EXPECT_EQ(answers()[2]->text(), QStringLiteral("在 08:18 结束"));
    for (const AppSection section : allCases<AppSection>()) {
        m_selection->select(section);
        QApplication::processEvents();
        const auto screens = bar().parentWidget()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
        EXPECT_GT(screens.back()->y(), bar().geometry().top() + bar().cardRect().bottom())
            << "nothing is hidden";
    }
    for (QWidget* next = window().findChild<TopBar*>(); next != answers()[1];
         next = QApplication::focusWidget()) {
        ASSERT_NE(next, answers()[3]);
        press(Qt::Key_Tab);
    }
    press(Qt::Key_Space);
    EXPECT_EQ(decision(0), AbsenceDecision::doNotCount);
    EXPECT_EQ(said(), "你在 08:24 到 08:29 之间离开了。");
    answers()[1]->click();
    EXPECT_EQ(decision(1), AbsenceDecision::undecided) << "the second press of a double click";
    answers()[3]->click();
    EXPECT_TRUE(bar().isHidden());
    EXPECT_EQ(decision(1), AbsenceDecision::undecided);
    EXPECT_EQ(QApplication::focusWidget(), bar().parentWidget()) << "where Space is the timer's";
}

TEST_F(AbsenceTest, takes_the_place_of_todays_figures_where_there_is_not_room_for_both)
{
    open();
    model().start();
    auto* today = window().findChild<TodayStrip*>();
    for (const int height : {570, 900}) {
        window().resize(802, height + 2);
        goAway();
        EXPECT_EQ(today->isVisible(), height == 900);
        EXPECT_TRUE(
            window().rect().contains(QRect(window().findChild<TimerCard*>()->mapTo(&window(), QPoint()),
                                           window().findChild<TimerCard*>()->size())));
        model().absences().putAside();
        QApplication::processEvents();
        EXPECT_TRUE(today->isVisible());
    }
}

} // namespace
} // namespace brevlin
