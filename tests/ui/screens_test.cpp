#include "app/model_fixture.h"
#include "support/drawn_texts.h"
#include "support/plain_desktop.h"
#include "ui/capsule/capsule_controls.h"
#include "ui/capsule/top_capsule_view.h"
#include "ui/controls/brevlin_style.h"
#include "ui/controls/capsule_button.h"
#include "ui/controls/choice_button.h"
#include "ui/controls/item_list.h"
#include "ui/controls/segmented_picker.h"
#include "ui/controls/text_field.h"
#include "ui/main/main_window.h"
#include "ui/main/message_dialog.h"
#include "ui/main/timer_card.h"
#include "ui/main/timer_dashboard_view.h"
#include "ui/main/today_strip.h"
#include "ui/screens/history/history_view.h"
#include "ui/screens/history/session_dialog.h"
#include "ui/screens/settings/clear_history_dialog.h"
#include "ui/screens/settings/export_dialog.h"
#include "ui/screens/settings/hooks_dialog.h"
#include "ui/screens/settings/import_dialog.h"
#include "ui/screens/settings/restore_dialog.h"
#include "ui/screens/statistics/breakdown_card.h"
#include "ui/style/built_in_fonts.h"
#include "ui/style/contrast.h"
#include "ui/style/theme.h"
#include "ui/timer/intention_field.h"
#include "ui/timer/timer_control_row.h"
#include "ui/timer/timer_cycle_indicator.h"
#include "ui/timer/timer_ring_view.h"
#include "ui/tray/more_button.h"
#include "ui/tray/tray_panel.h"

#include <QAbstractButton>
#include <QApplication>
#include <QImage>
#include <QLabel>

#include <algorithm>
#include <map>

namespace brevlin {
namespace {

/// The colour that most of this part of a picture has: what a text there stands on.
QColor groundOf(const QImage& picture, const QRectF& part)
{
    std::map<QRgb, int> counts;
    const QRect rect = part.adjusted(-2, -2, 2, 2).toAlignedRect() & picture.rect();
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x)
            ++counts[picture.pixel(x, y)];
    }
    const auto most = std::ranges::max_element(counts, {}, [](const auto& count) { return count.second; });
    return most == counts.end() ? QColor() : QColor(most->first);
}

class ScreenTest : public test::ModelTest
{
protected:
    /// Controls that change ask their window for another size, which follows in the next round.
    // A text that wraps changes its height once its width is known, and so does what lies around it.
    static void settle()
    {
        constexpr int passes = 6;
        for (int pass = 0; pass < passes; ++pass) {
            QApplication::processEvents();
            QApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        }
    }
    static void show(QWidget& widget, const QSize& size)
    {
        widget.setMinimumSize(1, 1);
        widget.resize(size);
        widget.show();
        settle();
        if (widget.size() != size) { // a main window is cut to the work area once, a while after it came
            widget.resize(size);
            settle();
        }
    }
    /// Wide, with every text; or the island.
    void show(TopCapsuleView& view, CapsuleContent content, bool isIsland)
    {
        m_still.setReducesMotion(true);
        view.setStyle(&m_still);
        content.runState = isIsland ? TimerRunState::ringing : TimerRunState::running;
        content.showsCompactTimer = false;
        content.revealsExpandedTimerContent = true;
        content.showsCompletion = isIsland;
        view.setContent(content);
        show(view, isIsland ? QSize(460, 126) : QSize(content.isAlertSoundPlaying ? 350 : 316, 50));
    }

    BrevlinStyle m_still;
    test::PlainWindowSystem m_windowSystem;
    test::NoPanels m_panels;
};

class EveryText : public ScreenTest
{
protected:
    ~EveryText() override { QApplication::setPalette(Theme::palette(ColorScheme::light)); }

    void expectWhole(QWidget& widget, const std::string& where)
    {
        // What has dots without being meant to was cut off.
        const QChar dots(0x2026);
        qsizetype meant = 0;
        for (const auto* button : widget.findChildren<QAbstractButton*>())
            meant += button->isVisible() ? button->text().count(dots) : 0;
        for (const auto* label : widget.findChildren<QLabel*>())
            meant += label->isVisible() ? label->text().count(dots) : 0;
        for (const int pixelRatio : {1, 2}) {
            const auto texts = test::drawnTexts(widget, pixelRatio);
            EXPECT_FALSE(texts.empty()) << where;
            qsizetype drawnDots = 0;
            for (const test::DrawnText& drawn : texts)
                drawnDots += drawn.text.count(dots);
            EXPECT_LE(drawnDots, meant) << where;
            for (const test::DrawnText& drawn : texts) {
                EXPECT_TRUE(BuiltInFonts::cover(drawn.text)) << drawn.text.toStdString();
                constexpr double rounding = 1; // of a glyph's box, to whole pixels
                const bool isWhole =
                    drawn.visible.adjusted(-rounding, -rounding, rounding, rounding).contains(drawn.ink);
                EXPECT_TRUE(isWhole) << where << ", " << pixelRatio << "x: " << drawn.text.toStdString()
                                     << " " << drawn.ink.left() << "," << drawn.ink.top() << " "
                                     << drawn.ink.right() << "," << drawn.ink.bottom() << " in "
                                     << drawn.visible.left() << "," << drawn.visible.top() << " "
                                     << drawn.visible.right() << "," << drawn.visible.bottom();
            }
        }
    }
    void expectLegible(QWidget& widget, const std::string& where)
    {
        const auto buttons = widget.findChildren<QAbstractButton*>();
        for (const char* state : {"", " hovered", " pressed"}) {
            for (QAbstractButton* button : buttons) {
                button->setAttribute(Qt::WA_UnderMouse, *state != '\0' && button->isEnabled());
                button->setDown(std::string(state) == " pressed" && button->isEnabled());
            }
            const QImage picture = widget.grab().toImage();
            for (const test::DrawnText& drawn : test::drawnTexts(widget, 1)) {
                const QColor ground = groundOf(picture, drawn.ink & drawn.visible);
                if (ground.isValid()) {
                    EXPECT_GE(contrastRatio(blended(drawn.color, ground), ground), textContrast)
                        << where << state << ": " << drawn.text.toStdString() << " on "
                        << ground.name().toStdString();
                }
            }
        }
    }
    /// In each language and scheme, in each state of the timer.
    template <typename Look>
    void inEveryState(Look look)
    {
        for (const AppLanguage language : allCases<AppLanguage>()) {
            for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
                storePreferences([language](AppPreferences& preferences) {
                    preferences.appLanguage = language;
                    preferences.timerSettings.alertIntensity = AlertIntensity::strong;
                });
                QApplication::setPalette(Theme::palette(scheme));
                // What a desktop lacks is said in one scheme, what it has in the other.
                silencer.present.reset();
                if (scheme == ColorScheme::light) {
                    silencer.present = {"xfce", NotificationSilencer::Lasts::always};
                }
                launch();
                model().start();
                scheduler.advance(Seconds{60});
                model().endCurrentPhase(); // so that there is a history
                model().skipPendingPhase();
                model().setIntention("Write #thesis #2026");
                model().advance();
                scheduler.advance(Seconds{2000});
                model().skipPendingPhase();
                model().dismissCompletion();
                const std::string where =
                    std::string(rawValue(language)) + (scheme == ColorScheme::dark ? " dark " : " light ");
                look(where + "idle");
                model().start();
                look(where + "running");
                events.observer.willSleep();
                clock.jump(Seconds{300});
                events.observer.didWake();
                look(where + "back");
                model().absences().putAside();
                model().pause();
                look(where + "paused");
                model().resume();
                scheduler.advance(Seconds{2000});
                look(where + "ringing");
                for (int phase = 0; phase < 6; ++phase) {
                    model().skipPendingPhase();
                    model().start();
                    scheduler.advance(Seconds{2000});
                }
                look(where + "ringing for a long break");
            }
        }
    }

    MainWindowStore m_store{disk()};
};

TEST_F(EveryText, is_whole_and_can_be_read_in_the_main_window)
{
    inEveryState([this](const std::string& where) {
        SectionSelection selection(m_store);
        MainWindow window(model(), selection, m_store, m_windowSystem, m_panels);
        window.present({});
        for (const AppSection section : allCases<AppSection>()) {
            if (section != AppSection::timer && where.find("idle") == std::string::npos)
                continue;
            selection.select(section);
            const std::string screen = where + " " + std::to_string(static_cast<int>(section));
            model().undoOffer().make({UndoOffer::Kind::restoration, 12'345, [] {
                                      }});
            show(window, {802, 2400});
            expectWhole(window, screen);
            expectLegible(window, screen);
            if (section == AppSection::settings) {
                shortcuts.troubles[ShortcutAction::skip] = GlobalShortcuts::Trouble::taken;
                shortcuts.hasFailed = true;
                for (const auto offer : {GlobalShortcuts::Offer::commands, GlobalShortcuts::Offer::dialog,
                                         GlobalShortcuts::Offer::keys}) {
                    shortcuts.offered = offer;
                    shortcuts.observer.changed();
                    show(window, {802, 2400});
                    expectWhole(window, screen + " shortcuts " + std::to_string(static_cast<int>(offer)));
                    expectLegible(window, screen + " shortcuts");
                }
            }
            if (section == AppSection::statistics) {
                window.findChild<BreakdownCard*>()->findChildren<Segment*>().back()->click(); // by label
                settle();
                expectWhole(window, screen + " by label");
            }
        }
    });
}

TEST_F(EveryText, is_whole_in_every_look_of_the_capsule)
{
    for (const AppLanguage language : allCases<AppLanguage>()) {
        for (const bool isIsland : {false, true}) {
            TopCapsuleView view;
            CapsuleContent content;
            content.language = language;
            content.phase = TimerPhase::longBreak;
            content.clockText = "1:05:00";
            content.endTimeText = "12:44 PM";
            content.cycleSummaryText =
                BilingualText{"循环第 12/12 阶段 · 已专注 1440 分钟", "Cycle 12/12 · 1440 focus min"}.in(
                    language);
            content.completionTitle = BilingualText{"长休息完成", "Long break complete"}.in(language);
            content.isAlertSoundPlaying = true;
            show(view, content, isIsland);
            expectWhole(view, std::string(rawValue(language)) + (isIsland ? " island" : " capsule"));
        }
    }
}

TEST_F(EveryText, is_whole_and_can_be_read_in_a_dialog)
{
    inEveryState([this](const std::string& where) {
        ClearHistoryDialog question(model(), nullptr);
        MessageDialog message({Uuid{}, "Timer state reset", "The saved timer could not be read."},
                              model().language(), nullptr);
        const auto& records = model().sessions();
        SessionDialog addition(model(), std::nullopt, nullptr);
        SessionDialog correction(model(), records.empty() ? std::nullopt : std::optional{records.front().id},
                                 nullptr);
        for (QDialog* dialog : std::initializer_list<QDialog*>{&question, &message, &addition, &correction}) {
            dialog->show();
            if (auto* intention = dialog->findChild<TextField*>()) {
                intention->setText(QStringLiteral("12")); // there is something to be saved
                intention->setFocus();                    // and no date with a part that is marked
                settle();                                 // all of it is marked then
                intention->deselect();
            }
            settle();
            expectWhole(*dialog, where);
            expectLegible(*dialog, where);
        }
    });
}

TEST_F(EveryText, is_whole_and_can_be_read_where_the_history_goes_out_and_comes_in)
{
    inEveryState([this](const std::string& where) {
        if (where.find("idle") == std::string::npos)
            return;
        const auto look = [&](QDialog& dialog, const char* which) {
            dialog.show();
            settle();
            expectWhole(dialog, where + which);
            expectLegible(dialog, where + which);
        };
        for (const int format : {0, 2}) {
            ExportDialog out(model(), nullptr);
            const auto choices = out.findChildren<ChoiceButton*>();
            choices.at(0)->setCurrentIndex(format);
            choices.at(1)->setCurrentIndex(3);
            Q_EMIT choices.at(1)->chosen(3);
            look(out, " export");
            out.exportTo(QStringLiteral("/out"));
            look(out, " exported");
            files.failures.failFrom(1);
            ExportDialog refused(model(), nullptr);
            refused.show();
            refused.exportTo(QStringLiteral("/out"));
            files.failures.failNothing();
            look(refused, " export that fails");
        }
        std::string& file = files.files["/in.csv"];
        file = "id,phase,outcome,start,end\n,focus,completed,2020-01-31T09:00:00Z,2020-01-31T09:25:00Z\n";
        for (const ImportProblem problem : allCases<ImportProblem>())
            file += std::string(problem == ImportProblem::endsBeforeStart
                                    ? ",focus,completed,2020-01-31T09:00:00Z,2020"
                                    : "") +
                    "x,y\n";
        for (const char* name : {"/in.csv", "/none.csv", "/out"}) {
            ImportDialog in(model(), QString::fromLatin1(name), nullptr);
            look(in, name);
        }
        files.files["/backups/sessions-2020-02-29.json"] = "{";
        model().historyBackups().recordWasWritten(model().calendar().localDay(model().now()));
        RestoreDialog back(model(), nullptr);
        look(back, " restore");
        model().historyBackups().clear();
        RestoreDialog none(model(), nullptr);
        look(none, " restore from nothing");
        HooksDialog unused(model(), nullptr);
        look(unused, " no hooks");
        for (const auto kind :
             {HookResult::Kind::done, HookResult::Kind::failed, HookResult::Kind::tookTooLong,
              HookResult::Kind::unsafe, HookResult::Kind::notStarted})
            hookPrograms->results.push_back(
                {"20-status-message", HookEvent::phaseResumed, kind, 137, "no lamp"});
        model().start();
        HooksDialog hooks(model(), nullptr);
        for (int row = 0; row < 5; ++row) {
            hooks.findChild<ItemList*>()->setCurrentRow(row);
            look(hooks, " hooks");
        }
    });
}

TEST_F(EveryText, is_whole_and_can_be_read_in_the_panel)
{
    inEveryState([this](const std::string& where) {
        TrayPanel panel(model(), m_windowSystem, m_panels);
        panel.toggle({100, 100});
        settle();
        expectWhole(panel, where);
        expectLegible(panel, where);
    });
}

/// Where screens put things, to the point.
class Measures : public ScreenTest
{
protected:
    Measures()
    {
        storePreferences([](AppPreferences& preferences) {
            preferences.appLanguage = AppLanguage::english;
            preferences.timerSettings.alertIntensity = AlertIntensity::strong;
        });
        launch();
    }

    static QRect place(const QWidget& widget, const QWidget& screen)
    {
        return {widget.mapTo(&screen, QPoint()), widget.size()};
    }
    template <typename Part>
    static QRect place(const QWidget& screen)
    {
        return place(*screen.findChild<Part*>(), screen);
    }
    /// Of the circle that the ring is stroked on.
    static QRect circle(const QWidget& screen)
    {
        const auto* ring = screen.findChild<TimerRingView*>();
        const int beyond = ring->overhang();
        return place(*ring, screen).adjusted(beyond, beyond, -beyond, -beyond);
    }
    template <typename Button>
    static std::vector<QRect> buttons(const QWidget& screen)
    {
        std::vector<QRect> places;
        for (const Button* button : screen.findChildren<Button*>()) {
            if (button->isVisible())
                places.push_back(place(*button, screen));
        }
        std::ranges::sort(places, {}, [](const QRect& rect) { return std::pair(rect.top(), rect.left()); });
        return places;
    }
    /// The stretches of one colour in the middle line of a widget: where they begin and how long they are.
    static std::vector<std::pair<int, int>> stretches(QWidget& widget, const QColor& color)
    {
        const QImage picture = widget.grab().toImage();
        std::vector<std::pair<int, int>> found;
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixel(x, picture.height() / 2) != color.rgb())
                continue;
            if (found.empty() || found.back().first + found.back().second != x)
                found.emplace_back(x, 0);
            ++found.back().second;
        }
        return found;
    }
    static QRectF inkOf(QWidget& screen, const QString& start)
    {
        for (const test::DrawnText& drawn : test::drawnTexts(screen, 1)) {
            if (drawn.text.startsWith(start))
                return drawn.ink;
        }
        ADD_FAILURE() << start.toStdString();
        return {};
    }
};

TEST_F(Measures, of_the_dashboard)
{
    TimerDashboardView screen(model());
    show(screen, {920, 600});
    const QRect strip = place<TodayStrip>(screen);
    const QRect card = place<TimerCard>(screen);
    EXPECT_EQ(strip.topLeft(), QPoint(24, 24));
    EXPECT_EQ(strip.width(), 920 - 48);
    EXPECT_GE(strip.height(), 86);
    EXPECT_EQ(card.top() - strip.bottom() - 1, 18);
    EXPECT_EQ(600 - card.bottom() - 1, 24);
    EXPECT_EQ(circle(screen).size(), QSize(252, 252));
    EXPECT_EQ(circle(screen).center().x(), screen.rect().center().x());

    show(screen, {800, 520}); // the smallest window's
    EXPECT_GE(circle(screen).width(), 224) << "it gives way to the line below it";
    EXPECT_GE(place<TimerCycleIndicator>(screen).top() - place<TimerCard>(screen).top(), 10);
    EXPECT_GE(place<TimerRingView>(screen).top() - place<TimerCycleIndicator>(screen).bottom(), 8);
    EXPECT_GE(place<IntentionField>(screen).top() - place<TimerRingView>(screen).bottom(), 6);
    EXPECT_GE(place<TimerControlRow>(screen).top() - place<IntentionField>(screen).bottom(), 7);
    EXPECT_GE(place<TimerCard>(screen).bottom() - place<TimerControlRow>(screen).bottom(), 10);

    show(screen, {920, 900}); // with room for every wanted gap
    const QRect cycle = place<TimerCycleIndicator>(screen);
    EXPECT_EQ(cycle.top() - place<TimerCard>(screen).top(), 48);
    EXPECT_GE(circle(screen).top() - cycle.bottom() - 1, 22 + 12 + 22);
    EXPECT_EQ(place<IntentionField>(screen).top() - circle(screen).bottom() - 1, 22);
    EXPECT_EQ(place<TimerControlRow>(screen).top() - place<IntentionField>(screen).bottom() - 1, 15);

    model().start();
    settle();
    const auto controls = buttons<CapsuleButton>(screen);
    ASSERT_EQ(controls.size(), 4U);
    EXPECT_EQ(controls[0].height(), 36);
    EXPECT_EQ(controls[1].left() - controls[0].right() - 1, 12);
    EXPECT_NEAR(inkOf(screen, QStringLiteral("+5")).left() - controls[0].left(), 15 + 1, 0.5);

    model().endCurrentPhase();
    auto& indicator = *screen.findChild<TimerCycleIndicator*>();
    const auto marks = stretches(indicator, Theme::of(indicator).color(phaseColor(TimerPhase::shortBreak)));
    ASSERT_EQ(marks.size(), 1U);
    EXPECT_NEAR(marks[0].second, 36, 2);
}

TEST_F(Measures, of_the_panel)
{
    TimerSettings settings = model().preferences().timerSettings;
    settings.focusSessionsPerLongBreak = 1;
    model().commitTimerSettings(settings);
    TrayPanel panel(model(), m_windowSystem, m_panels);
    panel.toggle({100, 100});
    settle();
    EXPECT_EQ(panel.width(), 300);
    const QRect more = place<MoreButton>(panel);
    EXPECT_EQ(more.size(), QSize(28, 24));
    EXPECT_EQ(more.topRight(), QPoint(300 - 14 - 1, 14));
    EXPECT_EQ(place<TimerCycleIndicator>(panel).left(), 14);
    EXPECT_EQ(circle(panel).size(), QSize(150, 150));
    EXPECT_EQ(circle(panel).center().x(), panel.rect().center().x());
    EXPECT_EQ(circle(panel).top() - more.bottom() - 1, 13 + 13);
    const auto controls = buttons<CapsuleButton>(panel);
    ASSERT_EQ(controls.size(), 1U);
    EXPECT_EQ(controls[0].height(), 30);
    const QRect intention = place<IntentionField>(panel);
    EXPECT_EQ(intention.top() - circle(panel).bottom() - 1, 13 + 13);
    EXPECT_EQ(controls[0].top() - intention.bottom() - 1, 13);
    EXPECT_EQ(panel.height() - controls[0].bottom() - 1, 14);
    model().start();
    settle();
    const auto running = buttons<CapsuleButton>(panel);
    EXPECT_EQ(running.at(1).left() - running.at(0).right() - 1, 6);

    scheduler.advance(Seconds{1500});
    settle();
    const int height = panel.height();
    EXPECT_EQ(height - buttons<CapsuleButton>(panel).back().bottom() - 1, 14);
    model().stopAlertSound();
    settle();
    EXPECT_LT(panel.height(), height) << "one row of buttons is enough again";
    settings.focusSessionsPerLongBreak = 12;
    model().commitTimerSettings(settings);
    for (const AppLanguage language : allCases<AppLanguage>()) {
        model().setAppLanguage(language);
        EXPECT_LE(14 + panel.findChild<TimerCycleIndicator*>()->minimumSizeHint().width(), more.left());
    }
}

TEST_F(Measures, of_the_capsule)
{
    TopCapsuleView view;
    CapsuleContent content;
    content.language = AppLanguage::english;
    content.clockText = "25:00";
    content.endTimeText = "14:05";
    show(view, content, false);
    using Rects = std::vector<QRect>;
    EXPECT_EQ(buttons<CapsuleRoundButton>(view), (Rects{{168, 11, 28, 28}, // from the right: 12, then 9 apart
                                                        {205, 11, 27, 27},
                                                        {241, 11, 27, 27},
                                                        {277, 11, 27, 27}}));
    EXPECT_NEAR(inkOf(view, QStringLiteral("Ends")).left(), 12 + 25 + 9, 0.5);

    content.isAlertSoundPlaying = true;
    content.completionTitle = "Focus complete";
    show(view, content, true);
    EXPECT_EQ(buttons<CapsuleRoundButton>(view), (Rects{{374, 29, 27, 27}, {413, 29, 27, 27}}));
    const auto below = buttons<IslandButton>(view);
    ASSERT_EQ(below.size(), 3U);
    EXPECT_EQ(below[0].topLeft(), QPoint(20, 20 + 46 + 12));
    EXPECT_EQ(below[2].bottomRight(), QPoint(460 - 20 - 1, 126 - 20 - 1));
    EXPECT_EQ(below[2].left() - below[1].right() - 1, 10);
    EXPECT_NEAR(inkOf(view, QStringLiteral("Focus")).left(), 20 + 46 + 12 + 1.5, 0.6);
}

TEST_F(Measures, of_the_history)
{
    for (int phase = 0; phase < 2; ++phase) {
        phase == 0 ? model().start() : model().advance();
        scheduler.advance(Seconds{60});
        model().endCurrentPhase();
        scheduler.advance(Seconds{86400});
    }
    HistoryView screen(model());
    show(screen, {920, 600});
    std::vector<QRectF> lengths;
    for (const test::DrawnText& drawn : test::drawnTexts(screen, 1)) {
        if (drawn.text == QStringLiteral("1 min"))
            lengths.push_back(drawn.ink);
    }
    ASSERT_EQ(lengths.size(), 2U);
    EXPECT_NEAR(lengths[0].right(), 920 - 24 - 16, 1.1);
    EXPECT_EQ(lengths[1].top() - lengths[0].top(), 44 + 54 + 14) << "a header, a row, the gap between cards";
    EXPECT_NEAR(inkOf(screen, QStringLiteral("Focus")).left(), 24 + 16 + 32 + 13, 1.1);
}

} // namespace
} // namespace brevlin
