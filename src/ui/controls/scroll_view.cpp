#include "ui/controls/scroll_view.h"

#include "ui/style/shapes.h"
#include "ui/style/theme.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>

namespace brevlin {

namespace {

constexpr double handleInset = 3;

} // namespace

SlimScrollBar::SlimScrollBar(Qt::Orientation orientation, QWidget* parent) : QScrollBar(orientation, parent)
{
    setAttribute(Qt::WA_Hover);
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    setContextMenuPolicy(Qt::NoContextMenu);
}

void SlimScrollBar::paintEvent(QPaintEvent*)
{
    if (minimum() == maximum())
        return;
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRectF handle =
        style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    const double strength = isSliderDown() ? 0.5 : underMouse() ? 0.36 : 0.2;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(capsulePath(handle.adjusted(handleInset, handleInset, -handleInset, -handleInset)),
                     Theme::of(*this).color(ThemeColor::label, strength));
}

ScrollView::ScrollView(QWidget* parent) : QScrollArea(parent)
{
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);
    setVerticalScrollBar(new SlimScrollBar(Qt::Vertical, this));
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    setAutoFillBackground(false);
}

} // namespace brevlin
