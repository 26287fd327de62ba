#include "ui/controls/card_surface.h"

#include "ui/style/shapes.h"
#include "ui/style/theme.h"

#include <QEvent>
#include <QPaintEvent>
#include <QPainter>

#include <array>

namespace brevlin {

namespace {

// The shadow falls one point down and fades over four points around its edge.
constexpr double shadowOffset = 1;
// How much of the shadow remains in each of the four one-point bands outside its edge.
constexpr std::array shadowBands{0.42, 0.23, 0.1, 0.03};

void paintShadow(QPainter& painter, const QRectF& card, const Theme& theme)
{
    const QRectF shadow = card.translated(0, shadowOffset);
    // Nobody sees it under the card, and to blend it there would be most of the work.
    constexpr double corner = CardSurface::cornerRadius;
    const QRectF hidden = card.adjusted(1, corner, -1, -corner);
    double painted = 0;
    for (std::size_t band = shadowBands.size(); band-- > 0;) {
        const double reach = static_cast<double>(band) + 1;
        // Each wider shape lies under the narrower ones; it adds only what the bands further out lack.
        QPainterPath outline =
            continuousRoundedRect(shadow.adjusted(-reach, -reach, reach, reach), corner + reach);
        outline.addRect(hidden);
        painter.fillPath(outline, theme.color(ThemeColor::cardShadow, shadowBands[band] - painted));
        painted = shadowBands[band];
    }
}

} // namespace

CardSurface::CardSurface(int padding, QWidget* parent) : QFrame(parent), m_padding(padding)
{
    setFrameStyle(NoFrame); // the style is asked for the margins again, now that this is a card
    setContentsMargins(shadowMargins + padding);
}

bool CardSurface::event(QEvent* event)
{
    const bool isHandled = QFrame::event(event);
    switch (event->type()) {
    case QEvent::ParentChange:
    case QEvent::Polish:
    case QEvent::StyleChange:
        setContentsMargins(shadowMargins + m_padding); // QFrame has set its own
        break;
    default:
        break;
    }
    return isHandled;
}

void CardSurface::paintEvent(QPaintEvent* event)
{
    const Theme theme = Theme::of(*this);
    QPainter painter(this);
    const QRect card = cardRect();
    const int corner = static_cast<int>(cornerRadius);
    // What moves on a card moves in its middle: a plain fill there, no outline to compute.
    if (card.adjusted(corner, 1, -corner, -1).contains(event->rect()) ||
        card.adjusted(1, corner, -1, -corner).contains(event->rect())) {
        painter.fillRect(event->rect(), theme.color(ThemeColor::panelBackground));
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    paintCardSurface(painter, card, theme);
}

void paintCardSurface(QPainter& painter, const QRectF& card, const Theme& theme)
{
    constexpr double radius = CardSurface::cornerRadius;
    paintShadow(painter, card, theme);
    painter.fillPath(continuousRoundedRect(alignedToPixels(painter, card), radius),
                     theme.color(ThemeColor::panelBackground));
    paintHairlineInside(painter, card, radius, theme.color(ThemeColor::cardBorder));
}

} // namespace brevlin
