#include "services/alert_sound_service.h"

#include <utility>

namespace brevlin {

AlertSoundService::AlertSoundService(SoundPlayer& player, TaskScheduler& scheduler, Seconds longestAlert)
    : m_player(player), m_scheduler(scheduler), m_longestAlert(longestAlert)
{}

void AlertSoundService::setPlaybackStateHandler(std::function<void(bool)> handler)
{
    m_playbackStateHandler = std::move(handler);
}

bool AlertSoundService::play(AlertIntensity intensity, const std::string& soundName)
{
    stop();
    std::unique_ptr<Sound> sound = m_player.sound(soundName);
    if (!sound) {
        sound = m_player.sound("Ping");
    }
    if (!sound) {
        m_player.beep();
        return false;
    }
    const bool loops = intensity == AlertIntensity::strong;
    sound->setLoops(loops);
    // The handler goes with its sound: one that was replaced or stopped can report nothing.
    sound->setStartedHandler([this, loops] { soundStarted(loops); });
    sound->setFinishedHandler([this] {
        const bool wasHeard = m_startLimit == nullptr;
        forgetSound();
        if (wasHeard) {
            report(false);
        }
    });
    m_sound = std::move(sound);
    m_startLimit = m_scheduler.after(longestStart, [this] { forgetSound(); });
    m_sound->play();
    return true;
}

void AlertSoundService::soundStarted(bool loops)
{
    m_startLimit.reset();
    if (loops) {
        m_automaticStopTask = m_scheduler.after(m_longestAlert, [this] { stop(); });
    }
    report(true);
}

void AlertSoundService::stop()
{
    if (m_sound) {
        m_sound->stop();
    }
    forgetSound();
    report(false);
}

void AlertSoundService::forgetSound()
{
    m_startLimit.reset();
    m_automaticStopTask.reset();
    m_sound.reset();
}

void AlertSoundService::report(bool playing) const
{
    if (m_playbackStateHandler) {
        m_playbackStateHandler(playing);
    }
}

} // namespace brevlin
