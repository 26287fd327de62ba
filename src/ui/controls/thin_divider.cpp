#include "ui/controls/thin_divider.h"

#include "ui/style/shapes.h"
#include "ui/style/theme.h"

#include <QPainter>

namespace brevlin {

ThinDivider::ThinDivider(QWidget* parent) : ThinDivider(Qt::Horizontal, parent) {}

ThinDivider::ThinDivider(Qt::Orientation orientation, QWidget* parent)
    : QWidget(parent), m_orientation(orientation)
{
    const bool isHorizontal = orientation == Qt::Horizontal;
    setSizePolicy(isHorizontal ? QSizePolicy::Expanding : QSizePolicy::Fixed,
                  isHorizontal ? QSizePolicy::Fixed : QSizePolicy::Expanding);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void ThinDivider::setLeadingIndent(int points)
{
    m_leadingIndent = points;
    update();
}

QSize ThinDivider::sizeHint() const
{
    return {1, 1};
}

void ThinDivider::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QColor color = Theme::of(*this).color(ThemeColor::separator);
    if (m_orientation == Qt::Vertical) {
        paintHairline(painter, rect(), Qt::LeftEdge, color);
        return;
    }
    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    const QRect line =
        rect().adjusted(isMirrored ? 0 : m_leadingIndent, 0, isMirrored ? -m_leadingIndent : 0, 0);
    paintHairline(painter, line, Qt::TopEdge, color);
}

} // namespace brevlin
