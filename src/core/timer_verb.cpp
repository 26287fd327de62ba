#include "core/timer_verb.h"

namespace brevlin {

namespace {

constexpr BilingualText runsAlready{"计时阶段已在进行。", "A phase is running already."};
constexpr BilingualText isPaused{"计时阶段已暂停，请使用 resume 继续。",
                                 "The phase is paused; \"resume\" goes on with it."};
constexpr BilingualText nothingRuns{"没有正在进行的计时阶段。", "No phase is running."};
constexpr BilingualText nothingIsPaused{"没有已暂停的计时阶段。", "No phase is paused."};
constexpr BilingualText nothingSounds{"没有正在播放的提示音。", "No alert is sounding."};

} // namespace

std::optional<BilingualText> refusal(TimerVerb verb, TimerRunState state, bool isAlertSounding)
{
    const bool runs = state == TimerRunState::running;
    const bool isActive = runs || state == TimerRunState::paused;
    const auto unless = [](bool applies, const BilingualText& reason) {
        return applies ? std::nullopt : std::optional{reason};
    };
    switch (verb) {
    case TimerVerb::start:
        return unless(!isActive, runs ? runsAlready : isPaused);
    case TimerVerb::pause:
        return unless(runs, nothingRuns);
    case TimerVerb::resume:
        return unless(state == TimerRunState::paused, runs ? runsAlready : nothingIsPaused);
    case TimerVerb::toggle:
        break;
    case TimerVerb::skip:
    case TimerVerb::stop:
        return unless(state != TimerRunState::idle, nothingRuns);
    case TimerVerb::extend:
        return unless(isActive, nothingRuns);
    case TimerVerb::silence:
        return unless(isAlertSounding, nothingSounds);
    }
    return std::nullopt;
}

} // namespace brevlin
