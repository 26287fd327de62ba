#pragma once

#include "app/app_model.h"
#include "storage/session_archive.h"
#include "support/fake_desktop.h"
#include "support/fake_document_thread.h"
#include "support/fake_task_scheduler.h"
#include "support/memory_durable_file.h"
#include "support/memory_user_defaults.h"

#include <memory>
#include <string>
#include <vector>

namespace brevlin::bench {

/// Four phases of focus and four breaks a day, latest first.
inline std::vector<SessionRecord> longHistory(Instant now)
{
    constexpr std::size_t recordCount = 100'000;
    constexpr int phasesPerDay = 8;
    std::vector<SessionRecord> records;
    for (std::size_t index = 0; index < recordCount; ++index) {
        SessionRecord record;
        const auto day = static_cast<double>(index / phasesPerDay);
        const auto place = static_cast<double>(index % phasesPerDay);
        record.id = Uuid::random();
        record.phaseRawValue = index % 2 == 0 ? TimerPhase::focus : TimerPhase::shortBreak;
        record.endedAt = now - Seconds{day * 86'400.0 + place * 1'800.0};
        record.effectiveDuration = Seconds{index % 2 == 0 ? 600.0 + day * 7.0 : 300.0};
        record.timeZoneIdentifierAtStart = "Europe/Berlin";
        records.push_back(std::move(record));
    }
    return records;
}

/// A model over fakes with a history of 100,000 records.
class LongHistory final
{
public:
    LongHistory()
    {
        m_files.files[path] = *encodeSessionArchive(longHistory(m_clock.now()));
        const DocumentDisk disk{m_defaults, m_documents, m_scheduler, m_clock};
        const HistoryDisk historyDisk{m_files, m_documents, m_scheduler, m_clock};
        m_model = std::make_unique<AppModel>(AppModelParts{
            m_clock, m_scheduler, m_events, std::make_unique<PreferencesStore>(disk),
            std::make_unique<ActiveTimerPersistence>(disk), std::make_unique<AddedPreferencesStore>(disk),
            std::make_unique<SessionStore>(HistoryLocation{path, std::nullopt}, historyDisk),
            std::make_unique<SessionDetailsStore>("/data/session-details-v1.json", historyDisk),
            std::make_unique<HistoryBackups>(BackupPaths{path, "/data/session-details-v1.json", "/backups"},
                                             historyDisk),
            std::make_unique<NotificationService>(m_center),
            std::make_unique<AlertSoundService>(m_player, m_scheduler),
            std::make_unique<LaunchAtLoginService>(m_loginItem),
            TransferParts{m_files, [this]() -> DocumentThread& { return m_documents; },
                          [](const std::string&) {
                              return TimeZone{};
                          }},
            HookParts{std::make_shared<test::FakeHookPrograms>(),
                      [this]() -> DocumentThread& {
                          return m_documents;
                      }},
            "de_DE"});
    }

    AppModel& model() { return *m_model; }

private:
    static constexpr const char* path = "/data/sessions-v1.json";

    test::FakeClock m_clock;
    test::FakeTaskScheduler m_scheduler{m_clock};
    test::FakeDocumentThread m_documents;
    test::FakeSystemEvents m_events;
    test::MemoryUserDefaults m_defaults;
    test::MemoryDurableFile m_files;
    test::FakeNotificationCenter m_center;
    test::FakeSoundPlayer m_player;
    test::FakeLoginItem m_loginItem;
    std::unique_ptr<AppModel> m_model;
};

} // namespace brevlin::bench
