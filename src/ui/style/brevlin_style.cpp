#include "ui/style/brevlin_style.h"

#include "ui/style/card_surface.h"

#include <QApplication>
#include <QStyleOption>

namespace brevlin {

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
    return QProxyStyle::styleHint(hint, option, widget, returnData);
}

QRect BrevlinStyle::subElementRect(SubElement element, const QStyleOption* option,
                                   const QWidget* widget) const
{
    if (element == SE_FrameLayoutItem && qobject_cast<const CardSurface*>(widget) != nullptr)
        return option->rect.marginsRemoved(CardSurface::shadowMargins);
    return QProxyStyle::subElementRect(element, option, widget);
}

} // namespace brevlin
