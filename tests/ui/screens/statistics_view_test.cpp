#include "app/model_fixture.h"
#include "platform/freedesktop/clock/system_time_zone.h"
#include "ui/controls/link_button.h"
#include "ui/controls/segmented_picker.h"
#include "ui/screens/statistics/activity_chart.h"
#include "ui/screens/statistics/activity_texts.h"
#include "ui/screens/statistics/breakdown_row.h"
#include "ui/screens/statistics/statistics_texts.h"
#include "ui/screens/statistics/statistics_view.h"
#include "ui/screens/statistics/summary_strip.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QMouseEvent>
#include <QTest>
#include <QToolTip>

namespace brevlin {
namespace {

using enum StatisticsGranularity;
using enum AppLanguage;

Instant local(const Calendar& calendar, int y, unsigned m, unsigned d, int hour = 12)
{
    return calendar.date(LocalDay{std::chrono::year{y} / std::chrono::month{m} / d}, hour);
}

ActivityInput emptyInput(StatisticsGranularity granularity, int y, unsigned m, unsigned d)
{
    const Calendar calendar = statisticsCalendar(timeZoneOf("Europe/Berlin"), english);
    const Instant anchor = local(calendar, y, m, d);
    return {StatisticsCalculator::calculatePeriod({}, granularity, anchor, calendar), calendar, english,
            calendar.startOfDay(anchor)};
}

TEST(StatisticsTexts, name_periods_durations_and_insights)
{
    const struct
    {
        StatisticsGranularity granularity;
        const char* english;
        const char* chinese;
        const char* insight;
        const char* chineseInsight;
    } rows[] = {
        {day, "Sunday, Mar 29, 2026", "2026年3月29日星期日", "Most focus completed at 09:00",
         "09:00 完成的专注最多"},
        {week, "Mar 23 – Mar 29", "3月23日 – 3月29日", "Most focus completed on Sunday",
         "星期日完成的专注最多"},
        {month, "March 2026", "2026年3月", "Most focus completed on Mar 29", "3月29日完成的专注最多"},
        {year, "2026", "2026年", "Most focus completed on Mar 29", "3月29日完成的专注最多"},
    };
    SessionRecord record; // two of a day on which the clocks change, in hours of equal minutes
    std::vector<SessionRecord> records;
    for (const auto& [hour, minutes] : {std::pair{9, 25}, {14, 25}, {20, 26}}) {
        record.endedAt = local(statisticsCalendar(timeZoneOf("Europe/Berlin"), english), 2026, 3, 29, hour);
        record.effectiveDuration = Seconds{minutes == 26 ? 1499.0 : 60.0 * minutes};
        records.push_back(record);
    }
    for (const auto& row : rows) {
        for (const AppLanguage language : {english, simplifiedChinese}) {
            const Calendar calendar = statisticsCalendar(timeZoneOf("Europe/Berlin"), language);
            const auto statistics =
                StatisticsCalculator::calculatePeriod(records, row.granularity, records[0].endedAt, calendar);
            const bool isEnglish = language == english;
            EXPECT_EQ(periodTitle(statistics, calendar).toStdString(), isEnglish ? row.english : row.chinese);
            const Insight said = insight(statistics, bestBucket(statistics), calendar, language);
            EXPECT_EQ(said.title.toStdString(), isEnglish ? row.insight : row.chineseInsight);
        }
    }
    for (const auto& [minutes, text, chinese] : {std::tuple{0, "0 min", "0 分"},
                                                 {45, "45 min", "45 分"},
                                                 {120, "2 hr", "2 小时"},
                                                 {125, "2 hr 5 min", "2时 5分"}}) {
        EXPECT_EQ(focusDurationText(minutes, english).toStdString(), text);
        EXPECT_EQ(focusDurationText(minutes, simplifiedChinese).toStdString(), chinese);
    }
    PeriodStatistics unfinished;
    unfinished.attemptedPomodoros = 4;
    EXPECT_EQ(activitySubtitle(unfinished, english), QStringLiteral("Completed 0 of 4 attempts"));
    EXPECT_FALSE(bestBucket(unfinished));
}

TEST(ActivityPicture, puts_every_day_in_the_row_of_its_weekday)
{
    const struct
    {
        StatisticsGranularity granularity;
        int y;
        unsigned m;
        int firstRow;
        int columns;
        std::size_t elements;
    } rows[] = {
        {month, 2026, 2, 6, 5, 28},                                 // begins on a Sunday
        {month, 2026, 6, 0, 5, 30},                                 // begins on a Monday
        {month, 2021, 2, 0, 4, 28},                                 // fills its weeks
        {year, 2026, 12, 3, 53, 365}, {year, 2028, 12, 5, 53, 366}, // a leap year
        {year, 1970, 1, 3, 53, 31},                                 // what is to come is blank
        {day, 2026, 3, 0, 0, 24},     {week, 2026, 3, 0, 0, 7},
    };
    for (const auto& row : rows) {
        const ActivityInput input =
            emptyInput(row.granularity, row.y, row.m, row.granularity == year ? 31 : 15);
        const ActivityPicture picture = activityPicture(input, 700);
        ASSERT_EQ(picture.elements.size(), row.elements) << row.y << '-' << row.m;
        if (picture.isHeatmap) {
            const double step = row.granularity == year ? 14 : 27;
            const double top = row.granularity == year ? 20 : 0;
            const QRectF first = picture.elements.front().shape;
            EXPECT_EQ(first.top(), top + row.firstRow * step);
            const double right =
                picture.granularity == year ? picture.size.width() : picture.elements.back().shape.right();
            EXPECT_EQ(std::lround((right - first.left()) / step + 0.3), row.columns) << row.y << '-' << row.m;
        }
        for (const ActivityElement& element : picture.elements) {
            EXPECT_EQ(elementAt(picture, element.shape.center()), element.bucket.index);
            EXPECT_TRUE(QRectF(QPointF(), picture.size).contains(element.shape));
        }
    }
    EXPECT_EQ(activityPicture(emptyInput(year, 2026, 5, 1), 700).labels.front().text, QStringLiteral("Jan"));
    EXPECT_EQ(activityPicture(emptyInput(month, 2026, 5, 1), 700).labels.front().text, QStringLiteral("M"));
}

TEST(ActivityPicture, scales_bars_and_levels)
{
    const struct
    {
        StatisticsGranularity granularity;
        std::int64_t minutes, most;
        double height;
        int level;
    } rows[] = {
        {day, 0, 0, 0, 0},      {day, 1, 300, 6, 0},
        {day, 30, 30, 43.2, 0}, {week, 1, 9, 7, 0},
        {week, 50, 0, 42, 0},   {month, -5, 0, 0, 0},
        {month, 1, 0, 0, 1},    {month, 24, 0, 0, 1},
        {month, 25, 0, 0, 2},   {year, 49, 0, 0, 2},
        {year, 50, 0, 0, 3},    {year, 99, 0, 0, 3},
        {month, 100, 0, 0, 4},  {day, 9'000'000'000'000'000'000, 0, 72, 0},
    };
    for (const auto& row : rows) {
        ActivityInput input = emptyInput(row.granularity, 2026, 1, 31);
        input.statistics.buckets[0].focusMinutes = row.minutes;
        input.statistics.buckets[1].focusMinutes = row.most;
        const ActivityElement element = activityPicture(input, 700).elements.front();
        EXPECT_DOUBLE_EQ(element.barHeight, row.height) << row.minutes;
        EXPECT_EQ(element.level, row.level) << row.minutes;
    }
}

class StatisticsViewTest : public test::ModelTest
{
protected:
    StatisticsView& open()
    {
        view = std::make_unique<StatisticsView>(launchAndStart());
        view->resize(800, 520);
        view->show();
        view->activateWindow();
        QApplication::processEvents();
        return *view;
    }
    void press(Qt::Key key)
    {
        QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : view.get(), key);
    }
    const PeriodStatistics& statistics() { return view->statistics(); }
    ActivityChart& chart() { return *view->findChild<ActivityChart*>(); }
    QString spoken(int index)
    {
        return QAccessible::queryAccessibleInterface(&chart())->child(index)->text(QAccessible::Name);
    }
    QString tip(int index) { return chart().elementToolTip(static_cast<std::size_t>(index)); }

    std::unique_ptr<StatisticsView> view;
};

TEST_F(StatisticsViewTest, keys_move_and_choose_the_period_but_never_beyond_the_present)
{
    open();
    const DateInterval thisWeek = statistics().interval;
    press(Qt::Key_Right);
    EXPECT_EQ(statistics().interval, thisWeek);
    press(Qt::Key_Left);
    EXPECT_EQ(statistics().interval.end, thisWeek.start);
    press(Qt::Key_1);
    EXPECT_EQ(statistics().granularity, day);
    EXPECT_EQ(statistics().interval.start, thisWeek.start + Seconds{-7 * 86'400.0 + 86'400.0 * 5})
        << "the day of the last week, not today";
    press(Qt::Key_Home);
    EXPECT_TRUE(statistics().interval.contains(clock.now()));
    for (const auto& [key, granularity, elements] :
         {std::tuple{Qt::Key_3, month, 31U}, {Qt::Key_4, year, 129U}, {Qt::Key_2, week, 7U}}) {
        press(key);
        EXPECT_EQ(statistics().granularity, granularity);
        EXPECT_EQ(chart().picture().elements.size(), elements);
    }
    // With the keyboard on the chart or the picker, the arrows are theirs.
    chart().setFocus(Qt::TabFocusReason);
    press(Qt::Key_Left);
    EXPECT_EQ(statistics().interval, thisWeek);
    EXPECT_EQ(chart().currentElement(), 4U);
    press(Qt::Key_3);
    for (const auto& [key, element] : {std::pair{Qt::Key_Right, 15U}, // from today, May 9
                                       {Qt::Key_Down, 16U},
                                       {Qt::Key_Left, 9U},
                                       {Qt::Key_Up, 8U},
                                       {Qt::Key_Left, 1U},
                                       {Qt::Key_Left, 1U}}) {
        press(key);
        EXPECT_EQ(chart().currentElement(), element);
        EXPECT_TRUE(QAccessible::queryAccessibleInterface(&chart())
                        ->child(static_cast<int>(element))
                        ->state()
                        .focused);
    }
    press(Qt::Key_2);
    view->findChildren<Segment*>().at(1)->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Right);
    EXPECT_EQ(statistics().granularity, month);
}

TEST_F(StatisticsViewTest, follows_records_midnight_the_clock_the_zone_and_the_language)
{
    open();
    press(Qt::Key_1);
    EXPECT_EQ(statistics().attemptedPomodoros, 0);
    scheduler.advance(Seconds{1500});
    EXPECT_EQ(statistics().completedPomodoros, 1);
    EXPECT_EQ(tip(8), QStringLiteral("08:00 · 25 min · 1 Pomodoros"));
    EXPECT_EQ(spoken(8), QStringLiteral("Focus completed at 08:00, 25 min, 1 Pomodoro"));

    const auto buttons = view->findChildren<QAbstractButton*>();
    auto* today = *std::ranges::find(buttons, QStringLiteral("Today"), &QAbstractButton::text);
    EXPECT_TRUE(today->isHidden());
    scheduler.advance(Seconds{86'400});
    EXPECT_FALSE(today->isHidden()) << "midnight has passed";
    today->click();
    EXPECT_EQ(statistics().attemptedPomodoros, 0);

    press(Qt::Key_2);
    EXPECT_EQ(spoken(5), QStringLiteral("Saturday, May 9, 25 min, 1 Pomodoro"));
    clock.setTimeZoneIdentifier("Pacific/Honolulu");
    events.observer.clockDidChange();
    EXPECT_EQ(spoken(4), QStringLiteral("Friday, May 8, 25 min, 1 Pomodoro"));
    model().setAppLanguage(simplifiedChinese);
    EXPECT_EQ(spoken(4), QStringLiteral("5月8日星期五，25 分钟，1 个番茄"));
    EXPECT_EQ(chart().accessibleName(), QStringLiteral("一周专注趋势"));
}

TEST_F(StatisticsViewTest, pointing_at_a_bar_tells_of_it_at_once)
{
    open();
    for (const Qt::Key key : {Qt::Key_1, Qt::Key_2, Qt::Key_3, Qt::Key_4}) {
        press(key);
        QApplication::processEvents();
        const std::size_t index = chart().picture().elements.size() - 1;
        const QPointF place = chart().elementRect(index).center();
        QMouseEvent event(QEvent::MouseMove, place, chart().mapToGlobal(place), Qt::NoButton, Qt::NoButton,
                          Qt::NoModifier);
        QApplication::sendEvent(&chart(), &event);
        EXPECT_EQ(chart().pointedAt(), index);
        EXPECT_EQ(QToolTip::text(), chart().elementToolTip(index));
    }
}

TEST_F(StatisticsViewTest, lists_what_the_time_was_for_and_leads_to_its_records)
{
    const auto focus = [this](const char* intention) {
        model().setIntention(intention);
        model().start();
        scheduler.advance(Seconds{1500});
        model().skipPendingPhase();
        model().dismissCompletion();
    };
    open();
    scheduler.advance(Seconds{1500});
    model().skipPendingPhase();
    model().dismissCompletion();
    const auto rows = [this] {
        QStringList said;
        for (auto* row : view->findChildren<BreakdownRow*>()) {
            if (!row->isHidden() && row->parentWidget()->parentWidget()->isVisible()) {
                said << QAccessible::queryAccessibleInterface(row)->text(QAccessible::Name);
            }
        }
        return said.join(QLatin1Char('\n')).toStdString();
    };
    EXPECT_EQ(rows(), "") << "nobody has said what it was for";
    focus("R&D #lab #Thesis");
    focus("R&D #lab #Thesis");
    focus("#thesis");
    QApplication::processEvents();
    EXPECT_EQ(rows(), "R&D #lab #Thesis, 50 min, 50%, 2 Pomodoros\n#thesis, 25 min, 25%, 1 Pomodoro\n"
                      "No intention, 25 min, 25%, 1 Pomodoro");
    QStringList filters;
    QObject::connect(view.get(), &StatisticsView::filterRequested,
                     [&](const QString& text) { filters << text; });
    auto* first = view->findChild<BreakdownRow*>();
    first->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    press(Qt::Key_Down);
    press(Qt::Key_Space);
    press(Qt::Key_Down);
    press(Qt::Key_Space);
    const auto segments = view->findChildren<Segment*>();
    (*std::ranges::find(segments, QStringLiteral("By label"), &Segment::text))->click();
    QApplication::processEvents();
    EXPECT_EQ(rows(), "#thesis, 1 hr 15 min, 75%, 3 Pomodoros\n#lab, 50 min, 50%, 2 Pomodoros\n"
                      "No label, 25 min, 25%, 1 Pomodoro");
    press(Qt::Key_Up);
    press(Qt::Key_Space);
    EXPECT_EQ(filters, (QStringList{QStringLiteral("\"R&D #lab #Thesis\""), QStringLiteral("\"#thesis\""),
                                    QStringLiteral("\"\""), QStringLiteral("#\"lab\"")}));
    press(Qt::Key_1);
    view->movePeriod(-1);
    EXPECT_EQ(rows(), "");
    view->showToday();
    for (int index = 0; index < 9; ++index) {
        focus(("#" + std::to_string(index)).c_str());
    }
    QApplication::processEvents();
    EXPECT_EQ(std::ranges::count(rows(), '\n'), 7) << "the longest ones and those without";
    EXPECT_NE(rows().find("No label"), std::string::npos);
    const auto links = view->findChildren<LinkButton*>();
    (*std::ranges::find(links, QStringLiteral("Show all"), &LinkButton::text))->click();
    QApplication::processEvents();
    EXPECT_EQ(std::ranges::count(rows(), '\n'), 11);
    first->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Tab);
    EXPECT_NE(qobject_cast<LinkButton*>(QApplication::focusWidget()), nullptr) << "all rows are one stop";
}

TEST_F(StatisticsViewTest, absurd_records_neither_break_nor_widen_it)
{
    std::vector<SessionRecord> records(1'003);
    for (SessionRecord& record : records) {
        record.endedAt = clock.now();
        record.effectiveDuration = Seconds{1e300};
        record.timeZoneIdentifierAtStart = "UTC";
    }
    records[0].endedAt = Instant{Seconds{3.14e9}};
    records[1].phaseRawValue = StoredRawValue<TimerPhase>{"nap"};
    records[2].endedAt = Instant{Seconds{-978e6}};
    files.files["/data/sessions-v1.json"] = *encodeSessionArchive(records);
    open();
    for (const Qt::Key key : {Qt::Key_1, Qt::Key_2, Qt::Key_3, Qt::Key_4}) {
        press(key);
        QApplication::processEvents();
        EXPECT_EQ(statistics().completedPomodoros, 1'000);
        for (const QWidget* each : view->findChildren<QWidget*>()) {
            const QRect place(each->mapTo(view.get(), QPoint()), each->size());
            EXPECT_TRUE(!each->isVisible() || (place.left() >= 0 && place.right() < view->width()))
                << each->metaObject()->className();
        }
    }
}

} // namespace
} // namespace brevlin
