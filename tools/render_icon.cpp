// Renders the program's icon at build time: brevlin_render_icon ICON.svg SIZE OUTPUT. An OUTPUT.png is what
// it says, an OUTPUT.argb the bare pixels as QImage holds them, premultiplied.

#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 4) {
        return 2;
    }
    const int size = arguments.at(2).toInt();
    QSvgRenderer renderer(arguments.at(1));
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    painter.end();
    if (!arguments.at(3).endsWith(QStringLiteral(".argb"))) {
        return renderer.isValid() && image.save(arguments.at(3)) ? 0 : 1;
    }
    QFile file(arguments.at(3));
    const auto* pixels = reinterpret_cast<const char*>(image.constBits());
    const bool isWritten = file.open(QIODevice::WriteOnly) && file.write(pixels, image.sizeInBytes()) >= 0;
    return renderer.isValid() && isWritten ? 0 : 1;
}
