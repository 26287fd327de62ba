#include "platform/freedesktop/sound/process_sound_player.h"

#include "platform/freedesktop/sound/sound_themes.h"

#include <QCoreApplication>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QUrl>

#include <sys/prctl.h>
#include <xcb/xcb.h>

#include <csignal>
#include <utility>

namespace brevlin {

namespace {

// Longer than any alert sound by far; a sound that has not ended by then never will.
constexpr Seconds watchdogDelay{10.0};

// In milliseconds; the kernel ends a killed process at once.
constexpr int longestEnding = 100;

/// The program that plays; it lies beside this one.
QString playingProgram()
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/brevlin-play-sound");
}

class ProcessSound final : public Sound
{
public:
    ProcessSound(const QString& program, const QUrl& source, TaskScheduler& scheduler, QObject& processes)
        : m_scheduler(scheduler), m_process(new QProcess(&processes))
    {
        m_process->setProgram(program);
        m_process->setArguments({source.toString(QUrl::FullyEncoded)});
        m_process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process->setChildProcessModifier([] { prctl(PR_SET_PDEATHSIG, SIGKILL); });
    }

    ~ProcessSound() override { letGo(); }
    ProcessSound(const ProcessSound&) = delete;
    ProcessSound& operator=(const ProcessSound&) = delete;

    void setLoops(bool loops) override
    {
        m_loops = loops;
        if (loops) {
            m_process->setArguments(m_process->arguments() << QStringLiteral("loop"));
        }
    }

    void play() override
    {
        QObject::connect(m_process, &QProcess::readyReadStandardOutput, m_process, [this] { begin(); });
        QObject::connect(m_process, &QProcess::finished, m_process, [this] { finish(); });
        QObject::connect(m_process, &QProcess::errorOccurred, m_process,
                         [this](QProcess::ProcessError error) {
                             if (error == QProcess::FailedToStart) {
                                 finish();
                             }
                         });
        m_process->start(QIODevice::ReadOnly);
    }

    void stop() override { letGo(); }

    void setStartedHandler(std::function<void()> handler) override { m_started = std::move(handler); }
    void setFinishedHandler(std::function<void()> handler) override { m_finished = std::move(handler); }

private:
    void begin()
    {
        m_process->readAllStandardOutput();
        if (!m_loops) {
            m_watchdog = m_scheduler.after(watchdogDelay, [this] { finish(); });
        }
        if (m_started) {
            m_started();
        }
    }

    // Reported from the event loop: whoever hears of the end destroys this object.
    void finish()
    {
        m_watchdog = m_scheduler.after(Seconds::zero(), [handler = m_finished] {
            if (handler) {
                handler();
            }
        });
    }

    void letGo()
    {
        m_watchdog.reset();
        QProcess* process = std::exchange(m_process, nullptr);
        if (process == nullptr) {
            return;
        }
        process->disconnect(process);
        if (process->state() == QProcess::NotRunning) {
            process->deleteLater();
        } else {
            QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
            process->kill();
        }
    }

    TaskScheduler& m_scheduler;
    QProcess* m_process; // nothing once it was let go of; its parent owns it
    TaskHandle m_watchdog;
    std::function<void()> m_started;
    std::function<void()> m_finished;
    bool m_loops = false;
};

} // namespace

ProcessSoundPlayer::ProcessSoundPlayer(TaskScheduler& scheduler, std::vector<std::string> dataFolders,
                                       std::string theme)
    : m_scheduler(scheduler)
    , m_dataFolders(std::move(dataFolders))
    , m_theme(std::move(theme))
    , m_program(playingProgram())
{}

ProcessSoundPlayer::~ProcessSoundPlayer()
{
    for (auto* process : m_processes.findChildren<QProcess*>()) {
        process->waitForFinished(longestEnding);
    }
}

std::unique_ptr<Sound> ProcessSoundPlayer::sound(const std::string& name)
{
    if (const auto file = themeSoundFile(m_dataFolders, m_theme, name)) {
        return std::make_unique<ProcessSound>(
            m_program, QUrl::fromLocalFile(QFile::decodeName(file->c_str())), m_scheduler, m_processes);
    }
    if (name == "Glass" || name == "Ping") { // which are built into what plays them
        const QUrl own(QStringLiteral("qrc:/sounds/%1.wav").arg(QString::fromStdString(name)));
        return std::make_unique<ProcessSound>(m_program, own, m_scheduler, m_processes);
    }
    return nullptr;
}

void ProcessSoundPlayer::beep()
{
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 != nullptr && x11->connection() != nullptr) {
        xcb_bell(x11->connection(), 0);
        xcb_flush(x11->connection());
    }
}

} // namespace brevlin
