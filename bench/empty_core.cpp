// The least a Qt program without a window can be: what a verb of the command line is compared with.

#include <QCoreApplication>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return 0;
}
