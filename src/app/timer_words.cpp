#include "app/timer_words.h"

namespace brevlin {

namespace {

constexpr BilingualText startVerb{"开始", "Start "};
constexpr BilingualText skipVerb{"跳过", "Skip "};

std::string withPhase(const BilingualText& verb, TimerPhase phase, AppLanguage language)
{
    return std::string(verb.in(language)) + std::string(title(phase, language));
}

} // namespace

std::string TimerWords::start(TimerPhase phase, AppLanguage language)
{
    return withPhase(startVerb, phase, language);
}

std::string TimerWords::skip(TimerPhase phase, AppLanguage language)
{
    return withPhase(skipVerb, phase, language);
}

std::string TimerWords::primaryAction(TimerPhase phase, TimerRunState state, AppLanguage language)
{
    switch (state) {
    case TimerRunState::running:
        return std::string(pause.in(language));
    case TimerRunState::paused:
        return std::string(resume.in(language));
    case TimerRunState::idle:
    case TimerRunState::ringing:
        break;
    }
    return start(phase, language);
}

} // namespace brevlin
