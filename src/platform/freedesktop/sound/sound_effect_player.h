#pragma once

#include "platform/sound_player.h"
#include "platform/task_scheduler.h"

#include <string>
#include <vector>

namespace brevlin {

/// Plays WAV files through the desktop's sound server. Sounds are looked up in the desktop's sound theme
/// first and then among the program's own, "Glass" and "Ping".
class SoundEffectPlayer final : public SoundPlayer
{
public:
    /// The data folders are those of the XDG base directories, in the order of their precedence.
    SoundEffectPlayer(TaskScheduler& scheduler, std::vector<std::string> dataFolders, std::string theme);

    std::unique_ptr<Sound> sound(const std::string& name) override;
    void beep() override;

private:
    TaskScheduler& m_scheduler;
    std::vector<std::string> m_dataFolders;
    std::string m_theme;
};

} // namespace brevlin
