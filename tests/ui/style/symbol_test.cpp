#include "ui/style/symbol.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>

namespace brevlin {
namespace {

constexpr int scale = 4;
constexpr int side = 24 * scale;

QImage rendered(Symbol symbol, double ratio = 1)
{
    QImage image(QSizeF(side * ratio, side * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintSymbol(painter, symbol, {0, 0, side, side}, QColor(10, 200, 30));
    return image;
}

QRectF inkBounds(const QImage& image)
{
    QRect bounds;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y).alpha() > 127)
                bounds |= QRect(x, y, 1, 1);
        }
    }
    return {bounds.x() / double{scale}, bounds.y() / double{scale}, bounds.width() / double{scale},
            bounds.height() / double{scale}};
}

TEST(Symbol, each_stands_in_the_middle_of_its_square_in_the_tint_alone)
{
    for (int number = 1; number <= static_cast<int>(Symbol::xmark); ++number) {
        const auto symbol = static_cast<Symbol>(number);
        SCOPED_TRACE(symbolName(symbol).data());
        const QImage image = rendered(symbol);
        const QRectF ink = inkBounds(image);
        ASSERT_FALSE(ink.isEmpty());
        EXPECT_NEAR(ink.center().x(), 12, 1);
        EXPECT_NEAR(ink.center().y(), 12, 1);
        EXPECT_TRUE(QRectF(1, 1, 22, 22).contains(ink));
        EXPECT_GE(std::max(ink.width(), ink.height()), 11.5);
        for (int i = 0; i < side * side; ++i) {
            const QColor pixel = image.pixelColor(i % side, i / side);
            if (pixel.alpha() == 255) {
                ASSERT_EQ(pixel, QColor(10, 200, 30));
            }
        }
    }
}

TEST(Symbol, a_finer_screen_gets_a_finer_picture)
{
    const QImage coarse = rendered(Symbol::timer);
    const QImage fine = rendered(Symbol::timer, 2);
    EXPECT_NE(fine.convertToFormat(QImage::Format_ARGB32),
              coarse.scaled(fine.size()).convertToFormat(QImage::Format_ARGB32));
    EXPECT_EQ(inkBounds(fine).center(), inkBounds(coarse).center() * 2);
}

} // namespace
} // namespace brevlin
