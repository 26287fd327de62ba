// How long the main thread is busy at a stretch while the capsule widens, shows its controls, shrinks and
// grows into the island: prints of the stretches that paint, in milliseconds, the median, the longest of a
// round, in the middle of the rounds, and the longest of all, which is rather the machine's. Events that
// follow each other without a pause belong to one stretch, so that it bounds every frame from above.

#include "platform/freedesktop/bus/bus_start.h"
#include "platform/freedesktop/event_loop/qt_task_scheduler.h"
#include "platform/freedesktop/session/bus_session_lock.h"
#include "platform/freedesktop/x11/x11_floating_window_system.h"
#include "support/fake_disk.h"
#include "ui/capsule/top_panel_controller.h"
#include "ui/controls/brevlin_style.h"
#include "ui/style/theme.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

using namespace brevlin;

namespace {

constexpr int rounds = 6;
constexpr int stepInterval = 400; // milliseconds; longer than every motion
constexpr int revealDelay = 55;

CapsuleContent timerContent(bool isCompact, bool isRevealed)
{
    CapsuleContent content;
    content.runState = TimerRunState::running;
    content.clockText = "24:59";
    content.endTimeText = "10:25";
    content.cycleSummaryText = "循环第 1/4 阶段";
    content.progress = 0.4;
    content.showsCompactTimer = isCompact;
    content.revealsExpandedTimerContent = isRevealed;
    content.showsProgressBorder = true;
    return content;
}

CapsuleContent islandContent()
{
    CapsuleContent content = timerContent(false, false);
    content.runState = TimerRunState::ringing;
    content.phase = TimerPhase::shortBreak;
    content.showsCompletion = true;
    return content;
}

class MeasuringApplication final : public QApplication
{
public:
    using QApplication::QApplication;

    /// The stretches that painted since the last call, milliseconds.
    std::vector<double> takeStretches()
    {
        endStretch();
        return std::exchange(m_stretches, {});
    }
    void startMeasuring()
    {
        m_clock.start();
        m_stretchStart = 0;
        m_lastEnd = 0;
        m_measures = true;
        m_paints = false;
    }

    bool notify(QObject* receiver, QEvent* event) override
    {
        m_paints = m_paints || event->type() == QEvent::Paint;
        if (!m_measures || m_depth > 0) {
            return QApplication::notify(receiver, event);
        }
        constexpr qint64 pause = 500'000; // nanoseconds
        const qint64 start = m_clock.nsecsElapsed();
        if (start - m_lastEnd > pause) {
            endStretch();
            m_stretchStart = start;
        }
        ++m_depth;
        const bool result = QApplication::notify(receiver, event);
        --m_depth;
        m_lastEnd = m_clock.nsecsElapsed();
        return result;
    }

private:
    void endStretch()
    {
        if (std::exchange(m_paints, false)) {
            m_stretches.push_back(static_cast<double>(m_lastEnd - m_stretchStart) / 1e6);
        }
    }

    QElapsedTimer m_clock;
    qint64 m_stretchStart = 0;
    qint64 m_lastEnd = 0;
    std::vector<double> m_stretches;
    bool m_paints = false;
    int m_depth = 0;
    bool m_measures = false;
};

double middle(std::vector<double> values)
{
    std::ranges::sort(values);
    return values.at(values.size() / 2);
}

} // namespace

int main(int argc, char** argv)
{
    BusStart buses;
    buses.applicationIsToBeMade();
    MeasuringApplication application(argc, argv);
    buses.applicationIsMade({});
    buses.release();
    QApplication::setStyle(new BrevlinStyle);
    QApplication::setPalette(Theme::palette(ColorScheme::light));
    QtTaskScheduler scheduler;
    X11FloatingWindowSystem system(scheduler);
    BusSessionLock lock(buses.session(), buses.system(), scheduler);
    test::FakeDisk disk;
    CapsulePositionStore store(disk);
    TopPanelController panel(system, lock, scheduler, store);
    const auto circle = CapsuleLayouts::capsule(CapsuleLayouts::circleDiameter, HorizontalAnchor::leading);
    const auto wide = CapsuleLayouts::capsule(CapsuleLayouts::expandedTimerWidth, HorizontalAnchor::leading);
    panel.show(timerContent(true, false), circle);

    int step = 0;
    std::vector<double> stretches;
    std::vector<double> longest; // of each round
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &application, [&] {
        // The first round loads fonts and symbols, which the running program has done when it started.
        if (step == 4) {
            application.startMeasuring();
        } else if (step > 4 && step % 4 == 0) {
            const std::vector<double> round = application.takeStretches();
            stretches.insert(stretches.end(), round.begin(), round.end());
            longest.push_back(std::ranges::max(round));
        }
        switch (step++ % 4) {
        case 0:
            panel.update(timerContent(false, false), wide);
            QTimer::singleShot(revealDelay, &application,
                               [&] { panel.update(timerContent(false, true), wide); });
            break;
        case 1:
            panel.update(timerContent(true, false), circle);
            break;
        case 2:
            panel.update(islandContent(), CapsuleLayouts::island);
            break;
        case 3:
            panel.update(timerContent(true, false), circle);
            break;
        }
        if (step > 4 * rounds) {
            std::printf("%.3f %.3f %.3f\n", middle(stretches), middle(longest), std::ranges::max(stretches));
            QApplication::exit();
        }
    });
    timer.start(stepInterval);
    return QApplication::exec();
}
