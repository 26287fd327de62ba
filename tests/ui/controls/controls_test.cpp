#include "ui/controls/bar_buttons.h"
#include "ui/controls/capsule_button.h"
#include "ui/controls/card_surface.h"

#include <QApplication>
#include <QFocusEvent>
#include <QImage>

#include <gtest/gtest.h>

namespace brevlin {
namespace {

QImage picture(QWidget& widget, double ratio = 1)
{
    QImage image(widget.size() * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    widget.render(&image, {}, {}, QWidget::DrawChildren);
    return image;
}

void sendFocus(QWidget& widget, QEvent::Type type, Qt::FocusReason reason)
{
    QFocusEvent event(type, reason);
    QCoreApplication::sendEvent(&widget, &event);
}

TEST(CapsuleButton, looks_different_in_every_state)
{
    CapsuleButton button(CapsuleStyle::secondary, ControlSize::regular);
    button.setText(QStringLiteral("End"));
    button.resize(button.sizeHint());
    const QImage normal = picture(button);
    button.setEnabled(false);
    EXPECT_NE(picture(button), normal);
    button.setEnabled(true);
    sendFocus(button, QEvent::FocusIn, Qt::TabFocusReason);
    EXPECT_NE(picture(button), normal);
    sendFocus(button, QEvent::FocusOut, Qt::TabFocusReason);
    EXPECT_EQ(picture(button), normal);
    Q_EMIT button.pressed();
    EXPECT_NE(picture(button), normal);
}

TEST(PlainButton, only_the_keyboard_shows_the_focus_ring)
{
    SectionTab tab;
    sendFocus(tab, QEvent::FocusIn, Qt::MouseFocusReason);
    EXPECT_FALSE(tab.showsFocusRing());
    sendFocus(tab, QEvent::FocusIn, Qt::BacktabFocusReason);
    EXPECT_TRUE(tab.showsFocusRing());
    sendFocus(tab, QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    EXPECT_FALSE(tab.showsFocusRing());
    sendFocus(tab, QEvent::FocusIn, Qt::ActiveWindowFocusReason);
    EXPECT_TRUE(tab.showsFocusRing()) << "the ring comes back with the window";
}

TEST(SectionTab, stands_still_when_the_selection_moves)
{
    SectionTab tab;
    tab.setText(QStringLiteral("记录"));
    const QSize size = tab.sizeHint();
    tab.setSelected(true);
    EXPECT_EQ(tab.sizeHint(), size);
}

TEST(CardSurface, its_border_is_one_whole_pixel_at_every_scale)
{
    CardSurface card(0);
    card.resize(202, 120);
    for (const double ratio : {1.0, 100.0 / 96, 1.25, 2.0}) {
        const QImage image = picture(card, ratio);
        const int middle = image.height() / 2;
        const int left = qRound(card.cardRect().left() * ratio);
        const int right = qRound((card.cardRect().right() + 1) * ratio) - 1;
        for (const auto& [border, inside] : {std::pair{left, left + 1}, std::pair{right, right - 1}}) {
            EXPECT_LT(image.pixelColor(border, middle).lightness(), 235) << ratio;
            EXPECT_GT(image.pixelColor(inside, middle).lightness(), 250) << ratio;
        }
    }
}

} // namespace
} // namespace brevlin
