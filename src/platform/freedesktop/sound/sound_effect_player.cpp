#include "platform/freedesktop/sound/sound_effect_player.h"

#include "platform/freedesktop/sound/sound_themes.h"

#include <QAudioDevice>
#include <QFile>
#include <QGuiApplication>
#include <QMediaDevices>
#include <QSoundEffect>
#include <QUrl>

#include <xcb/xcb.h>

#include <utility>

namespace brevlin {

namespace {

// Longer than any alert sound by far; a sound that has not ended by then never will.
constexpr Seconds watchdogDelay{10.0};

class SoundEffect final : public Sound
{
public:
    SoundEffect(const QUrl& source, TaskScheduler& scheduler) : m_scheduler(scheduler)
    {
        m_effect.setSource(source);
    }

    void setLoops(bool loops) override
    {
        m_loops = loops;
        m_effect.setLoopCount(loops ? QSoundEffect::Infinite : 1);
    }

    bool play() override
    {
        // Without a sound server an effect would wait for one for ever.
        if (QMediaDevices::defaultAudioOutput().isNull() || m_effect.status() == QSoundEffect::Error) {
            return false;
        }
        QObject::connect(&m_effect, &QSoundEffect::playingChanged, &m_effect, [this] {
            if (!m_effect.isPlaying()) {
                finish();
            }
        });
        QObject::connect(&m_effect, &QSoundEffect::statusChanged, &m_effect, [this] {
            if (m_effect.status() == QSoundEffect::Error) {
                finish();
            }
        });
        m_effect.play();
        if (!m_loops) {
            m_watchdog = m_scheduler.after(watchdogDelay, [this] { finish(); });
        }
        return true;
    }

    void stop() override
    {
        m_isOver = true;
        m_watchdog.reset();
        m_effect.disconnect(&m_effect);
        m_effect.stop();
    }

    void setFinishedHandler(std::function<void()> handler) override { m_finished = std::move(handler); }

private:
    // Reported from the event loop: whoever hears of the end destroys this object.
    void finish()
    {
        if (!std::exchange(m_isOver, true)) {
            m_watchdog = m_scheduler.after(Seconds::zero(), [handler = m_finished] {
                if (handler) {
                    handler();
                }
            });
        }
    }

    TaskScheduler& m_scheduler;
    QSoundEffect m_effect;
    TaskHandle m_watchdog; // destroyed before the effect that it watches
    std::function<void()> m_finished;
    bool m_loops = false;
    bool m_isOver = false;
};

} // namespace

SoundEffectPlayer::SoundEffectPlayer(TaskScheduler& scheduler, std::vector<std::string> dataFolders,
                                     std::string theme)
    : m_scheduler(scheduler), m_dataFolders(std::move(dataFolders)), m_theme(std::move(theme))
{}

std::unique_ptr<Sound> SoundEffectPlayer::sound(const std::string& name)
{
    if (const auto file = themeSoundFile(m_dataFolders, m_theme, name)) {
        return std::make_unique<SoundEffect>(QUrl::fromLocalFile(QFile::decodeName(file->c_str())),
                                             m_scheduler);
    }
    const QString own = QStringLiteral(":/sounds/") + QString::fromStdString(name) + QStringLiteral(".wav");
    if (QFile::exists(own)) {
        return std::make_unique<SoundEffect>(QUrl(QStringLiteral("qrc") + own), m_scheduler);
    }
    return nullptr;
}

void SoundEffectPlayer::beep()
{
    if (auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
        xcb_bell(x11->connection(), 0);
        xcb_flush(x11->connection());
    }
}

} // namespace brevlin
