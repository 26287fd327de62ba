#pragma once

#include "core/timer_vocabulary.h"
#include "platform/sound_player.h"
#include "platform/task_scheduler.h"

#include <functional>
#include <memory>
#include <string>

namespace brevlin {

/// Owns the one alert sound that may be playing. At strong intensity it repeats until it is stopped, for at
/// most a minute. Every change between playing and silent reaches the handler. A sound that is not heard soon
/// is given up without a word.
class AlertSoundService final
{
public:
    static constexpr Seconds defaultLongestAlert{60.0};
    static constexpr Seconds longestStart{2.0};

    AlertSoundService(SoundPlayer& player, TaskScheduler& scheduler,
                      Seconds longestAlert = defaultLongestAlert);

    /// Called with true when a sound is heard and with false whenever the service becomes silent, also by a
    /// stop() that found nothing playing.
    void setPlaybackStateHandler(std::function<void(bool)> handler);

    /// Starts the named sound, else "Ping", else the desktop's bell. True when a sound was started; the bell
    /// does not count as one.
    bool play(AlertIntensity intensity, const std::string& soundName);
    void stop();

private:
    void soundStarted(bool loops);
    void forgetSound();
    void report(bool playing) const;

    SoundPlayer& m_player;
    TaskScheduler& m_scheduler;
    Seconds m_longestAlert;
    std::function<void(bool)> m_playbackStateHandler;
    std::unique_ptr<Sound> m_sound;
    TaskHandle m_startLimit;        // only while a sound is started and not heard yet
    TaskHandle m_automaticStopTask; // only while a looping sound plays
};

} // namespace brevlin
