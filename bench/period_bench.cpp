// How long a change of the statistics' period takes, from the key to the end of the next paint.

#include "app/app_model.h"
#include "report.h"
#include "support/fake_desktop.h"
#include "support/fake_task_scheduler.h"
#include "support/memory_durable_file.h"
#include "support/memory_user_defaults.h"
#include "ui/screens/statistics/activity_chart.h"
#include "ui/screens/statistics/statistics_view.h"
#include "ui/style/brevlin_style.h"

#include <QApplication>
#include <QTest>

#include <cstdlib>

namespace {

using namespace brevlin;
using namespace brevlin::bench;

constexpr int turns = 100;
constexpr std::size_t recordCount = 100'000;

class NoCapsule final : public TopCapsule
{
public:
    void refresh() override {}
    void presentCompletion(const CompletionPresentation& /*presentation*/) override {}
    void clearMorphState() override {}
    void cancelMorph() override {}
    void beginCompletionCollapse() override {}
    void finishCompletionCollapse() override {}
    void foldTimerCapsule() override {}
    void hide() override {}
};

/// Four phases of focus and four breaks a day, latest first.
std::vector<SessionRecord> history(Instant now)
{
    constexpr int phasesPerDay = 8;
    std::vector<SessionRecord> records;
    for (std::size_t index = 0; index < recordCount; ++index) {
        SessionRecord record;
        const auto day = static_cast<double>(index / phasesPerDay);
        const auto place = static_cast<double>(index % phasesPerDay);
        record.id = Uuid::random();
        record.phaseRawValue = index % 2 == 0 ? TimerPhase::focus : TimerPhase::shortBreak;
        record.endedAt = now - Seconds{day * 86'400.0 + place * 1'800.0};
        record.effectiveDuration = Seconds{index % 2 == 0 ? 600.0 + day * 7.0 : 300.0};
        record.timeZoneIdentifierAtStart = "Europe/Berlin";
        records.push_back(std::move(record));
    }
    return records;
}

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

    test::FakeClock clock;
    test::FakeTaskScheduler scheduler{clock};
    test::FakeSystemEvents events;
    test::MemoryUserDefaults defaults;
    test::MemoryDurableFile files;
    test::FakeNotificationCenter center;
    test::FakeSoundPlayer player;
    test::FakeLoginItem loginItem;
    NoCapsule capsule;
    const std::string path = "/data/sessions-v1.json";
    SessionArchiveText text;
    files.files[path] = *text.encode(history(clock.now()));
    AppModel model({clock, scheduler, events, capsule, std::make_unique<PreferencesStore>(defaults, clock),
                    std::make_unique<ActiveTimerPersistence>(defaults, clock),
                    std::make_unique<SessionStore>(HistoryLocation{path, std::nullopt}, files, clock),
                    std::make_unique<NotificationService>(center),
                    std::make_unique<AlertSoundService>(player, scheduler),
                    std::make_unique<LaunchAtLoginService>(loginItem), "de_DE"});
    if (model.sessions().size() != recordCount) {
        std::fputs("period_bench: the history was not read\n", stderr);
        return EXIT_FAILURE;
    }

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
