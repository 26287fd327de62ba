#include "app/timer_control.h"

#include "app/app_model.h"

#include <algorithm>

namespace brevlin::TimerControl {

TimerStatus status(const AppModel& model)
{
    const TimerSnapshot& snapshot = model.snapshot();
    TimerStatus status;
    status.phase = snapshot.phase;
    status.state = snapshot.runState;
    status.remaining = model.remainingSeconds();
    if (snapshot.runState == TimerRunState::running) {
        status.endsAt = snapshot.expectedEndAt;
    }
    status.planned = snapshot.plannedDuration;
    status.intention = model.intention();
    status.cyclePosition = model.cyclePosition();
    status.cycleLength = model.preferences().timerSettings.focusSessionsPerLongBreak;
    const DateInterval today = model.calendar().interval(CalendarUnit::day, model.now());
    for (const SessionRecord& record : StatisticsCalculator::endedWithin(model.sessions(), today)) {
        if (StatisticsCalculator::isCompletedFocus(record)) {
            status.focusToday += std::max(record.effectiveDuration, Seconds::zero());
            ++status.completedToday;
        }
    }
    return status;
}

std::optional<BilingualText> refusal(const AppModel& model, TimerVerb verb)
{
    return brevlin::refusal(verb, model.snapshot().runState, model.isAlertSoundPlaying());
}

Expected<void, BilingualText> carryOut(AppModel& model, TimerVerb verb)
{
    if (const auto reason = refusal(model, verb)) {
        return Unexpected{*reason};
    }
    const bool isRinging = model.snapshot().runState == TimerRunState::ringing;
    switch (verb) {
    case TimerVerb::start:
        isRinging ? model.advance() : model.start();
        break;
    case TimerVerb::pause:
        model.pause();
        break;
    case TimerVerb::resume:
        model.resume();
        break;
    case TimerVerb::toggle:
        model.performPrimaryAction();
        break;
    case TimerVerb::skip:
        isRinging ? model.skipPendingPhase() : model.switchToNextPhase();
        break;
    case TimerVerb::stop:
        isRinging ? model.dismissCompletion() : model.endCurrentPhase();
        break;
    case TimerVerb::extend:
        model.addFiveMinutes();
        break;
    case TimerVerb::silence:
        model.stopAlertSound();
        break;
    }
    return {};
}

} // namespace brevlin::TimerControl
