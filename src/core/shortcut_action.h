#pragma once

#include "core/language.h"
#include "core/raw_value.h"
#include "core/timer_verb.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace brevlin {

/// What a key does that is heard wherever the keyboard is.
enum class ShortcutAction { toggle, skip, addTime, show, silence };

std::string_view title(ShortcutAction action, AppLanguage language);
/// What it does to the timer; nothing for the one that does not touch it.
std::optional<TimerVerb> verbOf(ShortcutAction action);
/// What a desktop that gives programs no keys is told to run instead.
std::string command(ShortcutAction action);

/// The names by which desktops remember the user's keys.
template <>
struct RawValues<ShortcutAction>
{
    static constexpr std::array cases{
        RawValueCase<ShortcutAction>{ShortcutAction::toggle, "toggle"},
        RawValueCase<ShortcutAction>{ShortcutAction::skip, "skip"},
        RawValueCase<ShortcutAction>{ShortcutAction::addTime, "addTime"},
        RawValueCase<ShortcutAction>{ShortcutAction::show, "show"},
        RawValueCase<ShortcutAction>{ShortcutAction::silence, "silence"},
    };
};

/// A value for each action, in their order.
template <typename Value>
class ForEachShortcut final
{
public:
    Value& operator[](ShortcutAction action) { return m_values.at(static_cast<std::size_t>(action)); }
    const Value& operator[](ShortcutAction action) const
    {
        return m_values.at(static_cast<std::size_t>(action));
    }
    bool operator==(const ForEachShortcut&) const = default;

private:
    std::array<Value, RawValues<ShortcutAction>::cases.size()> m_values{};
};

} // namespace brevlin
