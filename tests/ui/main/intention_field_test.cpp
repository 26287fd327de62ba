#include "app/model_fixture.h"
#include "core/intention_index.h"
#include "support/plain_desktop.h"
#include "ui/main/main_window.h"
#include "ui/timer/intention_field.h"
#include "ui/timer/suggestion_list.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QTest>

namespace brevlin {
namespace {

SessionRecord recordOf(const std::string& intention)
{
    SessionRecord record;
    record.id = Uuid::random();
    record.intention = intention;
    return record;
}

TEST(IntentionIndex, prefixes_come_before_what_stands_inside_and_the_newest_first)
{
    std::vector<SessionRecord> records;
    for (const char* text :
         {"Read papers", "letters", "", "Write #thesis", "re-read", "letters", "READ mail", "写论文"}) {
        records.push_back(recordOf(text));
    }
    const IntentionIndex index(records);
    using Texts = std::vector<std::string>;
    EXPECT_EQ(index.find("", 3), (Texts{"Read papers", "letters", "Write #thesis"}));
    EXPECT_EQ(index.find("re", 9), (Texts{"Read papers", "re-read", "READ mail"}));
    EXPECT_EQ(index.find("READ", 9), (Texts{"Read papers", "READ mail", "re-read"}));
    EXPECT_EQ(index.find("READ", 2), (Texts{"Read papers", "READ mail"}));
    EXPECT_EQ(index.find("论文", 9), Texts{"写论文"});
    EXPECT_EQ(index.find("写论文", 9), Texts{}) << "what is there already";
    EXPECT_EQ(IntentionIndex().find("", 9), Texts{});
}

class IntentionFieldTest : public test::ModelTest
{
protected:
    IntentionFieldTest()
    {
        launchAndStart();
        model().setIntention("Read papers");
        model().endCurrentPhase();
        model().dismissCompletion();
        model().historyEditor().add([this] {
            SessionRecord record = model().sessions().front();
            record.id = Uuid::random();
            record.endedAt -= Seconds{60};
            record.intention = "papers";
            return record;
        }());
        m_selection = std::make_unique<SectionSelection>(m_store);
        m_window = std::make_unique<MainWindow>(model(), *m_selection, m_store, m_windowSystem, m_panels);
        m_window->present({});
        QApplication::processEvents();
        m_field = m_window->findChild<IntentionField*>();
    }
    void type(const char* text) { QTest::keyClicks(m_field, QString::fromUtf8(text)); }
    std::string shown() { return m_field->text().toStdString(); }
    void press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }

    test::PlainWindowSystem m_windowSystem;
    test::NoPanels m_panels;
    MainWindowStore m_store{disk()};
    std::unique_ptr<SectionSelection> m_selection;
    std::unique_ptr<MainWindow> m_window;
    IntentionField* m_field = nullptr;
};

TEST_F(IntentionFieldTest, return_takes_what_was_typed_and_starts)
{
    model().start(); // the break
    model().endCurrentPhase();
    model().dismissCompletion();
    m_field->setFocus();
    type("pap er 12");
    EXPECT_EQ(model().snapshot().runState, TimerRunState::idle) << "Space and digits are text";
    m_field->clear();
    type("pa");
    EXPECT_EQ(m_field->offered(), (QStringList{QStringLiteral("papers"), QStringLiteral("Read papers")}));
    press(Qt::Key_Return);
    EXPECT_EQ(model().snapshot().runState, TimerRunState::running);
    EXPECT_EQ(model().snapshot().intention, "pa");
    EXPECT_FALSE(m_field->hasFocus()) << "Space is the timer's again";
    EXPECT_TRUE(m_field->offered().isEmpty());
}

TEST_F(IntentionFieldTest, a_marked_suggestion_is_taken_before_anything_starts)
{
    m_field->setFocus();
    type("pa");
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(shown(), "Read papers");
    EXPECT_EQ(model().snapshot().intention, std::nullopt);
    EXPECT_EQ(model().intention(), "Read papers");
    press(Qt::Key_Escape);
    EXPECT_FALSE(m_field->hasFocus());
}

TEST_F(IntentionFieldTest, what_is_offered_goes_with_the_field)
{
    m_field->setFocus();
    type("pa");
    ASSERT_EQ(m_window->findChildren<SuggestionList*>().size(), 1);
    m_selection->select(AppSection::history);
    EXPECT_TRUE(m_window->findChildren<SuggestionList*>().isEmpty());
}

TEST_F(IntentionFieldTest, an_input_method_has_return_for_itself)
{
    m_field->setFocus();
    QInputMethodEvent composing(QStringLiteral("xie"), {});
    QApplication::sendEvent(m_field, &composing);
    press(Qt::Key_Return);
    EXPECT_NE(model().snapshot().runState, TimerRunState::running);
    QInputMethodEvent committed;
    committed.setCommitString(QStringLiteral("写"));
    QApplication::sendEvent(m_field, &committed);
    EXPECT_EQ(m_field->text(), QStringLiteral("写"));
}

TEST_F(IntentionFieldTest, a_command_elsewhere_takes_what_was_typed_and_escape_does_not)
{
    m_field->setFocus();
    type("letters");
    press(Qt::Key_Escape);
    press(Qt::Key_Escape);
    EXPECT_EQ(shown(), "");
    m_field->setFocus();
    type("letters");
    model().advance();
    model().switchToNextPhase();
    EXPECT_EQ(model().snapshot().intention, "letters");
    m_field->setFocus();
    type(std::string(300, 'x').c_str());
    press(Qt::Key_Return);
    EXPECT_EQ(model().intention().size(), longestIntention);
    EXPECT_EQ(m_field->text().size(), 200) << "and shows what was taken";
}

} // namespace
} // namespace brevlin
