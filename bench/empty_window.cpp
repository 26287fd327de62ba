// The least a Qt Widgets program can be: what Brevlin's start and memory are compared with.

#include <QApplication>
#include <QWidget>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QWidget window;
    window.resize(920, 650);
    window.show();
    return QApplication::exec();
}
