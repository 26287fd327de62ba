#include "ui/style/brevlin_mark.h"
#include "ui/style/theme.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace brevlin {
namespace {

constexpr QRectF grid{0, 0, 627, 627};

template <typename Paint>
QImage painted(Paint paint)
{
    QImage image(64, 64, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paint(painter, QRectF(image.rect()));
    return image;
}

TEST(BrevlinMark, the_halves_keep_to_their_sides)
{
    const QPainterPath upper = brevlinMarkPath(BrevlinMarkPart::upper, grid);
    EXPECT_EQ(QPointF(upper.elementAt(0)), QPointF(313.5, 69.5));
    EXPECT_LE(upper.boundingRect().bottom(), 350);
    EXPECT_GE(brevlinMarkPath(BrevlinMarkPart::lower, grid).boundingRect().top(), 324);
}

TEST(BrevlinMark, both_halves_together_are_the_whole)
{
    const QRectF whole = brevlinMarkPath(BrevlinMarkPart::both, grid).boundingRect();
    EXPECT_NEAR(whole.top(), 69.5, 0.001);
    EXPECT_NEAR(whole.bottom(), 551.5, 0.001);
}

TEST(BrevlinMark, the_path_stretches_with_its_rectangle)
{
    const QRectF square = brevlinMarkPath(BrevlinMarkPart::both, grid).boundingRect();
    const QRectF wide = brevlinMarkPath(BrevlinMarkPart::both, {10, 20, 1254, 627}).boundingRect();
    EXPECT_NEAR(wide.left(), 10 + 2 * square.left(), 0.001);
    EXPECT_NEAR(wide.width(), 2 * square.width(), 0.001);
    EXPECT_NEAR(wide.top(), 20 + square.top(), 0.001);
}

TEST(BrevlinMark, both_breaks_look_alike_and_unlike_focus)
{
    const Theme theme(ColorScheme::light);
    const auto icon = [&theme](TimerPhase phase) {
        return painted(
            [&](QPainter& painter, const QRectF& rect) { paintPhaseIcon(painter, rect, phase, theme); });
    };
    EXPECT_EQ(icon(TimerPhase::shortBreak), icon(TimerPhase::longBreak));
    EXPECT_NE(icon(TimerPhase::focus), icon(TimerPhase::longBreak));
}

TEST(BrevlinMark, a_logo_in_one_colour_has_no_other)
{
    const Theme theme(ColorScheme::light);
    const QImage logo = painted([&theme](QPainter& painter, const QRectF& rect) {
        paintBrevlinLogo(painter, rect, theme, QColor(Qt::blue));
    });
    int inked = 0;
    for (int y = 0; y < logo.height(); ++y) {
        for (int x = 0; x < logo.width(); ++x) {
            const QColor pixel = logo.pixelColor(x, y);
            inked += pixel.alpha() > 0 ? 1 : 0;
            ASSERT_EQ(pixel.red() + pixel.green(), 0);
        }
    }
    EXPECT_GT(inked, 500);
}

} // namespace
} // namespace brevlin
