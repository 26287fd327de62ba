#include "ui/style/brevlin_style.h"

#include "ui/style/card_surface.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QApplication>
#include <QBitmap>
#include <QPainter>
#include <QStyleOption>

namespace brevlin {

namespace {

constexpr int toolTipPadding = 6;
constexpr int toolTipRadius = 5;

// A tool tip's window is opaque, so its corners are cut off.
QRegion roundedMask(const QSize& size)
{
    QBitmap mask(size);
    mask.clear();
    QPainter painter(&mask);
    painter.setBrush(Qt::color1);
    painter.drawRoundedRect(QRect(QPoint(), size - QSize(1, 1)), toolTipRadius, toolTipRadius);
    return mask;
}

} // namespace

BrevlinStyle::BrevlinStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void BrevlinStyle::setReducesMotion(bool reducesMotion)
{
    if (reducesMotion == m_reducesMotion)
        return;
    m_reducesMotion = reducesMotion;
    const QWidgetList widgets = QApplication::allWidgets();
    for (QWidget* widget : widgets) {
        if (widget->style() != this)
            continue;
        QEvent event(QEvent::StyleChange);
        QCoreApplication::sendEvent(widget, &event);
    }
}

int BrevlinStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* returnData) const
{
    // Fusion's own answer is zero wherever the desktop's theme plugin does not speak about effects.
    if (hint == SH_Widget_Animation_Duration)
        return m_reducesMotion ? 0 : 200;
    if (hint == SH_ToolTip_Mask) {
        if (auto* mask = qstyleoption_cast<QStyleHintReturnMask*>(returnData)) {
            mask->region = roundedMask(option->rect.size());
        }
        return 1;
    }
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}

int BrevlinStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    return metric == PM_ToolTipLabelFrameWidth ? toolTipPadding
                                               : QProxyStyle::pixelMetric(metric, option, widget);
}

void BrevlinStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const
{
    if (element != PE_PanelTipLabel) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    const Theme theme = Theme::of(option->palette);
    painter->fillRect(option->rect, option->palette.toolTipBase());
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(QPen(theme.color(ThemeColor::separator), 1));
    painter->drawRoundedRect(QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5), toolTipRadius,
                             toolTipRadius);
}

void BrevlinStyle::polish(QWidget* widget)
{
    QProxyStyle::polish(widget);
    if (widget->inherits("QTipLabel")) {
        widget->setFont(textFont(TextRole::caption));
    }
}

QRect BrevlinStyle::subElementRect(SubElement element, const QStyleOption* option,
                                   const QWidget* widget) const
{
    if (element == SE_FrameLayoutItem && qobject_cast<const CardSurface*>(widget) != nullptr)
        return option->rect.marginsRemoved(CardSurface::shadowMargins);
    return QProxyStyle::subElementRect(element, option, widget);
}

} // namespace brevlin
