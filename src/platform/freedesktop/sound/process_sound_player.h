#pragma once

#include "platform/sound_player.h"
#include "platform/task_scheduler.h"

#include <QObject>

#include <string>
#include <vector>

namespace brevlin {

/// Plays WAV files through the desktop's sound server, each in a process of its own: the library waits for a
/// hung server for 30 s, in whatever thread, and every later sound with it. A process can be ended at any
/// time; it ends with this one, however that ends. Sounds are looked up in the desktop's sound theme first
/// and then among the program's own, "Glass" and "Ping".
class ProcessSoundPlayer final : public SoundPlayer
{
public:
    /// The data folders are those of the XDG base directories, in the order of their precedence.
    ProcessSoundPlayer(TaskScheduler& scheduler, std::vector<std::string> dataFolders, std::string theme);
    /// After its sounds. Waits for the processes that were ended, which takes them no time.
    ~ProcessSoundPlayer() override;

    std::unique_ptr<Sound> sound(const std::string& name) override;
    void beep() override;

private:
    TaskScheduler& m_scheduler;
    std::vector<std::string> m_dataFolders;
    std::string m_theme;
    QString m_program;   // which plays
    QObject m_processes; // the parent of those that run
};

} // namespace brevlin
