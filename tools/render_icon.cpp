// Renders the program's icon at build time: brevlin_render_icon ICON.svg SIZE OUTPUT.png

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
    return renderer.isValid() && image.save(arguments.at(3)) ? 0 : 1;
}
