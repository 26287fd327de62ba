#pragma once

#include <functional>
#include <memory>
#include <string>

namespace brevlin {

/// One sound, ready to play. Its destruction silences it.
class Sound
{
public:
    virtual ~Sound() = default;

    virtual void setLoops(bool loops) = 0;
    /// Begins to start the sound and waits for nothing: a sound server may take any time. Once only.
    virtual void play() = 0;
    /// Silences the sound, which was perhaps not heard yet; no handler is called any more.
    virtual void stop() = 0;
    /// Called on the main thread as soon as the sound is heard.
    virtual void setStartedHandler(std::function<void()> handler) = 0;
    /// Called on the main thread when the sound has ended by itself, or cannot be played, for example because
    /// there is no sound server.
    virtual void setFinishedHandler(std::function<void()> handler) = 0;
};

/// Finds the desktop's named sounds.
class SoundPlayer
{
public:
    virtual ~SoundPlayer() = default;

    /// A sound object of its own for every call; none when nothing has that name.
    virtual std::unique_ptr<Sound> sound(const std::string& name) = 0;
    /// The desktop's bell, once.
    virtual void beep() = 0;
};

} // namespace brevlin
