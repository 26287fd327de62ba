#include "command/verbs/verb_line.h"

#include <simdjson.h>

#include <algorithm>
#include <utility>

namespace brevlin {

namespace {

constexpr std::array<std::string_view, 4> sections{"focus", "history", "statistics", "settings"};

// The bus, and JSON, take no other texts.
bool isUtf8(std::string_view text)
{
    return simdjson::validate_utf8(text.data(), text.size());
}

bool takeNothing(const std::string& /*argument*/)
{
    return false;
}

/// Takes the one argument that stands alone.
auto onlyOne(std::optional<std::string>& place)
{
    return [&place](const std::string& argument) {
        return !std::exchange(place, argument).has_value();
    };
}

VerbLine parseVerb(TimerVerb verb, std::span<const std::string> arguments)
{
    VerbCommand command{verb, std::nullopt};
    std::vector<CommandOption> options;
    if (verb == TimerVerb::start) {
        options.push_back({"--intention", [&command](std::string_view text) {
                               command.intention = text;
                               return isUtf8(text);
                           }});
    }
    const auto error = readOptions(arguments, options, takeNothing);
    return error ? VerbLine{*error} : VerbLine{command};
}

VerbLine parseIntention(std::span<const std::string> arguments)
{
    std::optional<std::string> text;
    if (const auto error = readOptions(arguments, {}, onlyOne(text))) {
        return *error;
    }
    if (!text) {
        return UsageError{usageProblem::missingValue, "TEXT"};
    }
    return isUtf8(*text) ? VerbLine{IntentionCommand{*text}}
                         : VerbLine{UsageError{usageProblem::invalidValue, "TEXT"}};
}

VerbLine parseShow(std::span<const std::string> arguments)
{
    std::optional<std::string> section;
    if (const auto error = readOptions(arguments, {}, onlyOne(section))) {
        return *error;
    }
    if (section && std::find(sections.begin(), sections.end(), *section) == sections.end()) {
        return UsageError{usageProblem::invalidValue, *section};
    }
    return ShowCommand{section.value_or(std::string())};
}

VerbLine parseStatus(std::span<const std::string> arguments)
{
    std::optional<StatusForm> form;
    bool isJson = false;
    StatusCommand command;
    const std::vector<CommandOption> options{
        {"--json", [&isJson](std::string_view) { return isJson = true; }, false},
        {"--follow", [&command](std::string_view) { return command.follows = true; }, false},
        {"--every-second", [&command](std::string_view) { return command.isEverySecond = true; }, false},
        {"--format", [&form](std::string_view text) {
             form = fromRawValue<StatusForm>(text);
             return form && *form != StatusForm::sentence;
         }}};
    if (const auto error = readOptions(arguments, options, takeNothing)) {
        return *error;
    }
    if (isJson && form && *form != StatusForm::json) {
        return UsageError{{"不能同时使用", "not together"}, "--json --format"};
    }
    if (command.isEverySecond && !command.follows) {
        return UsageError{{"只能与 --follow 一起使用", "only with --follow"}, "--every-second"};
    }
    command.form = isJson ? StatusForm::json : form.value_or(StatusForm::sentence);
    return command;
}

} // namespace

VerbLine parseVerbLine(std::span<const std::string> arguments)
{
    if (arguments.empty()) {
        return HelpRequest{};
    }
    const std::string& word = arguments.front();
    if (word == "--version") {
        return arguments.size() == 1 ? VerbLine{VersionRequest{}}
                                     : VerbLine{UsageError{usageProblem::unknownArgument, arguments[1]}};
    }
    if (asksForHelp(arguments)) {
        return HelpRequest{};
    }
    const auto rest = arguments.subspan(1);
    if (const auto verb = fromRawValue<TimerVerb>(word)) {
        return parseVerb(*verb, rest);
    }
    if (word == "intention") {
        return parseIntention(rest);
    }
    if (word == "show") {
        return parseShow(rest);
    }
    if (word == "status") {
        return parseStatus(rest);
    }
    if (word == "quit") {
        const auto error = readOptions(rest, {}, takeNothing);
        return error ? VerbLine{*error} : VerbLine{QuitCommand{}};
    }
    return UsageError{usageProblem::unknownArgument, word};
}

} // namespace brevlin
