#pragma once

#include "core/finished_session.h"
#include "core/timer_settings.h"
#include "core/timer_snapshot.h"

#include <string>

namespace brevlin::test {

enum class Operation {
    start,
    pause,
    resume,
    addTime,
    skip,
    reset,
    endEarly,
    switchAndStart,
    advance,
    skipPendingPhase,
    selectPhase,
    updateSettings,
    reconcile,
    reconcileAway,
};
inline constexpr int operationCount = 14;

/// What an operation is called with; each uses what it needs.
struct Arguments
{
    Instant now;
    std::optional<std::string> intention;
    Seconds length{0.0};
    TimerPhase phase = TimerPhase::focus;
    TimerSettings settings;
};

/// The timer's rules read a second time, as a table from (operation, state) to a row of effects, and slowly.
/// It shares no code with the engine. Identifiers are not its business: it gives every run the nil UUID.
class ReferenceEngine final
{
public:
    ReferenceEngine(const TimerSettings& settings, const TimerSnapshot& snapshot, std::string timeZone);

    TimerTransition perform(Operation operation, const Arguments& arguments);

private:
    void prepare(TimerPhase phase, TimerRunState state);
    void begin(const Arguments& arguments, bool takesIntention);
    std::optional<FinishedSession> finish(Instant now, bool away);
    FinishedSession session(SessionOutcome outcome, Instant endedAt,
                            std::optional<Instant> scheduledEndAt) const;

    TimerSettings m_settings;
    TimerSnapshot m_state;
    std::string m_timeZone;
};

} // namespace brevlin::test
