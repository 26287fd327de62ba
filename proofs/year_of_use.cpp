// year_of_use FOLDER DAYS keep|clear: uses the program's model for so many days of virtual time, with its
// storage on the real disk, and prints what it kept and how much memory it holds: after a month, at the end,
// and by a fresh start with the same documents. With "clear" the history is cleared each evening, so that all
// days ought to cost the same.

#include "app/app_model.h"
#include "platform/freedesktop/files/file_user_defaults.h"
#include "platform/freedesktop/files/posix_durable_file.h"
#include "support/fake_desktop.h"
#include "support/fake_document_thread.h"
#include "support/fake_task_scheduler.h"

#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <optional>
#include <random>
#include <string>

using namespace brevlin;

namespace {

std::size_t heap()
{
    ::malloc_trim(0);
    return ::mallinfo2().uordblks + ::mallinfo2().hblkhd;
}

long residentKilobytes()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmRSS:")) {
            return std::atol(line.c_str() + 6);
        }
    }
    return 0;
}

class Use final
{
public:
    explicit Use(const std::string& folder)
        : m_path(folder + "/data/sessions-v1.json"), m_defaults(folder + "/config", m_files)
    {
        m_center.settings.state = NotificationAuthorizationState::authorized;
        launch();
    }

    void launch()
    {
        m_model.reset();
        const HistoryDisk historyDisk{m_files, m_thread, m_scheduler, m_clock};
        m_model = std::make_unique<AppModel>(AppModelParts{
            m_clock, m_scheduler, m_events, std::make_unique<PreferencesStore>(disk()),
            std::make_unique<ActiveTimerPersistence>(disk()), std::make_unique<AddedPreferencesStore>(disk()),
            std::make_unique<SessionStore>(HistoryLocation{m_path, std::nullopt}, historyDisk),
            std::make_unique<SessionDetailsStore>(m_path + ".details", historyDisk),
            std::make_unique<HistoryBackups>(BackupPaths{m_path, m_path + ".details", m_path + ".backups"},
                                             historyDisk),
            std::make_unique<NotificationService>(m_center),
            std::make_unique<AlertSoundService>(m_player, m_scheduler),
            std::make_unique<LaunchAtLoginService>(m_loginItem),
            TransferParts{m_files, [this]() -> DocumentThread& { return m_thread; },
                          [](const std::string&) {
                              return TimeZone{};
                          }},
            HookParts{std::make_shared<test::FakeHookPrograms>(),
                      [this]() -> DocumentThread& {
                          return m_thread;
                      }},
            "de_DE"});
        // A phase that was seen to run and does not any more has ended: not counted by the history itself.
        QObject::connect(m_model.get(), &AppModel::snapshotChanged, m_model.get(), [this] {
            const std::optional<Uuid> running = m_model->snapshot().sessionID;
            m_ended += m_running && m_running != running ? 1 : 0;
            m_running = running;
        });
        m_scheduler.runPending();
    }

    // Eight hours of phases with pauses, skips, changed settings and the windows in use, and a night of
    // sleep.
    void passDay()
    {
        for (const Instant evening = m_clock.now() + std::chrono::hours{8}; m_clock.now() < evening;) {
            act();
        }
        m_events.observer.willSleep();
        m_clock.jump(std::chrono::hours{16});
        m_events.observer.didWake();
        m_scheduler.runPending();
    }

    AppModel& model() { return *m_model; }
    std::size_t ended() const { return m_ended; }

private:
    DocumentDisk disk() { return {m_defaults, m_thread, m_scheduler, m_clock}; }

    void act()
    {
        switch (m_dice() % 16) {
        case 0:
            m_model->pause();
            m_scheduler.advance(Seconds{90.0});
            m_model->resume();
            break;
        case 1:
            m_model->addFiveMinutes();
            break;
        case 2:
            m_model->endCurrentPhase();
            break;
        case 3:
            m_model->switchToNextPhase();
            break;
        case 4:
            m_events.observer.didBecomeActive();
            break;
        case 5:
            m_model->setDuration(static_cast<std::int64_t>(5 + m_dice() % 25), TimerPhase::focus);
            break;
        case 6:
            m_model->setAppLanguage(m_dice() % 2 == 0 ? AppLanguage::english
                                                      : AppLanguage::simplifiedChinese);
            break;
        default:
            m_model->performPrimaryAction();
            break;
        }
        if (m_model->snapshot().runState != TimerRunState::running) {
            m_model->performPrimaryAction();
        }
        m_scheduler.advance(Seconds{static_cast<double>(60 + m_dice() % 900)});
        m_model->messages().clearAppMessage();
        // What the fakes remember is no part of the program.
        m_player.log.clear();
    }

    std::string m_path;
    PosixDurableFile m_files;
    FileUserDefaults m_defaults;
    test::FakeClock m_clock;
    test::FakeTaskScheduler m_scheduler{m_clock};
    test::FakeDocumentThread m_thread;
    test::FakeSystemEvents m_events;
    test::FakeNotificationCenter m_center;
    test::FakeSoundPlayer m_player;
    test::FakeLoginItem m_loginItem;
    std::unique_ptr<AppModel> m_model;
    std::mt19937 m_dice{7};
    std::optional<Uuid> m_running;
    std::size_t m_ended = 0;
};

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 4) {
        std::fputs("year_of_use: three arguments, FOLDER DAYS keep|clear\n", stderr);
        return 2;
    }
    constexpr int month = 30;
    const int days = std::atoi(arguments[2]);
    const bool clears = arguments[3] == std::string("clear");
    Use use(arguments[1]);
    std::size_t before = 0;
    long residentBefore = 0;
    for (int day = 1; day <= days; ++day) {
        use.passDay();
        if (clears) {
            use.model().clearHistory();
        }
        if (day == month) {
            before = heap();
            residentBefore = residentKilobytes();
        }
    }
    const std::size_t after = heap();
    const long residentAfter = residentKilobytes();
    const std::size_t known = use.model().sessions().size();
    const bool isSaved = use.model().unsaved().empty();
    use.launch();
    const std::size_t fresh = heap();
    std::printf(
        "{\"ended\": %zu, \"known\": %zu, \"reread\": %zu, \"saved\": %s, \"before\": %zu, \"after\": %zu, "
        "\"fresh\": %zu, \"residentBefore\": %ld, \"residentAfter\": %ld}\n",
        use.ended(), known, use.model().sessions().size(), isSaved ? "true" : "false", before, after, fresh,
        residentBefore, residentAfter);
}
