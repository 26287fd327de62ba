#include "ui/controls/brevlin_style.h"

#include "ui/controls/card_surface.h"
#include "ui/controls/menu_look.h"
#include "ui/controls/popup_frame.h"
#include "ui/controls/scroll_view.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QApplication>
#include <QBitmap>
#include <QMenu>
#include <QPainter>
#include <QStyleOption>

#include <algorithm>

namespace brevlin {

namespace {

constexpr int toolTipPadding = 6;
constexpr int toolTipRadius = 5;
constexpr int menuPadding = 5;
constexpr int menuRadius = 8;
constexpr QSize leastMenuEntry{128, 28};
constexpr int menuSeparatorHeight = 9;

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

constexpr int shortestHandle = 36;

/// The whole length is groove: a slim bar has no buttons at its ends.
QRect slimScrollBarRect(const QStyleOptionSlider& bar, QStyle::SubControl part)
{
    const bool isHorizontal = bar.orientation == Qt::Horizontal;
    const int length = isHorizontal ? bar.rect.width() : bar.rect.height();
    const int range = bar.maximum - bar.minimum;
    const double share = range > 0 ? bar.pageStep / (1.0 * range + bar.pageStep) : 1;
    const int handle = std::clamp(static_cast<int>(length * share), std::min(shortestHandle, length), length);
    const int start = QStyle::sliderPositionFromValue(bar.minimum, bar.maximum, bar.sliderPosition,
                                                      length - handle, bar.upsideDown);
    const auto between = [&](int first, int last) {
        return isHorizontal ? QRect(first, 0, last - first, bar.rect.height())
                            : QRect(0, first, bar.rect.width(), last - first);
    };
    switch (part) {
    case QStyle::SC_ScrollBarGroove:
        return bar.rect;
    case QStyle::SC_ScrollBarSlider:
        return between(start, start + handle);
    case QStyle::SC_ScrollBarSubPage:
        return between(0, start);
    case QStyle::SC_ScrollBarAddPage:
        return between(start + handle, length);
    default:
        return {};
    }
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
    if (hint == SH_Menu_Mask && !isComposited()) {
        if (auto* mask = qstyleoption_cast<QStyleHintReturnMask*>(returnData)) {
            mask->region = popupMask(option->rect, menuRadius);
        }
        return 1;
    }
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}

int BrevlinStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    switch (metric) {
    case PM_ToolTipLabelFrameWidth:
        return toolTipPadding;
    case PM_MenuHMargin:
    case PM_MenuVMargin:
        return menuPadding;
    case PM_MenuPanelWidth:
        return 0; // the rim lies within the padding
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

QSize BrevlinStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                     const QWidget* widget) const
{
    const QSize wanted = QProxyStyle::sizeFromContents(type, option, size, widget);
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (type != CT_MenuItem || item == nullptr) {
        return wanted;
    }
    const bool isSeparator = item->menuItemType == QStyleOptionMenuItem::Separator;
    return isSeparator ? QSize(wanted.width(), menuSeparatorHeight) : wanted.expandedTo(leastMenuEntry);
}

void BrevlinStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const
{
    const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
    if (element == CE_MenuItem && item != nullptr) {
        painter->save();
        paintMenuItem(*painter, *item, qobject_cast<const QMenu*>(widget));
        painter->restore();
    } else if (element != CE_MenuEmptyArea) {
        QProxyStyle::drawControl(element, option, painter, widget);
    }
}

void BrevlinStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const
{
    if (const auto* menu = qobject_cast<const QMenu*>(widget); menu != nullptr && element == PE_PanelMenu) {
        paintMenuGround(*painter, *menu);
        return;
    }
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
    if (qobject_cast<QMenu*>(widget) != nullptr && isComposited()) {
        widget->setAttribute(Qt::WA_TranslucentBackground);
    }
}

QRect BrevlinStyle::subElementRect(SubElement element, const QStyleOption* option,
                                   const QWidget* widget) const
{
    if (element == SE_FrameLayoutItem && qobject_cast<const CardSurface*>(widget) != nullptr)
        return option->rect.marginsRemoved(CardSurface::shadowMargins);
    return QProxyStyle::subElementRect(element, option, widget);
}

QRect BrevlinStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                   SubControl subControl, const QWidget* widget) const
{
    const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
    if (control != CC_ScrollBar || bar == nullptr || qobject_cast<const SlimScrollBar*>(widget) == nullptr)
        return QProxyStyle::subControlRect(control, option, subControl, widget);
    return slimScrollBarRect(*bar, subControl);
}

} // namespace brevlin
