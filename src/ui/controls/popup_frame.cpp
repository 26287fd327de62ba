#include "ui/controls/popup_frame.h"

#include "ui/controls/brevlin_style.h"
#include "ui/style/shapes.h"
#include "ui/style/theme.h"

#include <QPainter>
#include <QWidget>

#include <cmath>

namespace brevlin {

namespace {

constexpr double rimOpacity = 0.14;

// Layers of faint outlines add up to a soft edge.
void paintShadow(QPainter& painter, const QRectF& content, double cornerRadius)
{
    constexpr int reach = popupShadowMargin - 4;
    const QRectF below = content.translated(0, 3);
    for (int distance = reach; distance >= 0; --distance) {
        const double nearness = 1.0 - static_cast<double>(distance) / reach;
        const QColor layer(0, 0, 0, static_cast<int>(std::lround(1.0 + 3.0 * nearness * nearness)));
        painter.fillPath(continuousRoundedRect(below.adjusted(-distance, -distance, distance, distance),
                                               cornerRadius + distance),
                         layer);
    }
}

} // namespace

bool isComposited(const QWidget& widget)
{
    const auto* style = qobject_cast<const BrevlinStyle*>(widget.style());
    return style != nullptr && style->isComposited();
}

void paintPopup(QPainter& painter, const QRectF& content, double cornerRadius, PopupShadow shadow,
                const Theme& theme)
{
    painter.setRenderHint(QPainter::Antialiasing);
    QRectF ground = content;
    if (shadow == PopupShadow::soft) {
        paintShadow(painter, content, cornerRadius);
        painter.fillPath(continuousRoundedRect(content.adjusted(-1, -1, 1, 1), cornerRadius + 1),
                         theme.color(ThemeColor::label, rimOpacity));
    } else {
        // Nothing may stand out of the window, so the rim lies within it.
        painter.fillPath(
            continuousRoundedRect(content, cornerRadius),
            blended(theme.color(ThemeColor::label, rimOpacity), theme.color(ThemeColor::panelBackground)));
        ground.adjust(1, 1, -1, -1);
        cornerRadius -= 1;
    }
    painter.fillPath(continuousRoundedRect(ground, cornerRadius), theme.color(ThemeColor::panelBackground));
}

void paintMaskedPopup(QPainter& painter, const QRectF& content, double cornerRadius, const Theme& theme)
{
    painter.setRenderHint(QPainter::Antialiasing);
    // The mask cuts the corners on whole pixels: filled beyond them they have no gaps.
    painter.fillRect(content, blended(theme.color(ThemeColor::label, rimOpacity),
                                      theme.color(ThemeColor::panelBackground)));
    painter.fillPath(continuousRoundedRect(content.adjusted(1, 1, -1, -1), cornerRadius - 1),
                     theme.color(ThemeColor::panelBackground));
}

QRegion popupMask(const QRect& content, double cornerRadius)
{
    return {continuousRoundedRect(content, cornerRadius).toFillPolygon().toPolygon()};
}

} // namespace brevlin
