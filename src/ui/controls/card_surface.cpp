#include "ui/controls/card_surface.h"

#include "ui/style/shapes.h"
#include "ui/style/theme.h"

#include <QEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPixmapCache>

#include <array>

namespace brevlin {

namespace {

// The shadow falls one point down and fades over four points around its edge.
constexpr double shadowOffset = 1;
constexpr int corner = 40;                  // points, with its shadow
constexpr int pictureSize = 2 * corner + 2; // points
constexpr int edge = 8;                     // points; inside it a card is plain between its corners
// How much of the shadow remains in each of the four one-point bands outside its edge.
constexpr std::array shadowBands{0.42, 0.23, 0.1, 0.03};

void paintShadow(QPainter& painter, const QRectF& card, const Theme& theme, CardGround ground)
{
    const QRectF shadow = card.translated(0, shadowOffset);
    // Nobody sees it under the card, and to blend it there would be most of the work.
    constexpr double radius = CardSurface::cornerRadius;
    const QRectF hidden = card.adjusted(1, radius, -1, -radius);
    double painted = 0;
    QColor below = theme.color(ThemeColor::canvas);
    for (std::size_t band = shadowBands.size(); band-- > 0;) {
        const double reach = static_cast<double>(band) + 1;
        // Each wider shape lies under the narrower ones; it adds only what the bands further out lack.
        QPainterPath outline =
            continuousRoundedRect(shadow.adjusted(-reach, -reach, reach, reach), radius + reach);
        outline.addRect(hidden);
        const QColor color = theme.color(ThemeColor::cardShadow, shadowBands[band] - painted);
        below = paintedOver(color, below);
        painter.fillPath(outline, ground == CardGround::canvas ? below : color);
        painted = shadowBands[band];
    }
}

void drawCard(QPainter& painter, const QRectF& card, const Theme& theme, CardGround ground)
{
    constexpr double radius = CardSurface::cornerRadius;
    const QColor panel = theme.color(ThemeColor::panelBackground);
    paintShadow(painter, card, theme, ground);
    painter.fillPath(continuousRoundedRect(alignedToPixels(painter, card), radius), panel);
    paintHairlineInside(painter, card, radius, paintedOver(theme.color(ThemeColor::cardBorder), panel));
}

// A small card. Shadow and corners take longer to draw than the rest of a screen, and are the same on every
// card.
QPixmap cardPicture(int pixels, const Theme& theme, CardGround ground)
{
    const QString key = QStringLiteral("card %1 %2 %3")
                            .arg(static_cast<int>(theme.scheme()))
                            .arg(static_cast<int>(ground))
                            .arg(pixels);
    QPixmap picture;
    if (!QPixmapCache::find(key, &picture)) {
        picture = QPixmap(QSize(pictureSize, pictureSize) * pixels);
        picture.setDevicePixelRatio(pixels);
        picture.fill(ground == CardGround::canvas ? theme.color(ThemeColor::canvas)
                                                  : QColor(Qt::transparent));
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRect whole(0, 0, pictureSize, pictureSize);
        drawCard(painter, whole.marginsRemoved(CardSurface::shadowMargins), theme, ground);
        painter.end();
        QPixmapCache::insert(key, picture);
    }
    return picture;
}

// The lines that a card has between two of its corners, each of one colour. Qt would hand a stretched picture
// to several threads, and to wait for them takes longer than the lines do.
void fillLines(QPainter& painter, const QRect& place, Qt::Orientation direction, const QImage& picture,
               const QPoint& source, int pixels)
{
    const bool areRows = direction == Qt::Horizontal;
    for (int line = 0; line < edge * pixels; ++line) {
        const QPoint pixel = source * pixels + (areRows ? QPoint(0, line) : QPoint(line, 0));
        const double offset = static_cast<double>(line) / pixels;
        const double breadth = 1.0 / pixels;
        painter.fillRect(areRows ? QRectF(place.x(), place.y() + offset, place.width(), breadth)
                                 : QRectF(place.x() + offset, place.y(), breadth, place.height()),
                         picture.pixelColor(pixel));
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
    constexpr int radius = static_cast<int>(cornerRadius);
    // What moves on a card moves in its middle: a plain fill there, no outline to compute.
    if (card.adjusted(radius, 1, -radius, -1).contains(event->rect()) ||
        card.adjusted(1, radius, -1, -radius).contains(event->rect())) {
        painter.fillRect(event->rect(), theme.color(ThemeColor::panelBackground));
        return;
    }
    paintCardSurface(painter, rect(), theme, CardGround::canvas);
}

void paintCardSurface(QPainter& painter, const QRect& whole, const Theme& theme, CardGround ground)
{
    const double scale = pixelsPerPoint(painter);
    const auto pixels = static_cast<int>(scale);
    if (whole.width() < pictureSize || whole.height() < pictureSize || scale != pixels) {
        painter.setRenderHint(QPainter::Antialiasing);
        drawCard(painter, whole.marginsRemoved(CardSurface::shadowMargins), theme, ground);
        return;
    }
    const QPixmap picture = cardPicture(pixels, theme, ground);
    const auto draw = [&](const QRect& target, const QRect& source) {
        painter.drawPixmap(target, picture, QRect(source.topLeft() * pixels, source.size() * pixels));
    };
    const int left = whole.left();
    const int top = whole.top();
    const int right = whole.right() + 1 - corner;
    const int bottom = whole.bottom() + 1 - corner;
    constexpr int farCorner = pictureSize - corner;
    draw({left, top, corner, corner}, {0, 0, corner, corner});
    draw({right, top, corner, corner}, {farCorner, 0, corner, corner});
    draw({left, bottom, corner, corner}, {0, farCorner, corner, corner});
    draw({right, bottom, corner, corner}, {farCorner, farCorner, corner, corner});
    // Between the corners one column or row stands for all.
    const int width = right - left - corner;
    const int height = bottom - top - corner;
    constexpr int farEdge = pictureSize - edge;
    const QImage image = picture.toImage();
    const auto fill = [&](const QRect& target, Qt::Orientation direction, const QPoint& source) {
        fillLines(painter, target, direction, image, source, pixels);
    };
    fill({left + corner, top, width, edge}, Qt::Horizontal, {corner, 0});
    fill({left + corner, whole.bottom() + 1 - edge, width, edge}, Qt::Horizontal, {corner, farEdge});
    fill({left, top + corner, edge, height}, Qt::Vertical, {0, corner});
    fill({whole.right() + 1 - edge, top + corner, edge, height}, Qt::Vertical, {farEdge, corner});
    const QColor surface = theme.color(ThemeColor::panelBackground);
    painter.fillRect(left + corner, top + edge, width, corner - edge, surface);
    painter.fillRect(left + edge, top + corner, whole.width() - 2 * edge, height, surface);
    painter.fillRect(left + corner, bottom, width, corner - edge, surface);
}

} // namespace brevlin
