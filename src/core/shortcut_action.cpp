#include "core/shortcut_action.h"

namespace brevlin {

namespace {

struct Words
{
    BilingualText title;
    std::string_view command;
};

constexpr std::array<Words, RawValues<ShortcutAction>::cases.size()> words{{
    {{"开始或暂停", "Start or pause"}, "brevlin toggle"},
    {{"跳到下一阶段", "Skip to the next phase"}, "brevlin skip"},
    {{"延长 5 分钟", "Add 5 minutes"}, "brevlin extend"},
    {{"显示窗口", "Show the window"}, "brevlin show"},
    {{"停止提醒声音", "Stop alert sound"}, "brevlin silence"},
}};

} // namespace

std::string_view title(ShortcutAction action, AppLanguage language)
{
    return words.at(static_cast<std::size_t>(action)).title.in(language);
}

std::string_view command(ShortcutAction action)
{
    return words.at(static_cast<std::size_t>(action)).command;
}

} // namespace brevlin
