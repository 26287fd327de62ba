#include "app/model_fixture.h"
#include "platform/freedesktop/clock/system_time_zone.h"
#include "storage/session_archive.h"
#include "ui/screens/history/history_list.h"

#include <QAccessible>
#include <QApplication>
#include <QScrollBar>
#include <QTest>

namespace brevlin {
namespace {

using namespace std::chrono;

const Calendar shanghai{timeZoneOf("Asia/Shanghai"), "en"};

Instant at(int dayOfMarch, int hour, int minute = 0)
{
    return shanghai.date(LocalDay{year{2026} / March / dayOfMarch}, hour) + Seconds{60.0 * minute};
}

SessionRecord record(Instant end, double length, StoredRawValue<TimerPhase> phase = TimerPhase::focus,
                     StoredRawValue<SessionOutcome> outcome = SessionOutcome::completed)
{
    SessionRecord result;
    result.id = Uuid::random();
    result.actualStartAt = end - Seconds{1500.0};
    result.endedAt = end;
    result.effectiveDuration = Seconds{length};
    result.phaseRawValue = std::move(phase);
    result.outcomeRawValue = std::move(outcome);
    return result;
}

TEST(HistoryDays, records_stand_under_the_day_they_ended_on_with_its_focus)
{
    std::vector<SessionRecord> records;
    records.push_back(record(at(3, 9), 300, TimerPhase::shortBreak));
    records.push_back(record(at(2, 23, 59), 1500));
    records.push_back(
        record(at(2, 23, 59), 600, TimerPhase::focus, SessionOutcome::reset)); // the same instant
    records.push_back(record(at(2, 9), -400));
    records.push_back(record(at(2, 0), 1500)); // began the day before
    records.push_back(record(at(1, 12), 9999, StoredRawValue<TimerPhase>{"siesta"}));
    const HistoryDays days(records, shanghai);
    ASSERT_EQ(days.days().size(), 3U);
    std::vector<std::string> texts;
    for (const HistoryDay& day : days.days()) {
        texts.push_back(historyDateText(day, shanghai) + " | " +
                        historySummaryText(day, AppLanguage::english));
        texts.push_back(historyDateText(day, Calendar{timeZoneOf("Asia/Shanghai"), "zh-Hans"}) + " | " +
                        historySummaryText(day, AppLanguage::simplifiedChinese));
    }
    EXPECT_EQ(texts, (std::vector<std::string>{"Tuesday, Mar 3, 2026 | 1 entries · 0 min focus",
                                               "2026年3月3日星期二 | 1 条 · 专注 0 分钟",
                                               "Monday, Mar 2, 2026 | 4 entries · 1 hr focus",
                                               "2026年3月2日星期一 | 4 条 · 专注 1 小时",
                                               "Sunday, Mar 1, 2026 | 1 entries · 0 min focus",
                                               "2026年3月1日星期日 | 1 条 · 专注 0 分钟"}));
    EXPECT_EQ(days.recordIndex(2), 2U);
    const HistoryLayout layout(days);
    EXPECT_FALSE(layout.rowAt(layout.cardTop(1) - 1)) << "between two cards";
    // In another zone the same instants fall on other days.
    EXPECT_EQ(HistoryDays(records, Calendar{timeZoneOf("America/New_York"), "en"}).days().size(), 3U);
    EXPECT_EQ(HistoryDays(records, Calendar{timeZoneOf("America/New_York"), "en"}).days().front().count, 3U);
    EXPECT_TRUE(HistoryDays({}, shanghai).days().empty());
}

TEST(HistoryDays, a_row_says_what_is_known_also_of_strings_of_a_later_release)
{
    const SessionRecord strange = record(at(2, 15, 5), 1e300, StoredRawValue<TimerPhase>{"siesta"},
                                         StoredRawValue<SessionOutcome>{"dreamt"});
    EXPECT_EQ(shownPhase(strange), TimerPhase::shortBreak);
    EXPECT_EQ(shownOutcome(strange), SessionOutcome::skipped);
    const auto english = historyRowTexts(record(at(2, 15, 5), 1500), shanghai, AppLanguage::english);
    EXPECT_EQ(english.timeRange, "2:40\u202fPM ～ 3:05\u202fPM");
    EXPECT_EQ(spokenHistoryRow(english, AppLanguage::english),
              "Focus, 2:40\u202fPM to 3:05\u202fPM, 25 min, Completed");
    const auto chinese =
        historyRowTexts(record(at(2, 15, 5), 1500), Calendar{timeZoneOf("Asia/Shanghai"), "zh-Hans"},
                        AppLanguage::simplifiedChinese);
    EXPECT_EQ(chinese.timeRange, "14:40 ～ 15:05");
    EXPECT_EQ(spokenHistoryRow(chinese, AppLanguage::simplifiedChinese),
              "专注，14:40 至 15:05，25 分钟，已完成");
    EXPECT_LT(historyRowTexts(strange, shanghai, AppLanguage::english).duration.size(), 60U);
}

class HistoryListTest : public test::ModelTest
{
protected:
    HistoryList& open(int count)
    {
        std::vector<SessionRecord> records;
        for (int index = 0; index < count; ++index) {
            records.push_back(record(clock.now() - Seconds{3600.0 * (index + 1)}, 1500));
        }
        files.files["/data/sessions-v1.json"] = *encodeSessionArchive(records);
        launch();
        m_list = std::make_unique<HistoryList>(model());
        m_list->resize(800, 500);
        m_list->show();
        m_list->setFocus(Qt::TabFocusReason);
        QApplication::processEvents();
        QObject::connect(&model(), &AppModel::sessionsChanged, m_list.get(), &HistoryList::refresh);
        return *m_list;
    }
    void press(Qt::Key key) { QTest::keyClick(m_list.get(), key); }

    std::unique_ptr<HistoryList> m_list;
};

TEST_F(HistoryListTest, the_keyboard_moves_through_the_rows_and_deletes_one_in_place)
{
    HistoryList& list = open(200);
    press(Qt::Key_Down);
    EXPECT_EQ(list.currentRow(), 0U);
    press(Qt::Key_End);
    EXPECT_EQ(list.currentRow(), 199U);
    press(Qt::Key_PageUp);
    press(Qt::Key_Up);
    const auto row = *list.currentRow();
    ASSERT_LT(row, 195U);
    EXPECT_TRUE(list.viewport()->rect().contains(list.rowRect(row)));
    const auto place = list.rowRect(row);
    const Uuid deleted = model().sessions()[row].id;
    const Uuid next = model().sessions()[row + 1].id;
    press(Qt::Key_Delete);
    EXPECT_EQ(list.rowCount(), 199U);
    EXPECT_EQ(list.currentRow(), row);
    EXPECT_EQ(model().sessions()[row].id, next);
    EXPECT_NE(model().sessions()[row].id, deleted);
    EXPECT_EQ(list.rowRect(row), place) << "the list does not move";
}

TEST_F(HistoryListTest, a_new_record_moves_nothing_under_the_readers_eyes)
{
    HistoryList& list = open(100);
    list.verticalScrollBar()->setValue(2000);
    const auto row = *list.rowAt({400, 200});
    const Uuid seen = model().sessions()[row].id;
    const int top = list.rowRect(row).top();
    model().start();
    scheduler.advance(Seconds{60.0});
    model().endCurrentPhase();
    ASSERT_EQ(list.rowCount(), 101U);
    const auto now = *list.rowAt({400, top + 5});
    EXPECT_EQ(model().sessions()[now].id, seen);
    EXPECT_EQ(list.rowRect(now).top(), top);
    // At the top it comes into view.
    list.verticalScrollBar()->setValue(0);
    list.refresh();
    EXPECT_EQ(list.verticalScrollBar()->value(), 0);
}

TEST_F(HistoryListTest, a_screen_reader_finds_every_row)
{
    HistoryList& list = open(30);
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&list);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::List);
    std::vector<int> headings; // of the days
    for (int index = 0; index < accessible->childCount(); ++index) {
        QAccessibleInterface* line = accessible->child(index);
        EXPECT_EQ(accessible->indexOfChild(line), index);
        if (line->text(QAccessible::Name).contains(QStringLiteral(" entries · ")))
            headings.push_back(index);
        else
            EXPECT_TRUE(line->text(QAccessible::Name).startsWith(QStringLiteral("Focus,")));
        const bool isHeading = !headings.empty() && headings.back() == index;
        EXPECT_EQ(line->role(), isHeading ? QAccessible::Heading : QAccessible::ListItem);
    }
    EXPECT_EQ(accessible->childCount(), 32);
    QAccessibleInterface* row = accessible->child(31);
    EXPECT_TRUE(row->state().offscreen);
    press(Qt::Key_End);
    EXPECT_FALSE(row->state().offscreen);
    EXPECT_EQ(accessible->focusChild(), row);
}

} // namespace
} // namespace brevlin
