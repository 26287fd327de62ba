#include "ui/controls/brevlin_style.h"
#include "ui/controls/numeric_text.h"
#include "ui/style/animation.h"
#include "ui/style/typography.h"

#include <QAccessible>
#include <QApplication>

#include <gtest/gtest.h>

#include <chrono>

namespace brevlin {
namespace {

using namespace std::chrono_literals;

/// Shown off screen.
class NumericTextTest : public testing::Test
{
protected:
    NumericTextTest()
    {
        text.setAttribute(Qt::WA_DontShowOnScreen);
        text.setText(QStringLiteral("25:00"));
        text.resize(text.sizeHint());
        text.show();
        QApplication::processEvents();
    }
    ~NumericTextTest() override { style().setReducesMotion(false); }

    static BrevlinStyle& style() { return *qobject_cast<BrevlinStyle*>(QApplication::style()); }

    NumericText text{systemFont(54, QFont::DemiBold)};
};

TEST_F(NumericTextTest, digits_keep_their_cells_whatever_they_are)
{
    NumericText::Cells cells(systemFont(54));
    cells.digitWidth = 200; // many fonts have digits of one width already; these cells are wider than any
    const auto narrow = NumericText::pieces(QStringLiteral("11 分钟 1"), cells);
    const auto wide = NumericText::pieces(QStringLiteral("88 分钟 8"), cells);
    ASSERT_EQ(narrow.size(), 4U);
    ASSERT_EQ(wide.size(), 4U);
    for (std::size_t index = 0; index < narrow.size(); ++index) {
        EXPECT_EQ(narrow[index].left, wide[index].left);
        EXPECT_EQ(narrow[index].width, wide[index].width);
    }
    EXPECT_EQ(narrow[2], wide[2]);
    EXPECT_EQ(narrow[1].left, 200);
    EXPECT_NEAR(narrow[0].inset, (200 - cells.metrics.horizontalAdvance(QLatin1Char('1'))) / 2, 0.001);
}

TEST_F(NumericTextTest, only_a_colon_between_digits_is_lifted)
{
    const NumericText::Cells cells(systemFont(54));
    EXPECT_GT(NumericText::pieces(QStringLiteral("25:00"), cells)[2].rise, 0);
    EXPECT_EQ(NumericText::pieces(QStringLiteral("Focus: 25"), cells)[0].rise, 0);
}

TEST_F(NumericTextTest, a_change_shows_one_picture_between_the_old_and_the_new)
{
    text.setText(QStringLiteral("24:59"));
    ASSERT_TRUE(text.transition().isRunning());
    EXPECT_EQ(text.transition().value(), 0.5);
    int steps = 0;
    QObject::connect(&text.transition(), &ValueAnimation::valueChanged, &text, [&steps] { ++steps; });
    for (auto elapsed = 0ms; elapsed <= 250ms; elapsed += 1ms)
        text.transition().advanceTo(elapsed);
    EXPECT_FALSE(text.transition().isRunning());
    EXPECT_EQ(text.transition().value(), 1);
    EXPECT_EQ(steps, 1);
}

TEST_F(NumericTextTest, a_change_on_known_paper_is_sent_as_it_would_be_painted)
{
    QWidget window;
    NumericText clock(systemFont(24), &window);
    clock.setPaper(QColor(Qt::yellow));
    clock.setText(QStringLiteral("25:00"));
    clock.setGeometry(QRect(QPoint(30, 10), clock.sizeHint()));
    window.resize(200, 60);
    window.show();
    QApplication::processEvents();
    QImage sent;
    QPoint place;
    style().setPictureSender([&](WId /*window*/, const QImage& picture, const QPoint& to) {
        sent = picture.copy();
        place = to;
        return true;
    });
    clock.setText(QStringLiteral("25:01"));
    style().setPictureSender({});
    ASSERT_FALSE(sent.isNull());
    EXPECT_LT(sent.width(), clock.width());
    const QImage painted = window.grab().toImage().copy(QRect(place, sent.size()));
    EXPECT_EQ(sent.convertToFormat(painted.format()), painted);
}

TEST_F(NumericTextTest, nothing_moves_where_motion_is_reduced)
{
    text.setText(QStringLiteral("24:59"));
    ASSERT_TRUE(text.transition().isRunning());
    style().setReducesMotion(true);
    EXPECT_FALSE(text.transition().isRunning()) << "what was under way ends";
    EXPECT_EQ(text.transition().value(), 1);
    text.setText(QStringLiteral("24:58"));
    EXPECT_FALSE(text.transition().isRunning());
    EXPECT_EQ(text.transition().value(), 1);
}

TEST_F(NumericTextTest, assistive_technology_reads_the_text)
{
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&text);
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->role(), QAccessible::StaticText);
    EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("25:00"));
}

} // namespace
} // namespace brevlin
