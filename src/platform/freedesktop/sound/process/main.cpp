// brevlin-play-sound URL [loop]: plays a WAV file, once or until it is killed. Writes a line as soon as the
// sound is heard. Ends with 0 when it is over, with 1 when it cannot be played. Waits for as long as the
// sound server lets it: whoever starts it decides when that is too long.

#include <QAudioDevice>
#include <QCoreApplication>
#include <QMediaDevices>
#include <QSoundEffect>
#include <QUrl>

#include <unistd.h>

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    // Without a sound server an effect would wait for one for ever.
    if (argc < 2 || QMediaDevices::defaultAudioOutput().isNull()) {
        return 1;
    }
    QSoundEffect effect;
    QObject::connect(&effect, &QSoundEffect::playingChanged, &effect, [&effect] {
        if (!effect.isPlaying()) {
            QCoreApplication::exit();
        } else if (write(STDOUT_FILENO, "\n", 1) < 0) {
            QCoreApplication::exit(1); // nobody is there any more
        }
    });
    QObject::connect(&effect, &QSoundEffect::statusChanged, &effect, [&effect] {
        if (effect.status() == QSoundEffect::Error) {
            QCoreApplication::exit(1);
        }
    });
    effect.setSource(QUrl(QString::fromLocal8Bit(argv[1])));
    effect.setLoopCount(argc > 2 ? QSoundEffect::Infinite : 1);
    // From the event loop, which has to run before it can be left.
    QMetaObject::invokeMethod(&effect, &QSoundEffect::play, Qt::QueuedConnection);
    return QCoreApplication::exec();
}
