// document_writer FOLDER STEPS FIRST: records phases, removes and corrects some, and saves the timer, the
// preferences and what is known beside a record, by the program's own storage on the real disk, in virtual
// time. STEPS 0 never ends. Every step has a number, counted from FIRST, and is told of twice: "about …"
// before it is asked for, and as done once it is known to be on the disk; journal.py reads that. After the
// last step a line is awaited from the input, then time passes, and all is tried once more.

#include "platform/freedesktop/files/file_user_defaults.h"
#include "platform/freedesktop/files/leftovers.h"
#include "platform/freedesktop/files/posix_durable_file.h"
#include "storage/active_timer_persistence.h"
#include "storage/preferences_store.h"
#include "storage/session_details_store.h"
#include "storage/session_store.h"
#include "support/fake_document_thread.h"
#include "support/fake_task_scheduler.h"

#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

using namespace brevlin;

namespace {

constexpr std::int64_t correctedBy = 100'000;
constexpr std::size_t longestHistory = 60; // so that a step of an endless run costs the same for ever

void tell(const std::string& line)
{
    std::string whole = line + '\n';
    // Another call than those of a save, so that a failing write() leaves these lines alone.
    const iovec bytes{whole.data(), whole.size()};
    [[maybe_unused]] const ssize_t ignored = ::writev(STDOUT_FILENO, &bytes, 1);
}

class Writer final
{
public:
    explicit Writer(const std::string& folder)
        : m_defaults(folder + "/config", m_files)
        , m_preferences(disk())
        , m_timer(disk())
        , m_details(folder + "/data/session-details-v1.json", {m_files, m_thread, m_scheduler, m_clock})
        , m_history({folder + "/data/sessions-v1.json", {}}, {m_files, m_thread, m_scheduler, m_clock})
    {
        // What could only be read later is looked at then, too: it may be damaged.
        m_timer.setObserver({[](const auto& /*stored*/) {},
                             [](const auto& /*error*/) {
                             }});
        m_preferences.setWasReadObserver([](const auto& /*stored*/) {});
        m_choices = m_preferences.load();
        [[maybe_unused]] const auto ignored = m_timer.load();
    }

    void step(std::int64_t number)
    {
        insert(number, Uuid::random());
        if (number % 4 == 0) {
            // As after a crash between the record and the timer.
            const SessionRecord again = m_history.sessions().front();
            insert(again.interruptionCount, again.id);
        }
        if (number % 3 == 0 || m_history.sessions().size() > longestHistory) {
            removeOldest();
        }
        if (number % 2 == 1) {
            correctLatest(number);
        }
        SessionDetails details;
        details.pauses = {{Instant{Seconds{static_cast<double>(number)}}, Instant{Seconds{9e9}}}};
        tell("about details " + std::to_string(number));
        m_details.set(m_detailed, details);
        m_detailsNumber = number;
        TimerSnapshot snapshot;
        snapshot.runState = TimerRunState::paused;
        snapshot.interruptionCount = number;
        tell("about timer " + std::to_string(number));
        [[maybe_unused]] const auto timer = m_timer.save(snapshot);
        m_timerNumber = number;
        if (number % 2 == 0) {
            m_choices.timerSettings.focusDuration = Seconds{static_cast<double>(number)};
            tell("about preferences " + std::to_string(number));
            [[maybe_unused]] const auto preferences = m_preferences.save(m_choices);
            m_preferencesNumber = number;
        }
        m_scheduler.advance(Seconds{10.0});
        tellWhatIsSaved();
    }

    void tryOnceMore()
    {
        m_scheduler.advance(RetryTimer::longestDelay * 2.0);
        const bool isSaved =
            m_history.isSaved() && m_details.isSaved() && m_timer.isSaved() && m_preferences.isSaved();
        tell(isSaved ? "saved by itself" : "left over");
        m_history.retry(HistoryFile::Patience::ended);
        m_details.retry();
        m_timer.retry();
        m_preferences.retry();
        tellWhatIsSaved();
    }

private:
    DocumentDisk disk() { return {m_defaults, m_thread, m_scheduler, m_clock}; }

    static FinishedSession session(std::int64_t number, Uuid id)
    {
        FinishedSession session;
        session.id = id;
        session.startedAt = Instant{Seconds{8e8 + static_cast<double>(number)}};
        session.endedAt = session.startedAt + Seconds{1500.0};
        session.scheduledEndAt = session.endedAt + Seconds{0.5};
        session.phase = TimerPhase::longBreak;
        session.outcome = SessionOutcome::completedWhileAway;
        session.completedWhileAway = true;
        session.plannedDuration = Seconds{10'000.5 + static_cast<double>(number)};
        session.effectiveDuration = Seconds{20'000.25 + static_cast<double>(number)};
        session.pauseDuration = Seconds{30'000.125 + static_cast<double>(number)};
        session.cycleIndex = 40'000 + number;
        session.timeZoneIdentifierAtStart = "Asia/Kathmandu";
        session.interruptionCount = number;
        session.intention = "record " + std::to_string(number);
        return session;
    }

    void insert(std::int64_t number, Uuid id)
    {
        const FinishedSession session = Writer::session(number, id);
        tell("about insert " + session.id.text() + ' ' + std::to_string(number));
        m_history.insert(session);
        if (m_history.isSaved()) {
            tell("saved history");
        }
    }

    // All of the record becomes that of another number, by an edit.
    void correctLatest(std::int64_t number)
    {
        if (!m_history.isLoaded() || m_history.sessions().empty()) {
            return;
        }
        const Uuid id = m_history.sessions().front().id;
        const std::int64_t corrected = number + correctedBy;
        tell("about change " + id.text() + ' ' + std::to_string(corrected));
        m_history.edit({}, {SessionRecord(session(corrected, id))});
        const auto& left = m_history.sessions();
        const auto found = std::find_if(left.begin(), left.end(),
                                        [&id](const SessionRecord& record) { return record.id == id; });
        if (found == left.end() || found->interruptionCount != corrected) {
            tell("unchanged " + id.text());
        } else if (m_history.isSaved()) {
            tell("saved history");
        }
    }

    void removeOldest()
    {
        if (!m_history.isLoaded() || m_history.sessions().empty()) {
            return;
        }
        const SessionRecord oldest = m_history.sessions().back();
        tell("about remove " + oldest.id.text());
        m_history.remove(oldest);
        const auto& left = m_history.sessions();
        if (std::any_of(left.begin(), left.end(),
                        [&](const auto& record) { return record.id == oldest.id; })) {
            tell("refused " + oldest.id.text());
        } else if (m_history.isSaved()) {
            tell("saved history");
        }
    }

    void tellWhatIsSaved()
    {
        if (m_timer.isSaved() && m_timerNumber > 0) {
            tell("saved timer " + std::to_string(m_timerNumber));
        }
        if (m_details.isSaved() && m_detailsNumber > 0) {
            tell("saved details " + std::to_string(m_detailsNumber));
        }
        if (m_preferences.isSaved() && m_preferencesNumber > 0) {
            tell("saved preferences " + std::to_string(m_preferencesNumber));
        }
        if (m_history.isLoaded() && m_history.isSaved()) {
            tell("saved history");
        }
    }

    PosixDurableFile m_files;
    FileUserDefaults m_defaults;
    test::FakeClock m_clock;
    test::FakeTaskScheduler m_scheduler{m_clock};
    test::FakeDocumentThread m_thread;
    PreferencesStore m_preferences;
    ActiveTimerPersistence m_timer;
    SessionDetailsStore m_details;
    SessionStore m_history;
    const Uuid m_detailed = *Uuid::fromText("00000000-0000-4000-8000-000000000001");
    AppPreferences m_choices;
    std::int64_t m_timerNumber = 0;
    std::int64_t m_preferencesNumber = 0;
    std::int64_t m_detailsNumber = 0;
};

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 4) {
        tell("document_writer: three arguments, FOLDER STEPS FIRST");
        return 2;
    }
    const std::string folder = arguments[1];
    const std::int64_t steps = std::atoll(arguments[2]);
    const std::int64_t first = std::atoll(arguments[3]);
    tell("ready");
    removeLeftovers(folder + "/data");
    removeLeftovers(folder + "/config");
    Writer writer(folder);
    for (std::int64_t number = first; steps == 0 || number < first + steps; ++number) {
        writer.step(number);
    }
    tell("waiting");
    char byte = 0;
    [[maybe_unused]] const ssize_t ignored = ::read(STDIN_FILENO, &byte, 1);
    writer.tryOnceMore();
    tell("end");
}
