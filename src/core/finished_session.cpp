#include "core/finished_session.h"

namespace brevlin {

std::optional<std::string> completionTitle(TimerPhase phase, SessionOutcome outcome, AppLanguage language)
{
    const std::string name{title(phase, language)};
    const bool english = language == AppLanguage::english;
    switch (outcome) {
    case SessionOutcome::completed:
    case SessionOutcome::completedWhileAway:
        return name + (english ? " complete" : "完成");
    case SessionOutcome::skipped:
        return (english ? "Skipped " : "已跳过") + name;
    case SessionOutcome::endedEarly:
        return english ? "Ended " + name + " early" : "已提前结束" + name;
    case SessionOutcome::reset:
    case SessionOutcome::switchedEarly:
        break;
    }
    return std::nullopt;
}

} // namespace brevlin
