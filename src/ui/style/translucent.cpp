#include "ui/style/translucent.h"

#include <QPainter>
#include <QRegion>

namespace brevlin {

void clearTranslucent(QPainter& painter, const QRegion& part)
{
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    for (const QRect& rect : part) {
        painter.fillRect(rect, Qt::transparent);
    }
}

} // namespace brevlin
