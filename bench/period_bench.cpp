// How long a change of the statistics' period takes, from the key to the end of the next paint.

#include "long_history.h"
#include "report.h"
#include "ui/controls/brevlin_style.h"
#include "ui/screens/statistics/activity_chart.h"
#include "ui/screens/statistics/statistics_view.h"

#include <QApplication>
#include <QTest>

#include <cstdlib>

namespace {

using namespace brevlin;
using namespace brevlin::bench;

constexpr int turns = 100;

/// Sees whether its chart is painted.
class PaintObserver final : public QObject
{
public:
    bool hasPainted = false;

    bool eventFilter(QObject* /*watched*/, QEvent* event) override
    {
        hasPainted = hasPainted || event->type() == QEvent::Paint;
        return false;
    }
};

/// Everything that the key brings about is done when this returns: the layout, and the window's next frame.
void pressAndPaint(QWidget& window, PaintObserver& observer, Qt::Key key)
{
    observer.hasPainted = false;
    QTest::keyClick(&window, key);
    QCoreApplication::sendPostedEvents();
    if (!observer.hasPainted) {
        window.repaint();
    }
}

} // namespace

int main(int argumentCount, char** arguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argumentCount, arguments);
    QApplication::setStyle(new BrevlinStyle);

    LongHistory history;
    AppModel& model = history.model();

    StatisticsView view(model);
    view.resize(920, 600);
    view.show();
    view.activateWindow();
    QApplication::processEvents();
    PaintObserver observer;
    view.findChild<ActivityChart*>()->installEventFilter(&observer);
    std::string medians;
    std::vector<double> slowest;
    for (const Qt::Key granularity : {Qt::Key_1, Qt::Key_2, Qt::Key_3, Qt::Key_4}) {
        pressAndPaint(view, observer, granularity);
        std::vector<double> times;
        for (int turn = 0; turn < turns; ++turn) {
            const Instant before = view.statistics().interval.start;
            times.push_back(
                seconds([&] { pressAndPaint(view, observer, turn % 4 < 2 ? Qt::Key_Left : Qt::Key_Right); }));
            if (view.statistics().interval.start == before) {
                std::fputs("period_bench: the period did not change\n", stderr);
                return EXIT_FAILURE;
            }
        }
        medians += (medians.empty() ? "" : " / ") + number("%.2f", median(times) * 1e3);
        if (slowest.empty() || median(times) > median(slowest)) {
            slowest = times;
        }
    }
    const double time = median(slowest) * 1e3;
    constexpr double goal = 5;
    printRow("change of the period, 100,000 records", number("%.2f ms", time), number("%.1f ms", goal),
             time <= goal, "day / week / month / year: " + medians + " ms");
    return EXIT_SUCCESS;
}
