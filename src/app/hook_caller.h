#pragma once

#include "core/hook_event.h"
#include "core/timer_snapshot.h"
#include "platform/document_thread.h"
#include "platform/hook_programs.h"

#include <QObject>

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

namespace brevlin {

class AppModel;

/// A run of one of the user's programs, or a word about those that did not run.
struct HookRecord
{
    enum class Kind {
        run,
        leftOut ///< too many were waiting already
    };

    Kind kind = Kind::run;
    Instant at;        ///< when it was over
    HookResult result; ///< of what was left out its event alone
};

/// What it works with. The thread is asked for when there is something to run.
struct HookParts
{
    std::shared_ptr<HookPrograms> programs; ///< which the thread still has where it is late
    std::function<DocumentThread&()> thread;
};

/// Tells the user's programs of every transition of the timer, in the order of the transitions and never in
/// its way, and remembers how the last of them ended.
class HookCaller final : public QObject
{
    Q_OBJECT

public:
    static constexpr std::size_t mostWaiting = 32; ///< events
    static constexpr std::size_t mostRecords = 20;

    HookCaller(AppModel& model, HookParts parts, QObject* parent = nullptr);
    ~HookCaller() override;

    const std::string& folder() const { return m_parts.programs->folder(); }
    /// Latest first.
    const std::deque<HookRecord>& records() const { return m_records; }

Q_SIGNALS:
    void recordsChanged();

private:
    void tell();
    void call(const HookOccasion& occasion);
    void take(const std::vector<HookResult>& results);
    void add(HookRecord record);

    AppModel& m_model;
    HookParts m_parts;
    TimerSnapshot m_last;
    std::optional<FinishedSession> m_finished; // of the transition that is taking effect
    std::size_t m_waiting = 0;
    std::deque<HookRecord> m_records;
    std::shared_ptr<bool> m_lives = std::make_shared<bool>(true); // for what comes back from the thread
};

} // namespace brevlin
