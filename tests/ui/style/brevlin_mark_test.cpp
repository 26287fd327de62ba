#include "ui/style/brevlin_mark.h"
#include "ui/style/theme.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace brevlin {
namespace {

template <typename Paint>
QImage painted(Paint paint)
{
    QImage image(64, 64, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paint(painter, QRectF(image.rect()));
    return image;
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
