#include "ui/style/application_icon.h"

#include <QPixmap>
#include <QResource>

namespace brevlin {

// As bare pixels: to read a picture's format Qt looks through its plugins, which takes longer than to draw
// it.
QIcon applicationIcon()
{
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128}) {
        const QResource pixels(QStringLiteral(":/icons/icon-%1.argb").arg(size));
        icon.addPixmap(
            QPixmap::fromImage(QImage(pixels.data(), size, size, QImage::Format_ARGB32_Premultiplied)));
    }
    return icon;
}

} // namespace brevlin
