#include "core/shortcut_action.h"

namespace brevlin {

namespace {

struct Meaning
{
    BilingualText title;
    std::optional<TimerVerb> verb;
};

constexpr std::array<Meaning, RawValues<ShortcutAction>::cases.size()> meanings{{
    {{"开始或暂停", "Start or pause"}, TimerVerb::toggle},
    {{"跳到下一阶段", "Skip to the next phase"}, TimerVerb::skip},
    {{"延长 5 分钟", "Add 5 minutes"}, TimerVerb::extend},
    {{"显示窗口", "Show the window"}, std::nullopt},
    {{"停止提醒声音", "Stop alert sound"}, TimerVerb::silence},
}};

const Meaning& meaningOf(ShortcutAction action)
{
    return meanings.at(static_cast<std::size_t>(action));
}

} // namespace

std::string_view title(ShortcutAction action, AppLanguage language)
{
    return meaningOf(action).title.in(language);
}

std::optional<TimerVerb> verbOf(ShortcutAction action)
{
    return meaningOf(action).verb;
}

std::string command(ShortcutAction action)
{
    const auto verb = verbOf(action);
    return "brevlin " + std::string(verb ? rawValue(*verb) : rawValue(action));
}

} // namespace brevlin
