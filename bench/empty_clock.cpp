// What a second costs at least, to compare the program's with: a timer, and as many pictures of a short text
// in a translucent window as the argument says, each in Qt's way.

#include <QApplication>
#include <QPainter>
#include <QTimer>
#include <QWidget>

#include <cstdlib>

namespace {

class Clock final : public QWidget
{
public:
    Clock()
    {
        setAttribute(Qt::WA_TranslucentBackground);
        setWindowFlags(Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint);
        resize(100, 50);
    }
    void tick()
    {
        ++m_second;
        update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        painter.drawText(rect(), Qt::AlignCenter, QString::asprintf("24:%02d", m_second % 60));
    }

private:
    int m_second = 0;
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    const int pictures = argc > 1 ? std::atoi(argv[1]) : 0;
    Clock clock;
    clock.setVisible(pictures > 0);
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &clock, [&] {
        clock.tick();
        for (int next = 1; next < pictures; ++next) {
            constexpr int pause = 80; // milliseconds, as long as a digit fades
            QTimer::singleShot(next * pause, Qt::PreciseTimer, &clock, [&] { clock.tick(); });
        }
    });
    timer.start(1000);
    return QApplication::exec();
}
