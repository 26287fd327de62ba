#include "app/model_fixture.h"
#include "platform/freedesktop/clock/system_time_zone.h"
#include "storage/session_archive.h"
#include "ui/controls/empty_state_view.h"
#include "ui/controls/form.h"
#include "ui/controls/moment_field.h"
#include "ui/controls/switch_control.h"
#include "ui/controls/text_field.h"
#include "ui/screens/history/history_list.h"
#include "ui/screens/history/history_view.h"
#include "ui/screens/history/session_dialog.h"

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
    const auto english = historyRowTexts(record(at(2, 15, 5), 1500), {}, shanghai, AppLanguage::english);
    EXPECT_EQ(english.timeRange, "2:40\u202fPM ～ 3:05\u202fPM");
    EXPECT_EQ(spokenHistoryRow(english, AppLanguage::english),
              "Focus, 2:40\u202fPM to 3:05\u202fPM, 25 min, Completed");
    const auto chinese =
        historyRowTexts(record(at(2, 15, 5), 1500), {}, Calendar{timeZoneOf("Asia/Shanghai"), "zh-Hans"},
                        AppLanguage::simplifiedChinese);
    EXPECT_EQ(chinese.timeRange, "14:40 ～ 15:05");
    EXPECT_EQ(spokenHistoryRow(chinese, AppLanguage::simplifiedChinese),
              "专注，14:40 至 15:05，25 分钟，已完成");
    EXPECT_LT(historyRowTexts(strange, {}, shanghai, AppLanguage::english).duration.size(), 60U);
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

TEST_F(HistoryListTest, several_rows_are_chosen_and_deleted_together_and_come_back)
{
    HistoryList& list = open(10);
    const std::vector<SessionRecord> before = model().sessions();
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    QTest::keyClick(&list, Qt::Key_Down, Qt::ShiftModifier);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::ControlModifier, list.rowRect(5).center());
    press(Qt::Key_Delete);
    EXPECT_EQ(list.rowCount(), 7U);
    EXPECT_EQ(model().sessions()[1].id, before[3].id);
    EXPECT_EQ(model().undoOffer().current()->count, 3U);
    model().undo();
    EXPECT_EQ(model().sessions(), before);
    QTest::keyClick(&list, Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_Delete);
    EXPECT_EQ(list.rowCount(), 0U);
}

TEST_F(HistoryListTest, a_row_tells_what_it_was_for_and_what_waits_for_an_answer)
{
    HistoryList& list = open(1);
    SessionRecord corrected = model().sessions()[0];
    corrected.intention = "Write #thesis";
    corrected.endedAt -= Seconds{60};
    model().historyEditor().change(corrected);
    EXPECT_TRUE(list.spokenText(0).endsWith(QStringLiteral("Completed, Write #thesis, Corrected")));
}

TEST(HistoryFilter, words_labels_dates_and_whole_intentions_are_found)
{
    SessionRecord thesis = record(at(2, 23, 59), 1500);
    thesis.intention = "Write chapter 2026-05 #Thesis-2";
    SessionRecord chinese = record(at(3, 0), 1500);
    chinese.intention = "写论文 #毕业";
    for (const auto& [text, findsThesis, findsChinese] : {std::tuple{"", true, true},
                                                          {"  ", true, true},
                                                          {"CHAPTER write", true, false},
                                                          {"chapter nothing", false, false},
                                                          {"#thesis", true, false},
                                                          {"#hesis", false, false},
                                                          {"＃毕业", false, true},
                                                          {"论", false, true},
                                                          {"2026-03-02", true, false},
                                                          {"2026/3/3", false, true},
                                                          {"2026年3月3日", false, true},
                                                          {"2026-03", true, true},
                                                          {"2026-03 #毕业", false, true},
                                                          {"2026-3-32", false, false},
                                                          {"\"写论文 #毕业\"", false, true},
                                                          {"#\"thesis-2\"", true, false},
                                                          {"#\"thesis\"", false, false},
                                                          {"#\"\"", false, false},
                                                          {"\"\"", false, false},
                                                          {"“写论文”", false, false}}) {
        const HistoryFilter filter{text};
        EXPECT_EQ(filter.matches(thesis, shanghai), findsThesis) << text;
        EXPECT_EQ(filter.matches(chinese, shanghai), findsChinese) << text;
    }
    const SessionRecord nothing = record(at(4, 1), 60);
    EXPECT_TRUE(HistoryFilter{"\"\""}.matches(nothing, shanghai));
    EXPECT_TRUE(HistoryFilter{"#\"\""}.matches(nothing, shanghai));
    const HistoryDays days({chinese, thesis}, shanghai, HistoryFilter{"chapter"});
    ASSERT_EQ(days.days().size(), 1U);
    EXPECT_EQ(days.recordIndex(0), 1U);
}

class HistoryViewTest : public HistoryListTest
{
protected:
    void openView()
    {
        open(3);
        m_view = std::make_unique<HistoryView>(model());
        m_view->resize(800, 500);
        m_view->show();
        QApplication::processEvents();
    }
    SessionDialog& dialog() { return *m_view->window()->findChild<SessionDialog*>(); }
    template <typename Control>
    Control& control(const char* name)
    {
        for (Control* each : dialog().findChildren<Control*>()) {
            if (each->accessibleName() == QLatin1String(name)) {
                return *each;
            }
        }
        ADD_FAILURE() << name;
        return *dialog().findChild<Control*>();
    }
    bool says(const char* text)
    {
        const auto labels = dialog().findChildren<FormLabel*>();
        return std::any_of(labels.begin(), labels.end(), [text](const FormLabel* label) {
            return label->isVisible() && label->text().contains(QLatin1String(text));
        });
    }

    std::unique_ptr<HistoryView> m_view;
};

TEST_F(HistoryViewTest, a_record_is_corrected_by_the_keyboard_alone)
{
    openView();
    auto* list = m_view->findChild<HistoryList*>();
    list->setFocus(Qt::TabFocusReason);
    QTest::keyClick(list, Qt::Key_Return);
    auto& end = control<MomentField>("End");
    const QDateTime before = end.dateTime();
    const SessionRecord record = model().sessions()[0];
    QTest::keyClicks(&control<TextField>("Intention"), QStringLiteral("thesis"));
    end.setDateTime(before.addSecs(-3600));
    EXPECT_TRUE(says("It ends before it starts."));
    end.setDateTime(before.addSecs(7200));
    EXPECT_TRUE(says("It ends in the future."));
    QTest::keyClick(&end, Qt::Key_Return);
    EXPECT_EQ(model().sessions()[0], record) << "what cannot be is not saved";
    end.setDateTime(before.addSecs(-240));
    EXPECT_TRUE(says("20 min"));
    QTest::keyClick(&end, Qt::Key_Return);
    EXPECT_EQ(model().sessions()[0].intention.view(), "thesis");
    EXPECT_NEAR((model().sessions()[0].endedAt - record.endedAt).count(), -240, 60);
    EXPECT_EQ(model().sessions()[0].actualStartAt, record.actualStartAt) << "to the fraction of a second";
    model().undo();
    EXPECT_EQ(model().sessions()[0], record);
}

TEST_F(HistoryViewTest, a_forgotten_record_is_added_although_it_overlaps_another)
{
    openView();
    QTest::keyClick(m_view->findChild<HistoryList*>(), Qt::Key_Insert);
    control<MomentField>("Start").setDateTime(control<MomentField>("Start").dateTime().addSecs(-3600));
    EXPECT_TRUE(says("Overlaps with Focus"));
    QTest::keyClick(&control<MomentField>("Start"), Qt::Key_Return);
    EXPECT_EQ(model().sessions().size(), 4U);
    EXPECT_EQ(model().sessions()[0].timeZoneIdentifierAtStart.view(), "Europe/Berlin");
}

TEST_F(HistoryViewTest, an_intention_is_renamed_everywhere_in_one_step)
{
    openView();
    for (const std::size_t row : {0U, 1U}) {
        SessionRecord named = model().sessions()[row];
        named.intention = "thesis";
        model().historyEditor().change(named);
    }
    auto* list = m_view->findChild<HistoryList*>();
    list->setFocus(Qt::TabFocusReason);
    QTest::keyClick(list, Qt::Key_Return);
    control<TextField>("Intention").setText(QStringLiteral("#thesis"));
    EXPECT_TRUE(says("Change it in all 2 records"));
    dialog().findChild<SwitchControl*>()->click();
    QTest::keyClick(&control<TextField>("Intention"), Qt::Key_Return);
    EXPECT_EQ(model().sessions()[1].intention.view(), "#thesis");
    model().undo();
    EXPECT_EQ(model().sessions()[0].intention.view(), "thesis");
    EXPECT_EQ(model().sessions()[1].intention.view(), "thesis");
}

TEST_F(HistoryViewTest, a_search_shows_what_it_finds_and_goes_with_escape)
{
    openView();
    SessionRecord named = model().sessions()[1];
    named.intention = "thesis";
    model().historyEditor().change(named);
    auto* list = m_view->findChild<HistoryList*>();
    auto* search = m_view->findChild<TextField*>();
    search->setFocus();
    QTest::keyClicks(search, QStringLiteral("the"));
    EXPECT_EQ(list->rowCount(), 1U);
    QTest::keyClicks(search, QStringLiteral("x"));
    EXPECT_TRUE(m_view->findChild<EmptyStateView*>()->isVisible());
    QTest::keyClick(search, Qt::Key_Escape);
    EXPECT_EQ(list->rowCount(), 3U);
    EXPECT_TRUE(list->hasFocus());
    m_view->setFilter(QStringLiteral("\"thesis\""));
    EXPECT_EQ(list->rowCount(), 1U);
}

} // namespace
} // namespace brevlin
