#pragma once

#include "command/line/options.h"
#include "core/raw_value.h"
#include "core/timer_verb.h"

#include <array>
#include <optional>
#include <span>
#include <string>
#include <variant>

namespace brevlin {

/// How the status is written.
enum class StatusForm {
    sentence, ///< for people
    json,
    plain, ///< one line of text, for bars that take such
    waybar,
    i3blocks,
    i3statusRust,
};

template <>
struct RawValues<StatusForm>
{
    static constexpr std::array cases{
        RawValueCase<StatusForm>{StatusForm::sentence, "sentence"},
        RawValueCase<StatusForm>{StatusForm::json, "json"},
        RawValueCase<StatusForm>{StatusForm::plain, "plain"},
        RawValueCase<StatusForm>{StatusForm::waybar, "waybar"},
        RawValueCase<StatusForm>{StatusForm::i3blocks, "i3blocks"},
        RawValueCase<StatusForm>{StatusForm::i3statusRust, "i3status-rust"},
    };
};

struct VerbCommand
{
    TimerVerb verb = TimerVerb::start;
    std::optional<std::string> intention; ///< of a start alone
};

struct IntentionCommand
{
    std::string intention;
};

struct ShowCommand
{
    std::string section; ///< may be empty
};

struct QuitCommand
{};

struct StatusCommand
{
    StatusForm form = StatusForm::sentence;
    bool follows = false;
    bool isEverySecond = false;
};

struct HelpRequest
{};

struct VersionRequest
{};

using VerbLine = std::variant<VerbCommand, IntentionCommand, ShowCommand, QuitCommand, StatusCommand,
                              HelpRequest, VersionRequest, UsageError>;

/// What the arguments behind the program's name ask for.
VerbLine parseVerbLine(std::span<const std::string> arguments);

} // namespace brevlin
