// Plays a strong alert through the real sound server: alert_player LIMIT [STOP], in seconds. LIMIT is the
// longest that the alert may last; STOP is when it is stopped by hand. Ends a second after the alert is over.

#include "platform/freedesktop/event_loop/qt_task_scheduler.h"
#include "platform/freedesktop/sound/process_sound_player.h"
#include "services/alert_sound_service.h"

#include <QGuiApplication>

#include <cstdlib>

using namespace brevlin;

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    QtTaskScheduler scheduler;
    ProcessSoundPlayer player(scheduler, {}, "freedesktop");
    AlertSoundService service(player, scheduler, Seconds{std::atof(argv[1])});
    if (!service.play(AlertIntensity::strong, "Glass")) {
        return 1;
    }
    TaskHandle end;
    service.setPlaybackStateHandler([&](bool isPlaying) {
        if (!isPlaying) {
            end = scheduler.after(Seconds{1.0}, [] { QGuiApplication::quit(); });
        }
    });
    TaskHandle stop;
    if (argc > 2) {
        stop = scheduler.after(Seconds{std::atof(argv[2])}, [&] { service.stop(); });
    }
    return QGuiApplication::exec();
}
