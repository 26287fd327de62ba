#include "ui/style/drawing.h"

#include <QPainter>
#include <QPicture>

namespace brevlin {

namespace {

constexpr double gridUnits = 24;

} // namespace

void paintDrawing(QPainter& painter, QLatin1String name, double side)
{
    QPicture picture;
    if (!picture.load(QStringLiteral(":/pictures/") + name + QStringLiteral(".pic")))
        return;
    const double scale = side / gridUnits;
    painter.save();
    painter.scale(scale, scale);
    painter.drawPicture(0, 0, picture);
    painter.restore();
}

} // namespace brevlin
