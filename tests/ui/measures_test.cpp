#include "app/model_fixture.h"
#include "support/drawn_texts.h"
#include "support/plain_desktop.h"
#include "ui/capsule/capsule_controls.h"
#include "ui/capsule/top_capsule_view.h"
#include "ui/controls/brevlin_style.h"
#include "ui/controls/capsule_button.h"
#include "ui/main/timer_card.h"
#include "ui/main/timer_dashboard_view.h"
#include "ui/main/today_strip.h"
#include "ui/screens/history/history_view.h"
#include "ui/style/theme.h"
#include "ui/timer/timer_control_row.h"
#include "ui/timer/timer_cycle_indicator.h"
#include "ui/timer/timer_ring_view.h"
#include "ui/tray/more_button.h"
#include "ui/tray/tray_panel.h"

#include <QAbstractButton>
#include <QApplication>
#include <QImage>
#include <QTest>

namespace brevlin {
namespace {

/// Where screens put things, to the point.
class Measures : public test::ModelTest
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

    static void show(QWidget& widget, const QSize& size)
    {
        widget.resize(size);
        widget.show();
        QApplication::processEvents();
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

    test::PlainWindowSystem m_windowSystem;
    test::NoPanels m_panels;
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

    show(screen, {920, 900}); // with room for every wanted gap
    const QRect cycle = place<TimerCycleIndicator>(screen);
    EXPECT_EQ(cycle.top() - place<TimerCard>(screen).top(), 48);
    EXPECT_GE(circle(screen).top() - cycle.bottom() - 1, 22 + 12 + 22);
    EXPECT_EQ(place<TimerControlRow>(screen).top() - circle(screen).bottom() - 1, 22);

    model().start();
    QApplication::processEvents();
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
    TrayPanel panel(model(), m_windowSystem, m_panels);
    panel.toggle({100, 100});
    QApplication::processEvents();
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
    EXPECT_EQ(controls[0].top() - circle(panel).bottom() - 1, 13 + 13);
    EXPECT_EQ(panel.height() - controls[0].bottom() - 1, 14);
    model().start();
    QApplication::processEvents();
    const auto running = buttons<CapsuleButton>(panel);
    EXPECT_EQ(running.at(1).left() - running.at(0).right() - 1, 6);
}

TEST_F(Measures, of_the_capsule)
{
    BrevlinStyle still;
    still.setReducesMotion(true);
    TopCapsuleView view;
    view.setStyle(&still);
    CapsuleContent content;
    content.language = AppLanguage::english;
    content.clockText = "25:00";
    content.endTimeText = "14:05";
    content.revealsExpandedTimerContent = true;
    content.runState = TimerRunState::running;
    content.showsCompactTimer = false;
    view.setContent(content);
    show(view, {316, 50});
    using Rects = std::vector<QRect>;
    EXPECT_EQ(buttons<CapsuleRoundButton>(view), (Rects{{168, 11, 28, 28}, // from the right: 12, then 9 apart
                                                        {205, 11, 27, 27},
                                                        {241, 11, 27, 27},
                                                        {277, 11, 27, 27}}));
    EXPECT_NEAR(inkOf(view, QStringLiteral("Ends")).left(), 12 + 25 + 9, 0.5);

    content.runState = TimerRunState::ringing;
    content.showsCompletion = true;
    content.isAlertSoundPlaying = true;
    content.completionTitle = "Focus complete";
    view.setContent(content);
    show(view, {460, 126});
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
