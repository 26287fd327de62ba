// record_pictures FOLDER DRAWING.svg …: writes each drawing as DRAWING.pic, what a QPainter does to draw it,
// which the program plays without Qt's module for SVG.

#include <QFileInfo>
#include <QGuiApplication>
#include <QPainter>
#include <QPicture>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "minimal");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    for (const QString& file : arguments.mid(2)) {
        QSvgRenderer renderer(file);
        QPicture picture;
        QPainter painter(&picture);
        renderer.render(&painter, QRectF(QPointF(), renderer.defaultSize()));
        painter.end();
        const QString target =
            arguments.at(1) + u'/' + QFileInfo(file).completeBaseName() + QStringLiteral(".pic");
        if (!renderer.isValid() || !picture.save(target)) {
            std::fprintf(stderr, "record_pictures: %s cannot be recorded\n", qPrintable(file));
            return 1;
        }
    }
    return 0;
}
