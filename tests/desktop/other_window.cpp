#include <QApplication>
#include <QFile>
#include <QLineEdit>

#include <csignal>

// other_window FILE|--full-screen|--floating
// Another program's window: one that writes what is typed into it to the file at once, a full-screen one, or
// a plain one above the whole screen that no window manager governs. Ends by SIGTERM.
int main(int argc, char* argv[])
{
    std::signal(SIGTERM, SIG_DFL);
    const QApplication application(argc, argv);
    const QString argument = QApplication::arguments().at(1);
    if (argument == QStringLiteral("--full-screen") || argument == QStringLiteral("--floating")) {
        QWidget window;
        window.setPalette(QColor(0, 128, 128));
        window.setWindowTitle(QStringLiteral("Full screen"));
        if (argument == QStringLiteral("--floating")) {
            window.setWindowFlag(Qt::X11BypassWindowManagerHint);
            window.setGeometry(0, 0, 1280, 900);
            window.show();
        } else {
            window.showFullScreen();
        }
        return QApplication::exec();
    }
    QLineEdit edit;
    QObject::connect(&edit, &QLineEdit::textChanged, &edit, [&argument](const QString& text) {
        QFile file(argument);
        if (file.open(QIODevice::WriteOnly)) {
            file.write(text.toUtf8());
        }
    });
    edit.setFrame(false);
    edit.setWindowTitle(QStringLiteral("Line edit"));
    edit.setGeometry(60, 620, 240, 40);
    edit.show();
    return QApplication::exec();
}
