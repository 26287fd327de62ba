#include <QApplication>
#include <QFile>
#include <QLineEdit>

// A second program that the user types into: a line edit that keeps what it holds in a file.
int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QLineEdit edit;
    edit.setWindowTitle(QStringLiteral("Line edit"));
    edit.setGeometry(500, 600, 300, 40);
    QObject::connect(&edit, &QLineEdit::textChanged, &edit, [&](const QString& text) {
        QFile file(application.arguments().at(1));
        if (file.open(QIODevice::WriteOnly)) {
            file.write(text.toUtf8());
        }
    });
    edit.show();
    return QApplication::exec();
}
