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
    /// False when the sound cannot be played, for example because there is no sound server.
    virtual bool play() = 0;
    /// Silences the sound; the finished handler is not called.
    virtual void stop() = 0;
    /// Called on the main thread when a sound that does not loop has ended by itself.
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
