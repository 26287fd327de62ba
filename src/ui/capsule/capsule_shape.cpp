#include "ui/capsule/capsule_shape.h"

#include "ui/style/shapes.h"

#include <QImage>
#include <QPainter>

namespace brevlin {

QRegion roundedRegion(const QSize& size, double cornerRadius, ShapeEdge edge)
{
    QImage coverage(size, QImage::Format_Alpha8);
    coverage.fill(0);
    QPainter painter(&coverage);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(continuousRoundedRect(QRectF(QPointF(), size), cornerRadius), Qt::black);
    painter.end();

    const int least = edge == ShapeEdge::soft ? 1 : 128;
    QRegion region;
    for (int y = 0; y < size.height(); ++y) {
        const uchar* line = coverage.constScanLine(y);
        int first = 0;
        int last = size.width() - 1;
        while (first <= last && line[first] < least) {
            ++first;
        }
        while (last >= first && line[last] < least) {
            --last;
        }
        if (first <= last) {
            region += QRect(first, y, last - first + 1, 1);
        }
    }
    return region;
}

} // namespace brevlin
