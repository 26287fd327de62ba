#include "app/app_model.h"
#include "core/time_text.h"

#include <algorithm>

namespace brevlin {

double AppModel::progress() const
{
    const Seconds planned = m_snapshot.plannedDuration;
    if (!m_snapshot.isActive() || planned <= Seconds::zero()) {
        return 0.0;
    }
    return std::clamp(1.0 - m_remainingSeconds / planned, 0.0, 1.0);
}

std::string AppModel::menuBarTitle() const
{
    return m_snapshot.runState == TimerRunState::idle ? std::string{} : TimeText::clock(m_remainingSeconds);
}

bool AppModel::isEndPresented() const
{
    const TimerSettings& settings = m_preferences.timerSettings;
    const bool nextStartsByItself =
        m_snapshot.phase == TimerPhase::focus ? settings.autoStartBreaks : settings.autoStartFocus;
    return m_snapshot.runState == TimerRunState::ringing ||
           (m_snapshot.runState == TimerRunState::running && !nextStartsByItself);
}

std::int64_t AppModel::cyclePosition() const
{
    const std::int64_t length =
        std::max<std::int64_t>(m_preferences.timerSettings.focusSessionsPerLongBreak, 1);
    return std::max<std::int64_t>(m_snapshot.completedFocusCount, 0) % length + 1;
}

std::string AppModel::endTimeText() const
{
    const bool isKnown = m_snapshot.runState == TimerRunState::running && m_snapshot.expectedEndAt;
    return m_calendar.shortTimeText(isKnown ? *m_snapshot.expectedEndAt : now() + m_remainingSeconds);
}

StatisticsSummary AppModel::statistics() const
{
    return StatisticsCalculator::calculate(sessions(), m_parts.sessionStore->focusCounts(), now(),
                                           m_calendar);
}

std::int64_t AppModel::currentCycleFocusMinutes() const
{
    Seconds total{0.0};
    for (const SessionRecord& record : sessions()) {
        const auto outcome = record.outcome();
        if (record.phase() == TimerPhase::longBreak && outcome && isCompletion(*outcome)) {
            break;
        }
        if (record.phase() == TimerPhase::focus) {
            total += record.effectiveDuration;
        }
    }
    if (m_snapshot.phase == TimerPhase::focus && m_snapshot.isActive()) {
        total += std::max(m_snapshot.plannedDuration - m_remainingSeconds, Seconds::zero());
    }
    constexpr double limit = 9.0e18; // a damaged record may claim more than an integer can hold
    return static_cast<std::int64_t>(std::clamp(total.count() / 60.0, -limit, limit));
}

std::string AppModel::cycleSummaryText() const
{
    const std::string place = std::to_string(cyclePosition()) + "/" +
                              std::to_string(m_preferences.timerSettings.focusSessionsPerLongBreak);
    const std::string minutes = std::to_string(currentCycleFocusMinutes());
    return language() == AppLanguage::english ? "Cycle " + place + " · " + minutes + " focus min"
                                              : "循环第 " + place + " 阶段 · 已专注 " + minutes + " 分钟";
}

} // namespace brevlin
