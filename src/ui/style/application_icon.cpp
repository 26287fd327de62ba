#include "ui/style/application_icon.h"

#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace brevlin {

QIcon applicationIcon()
{
    QSvgRenderer renderer(QStringLiteral(":/icons/com.quillmark.Brevlin.svg"));
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        renderer.render(&painter, QRectF(0, 0, size, size));
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace brevlin
