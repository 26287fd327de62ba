#include "command/command_line.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <utility>

namespace brevlin {

namespace {

std::optional<unsigned> digits(std::string_view text)
{
    unsigned number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional{number} : std::nullopt;
}

// 2026-01-31
std::optional<LocalDay> dateFromText(std::string_view text)
{
    if (text.size() != 10 || text[4] != '-' || text[7] != '-') {
        return std::nullopt;
    }
    const auto year = digits(text.substr(0, 4));
    const auto month = digits(text.substr(5, 2));
    const auto day = digits(text.substr(8));
    if (!year || !month || !day) {
        return std::nullopt;
    }
    const std::chrono::year_month_day date{std::chrono::year{static_cast<int>(*year)},
                                           std::chrono::month{*month}, std::chrono::day{*day}};
    return date.ok() ? std::optional{LocalDay{date}} : std::nullopt;
}

template <typename T>
std::function<bool(std::string_view)> into(std::optional<T>& place)
{
    return [&place](std::string_view text) {
        if constexpr (std::is_enum_v<T>) {
            place = fromRawValue<T>(text);
        } else {
            place = dateFromText(text);
        }
        return place.has_value();
    };
}

Command parseExport(std::span<const std::string> arguments)
{
    ExportCommand command;
    std::optional<ExportFormat> format;
    const auto error =
        readOptions(arguments,
                    {{"--format", into(format)},
                     {"--from", into(command.selection.first)},
                     {"--to", into(command.selection.last)},
                     {"--phase",
                      [&command](std::string_view text) {
                          const auto phase = fromRawValue<TimerPhase>(text);
                          command.selection.phases.push_back(phase.value_or(TimerPhase::focus));
                          return phase.has_value();
                      }},
                     {"--output",
                      [&command](std::string_view text) {
                          command.output = text;
                          return !text.empty();
                      }},
                     {"--byte-order-mark",
                      [&command](std::string_view) { return command.hasByteOrderMark = true; }, false}},
                    [](const std::string&) { return false; });
    command.format = format.value_or(ExportFormat::csv);
    if (command.output == "-") {
        command.output.reset();
    }
    const ExportSelection& chosen = command.selection;
    if (error) {
        return *error;
    }
    if (chosen.first && chosen.last && *chosen.last < *chosen.first) {
        return UsageError{{"结束日期早于开始日期", "ends before it starts"}, "--from … --to …"};
    }
    if (command.hasByteOrderMark && command.format != ExportFormat::csv) {
        return UsageError{{"只适用于 csv", "for csv alone"}, "--byte-order-mark"};
    }
    return command;
}

Command parseImport(std::span<const std::string> arguments)
{
    ImportCommand command;
    const auto error =
        readOptions(arguments,
                    {{"--format", into(command.format)},
                     {"--dry-run", [&command](std::string_view) { return command.isDryRun = true; }, false}},
                    [&command](const std::string& file) {
                        const bool isFirst = command.file.empty();
                        command.file = file;
                        return isFirst && !file.empty();
                    });
    if (error) {
        return *error;
    }
    return command.file.empty() ? Command{UsageError{usageProblem::missingValue, "FILE"}} : Command{command};
}

} // namespace

Command parseCommand(std::span<const std::string> arguments)
{
    const std::string first = arguments.empty() ? std::string() : arguments.front();
    if (first != "export" && first != "import") {
        return UsageError{usageProblem::unknownArgument, first};
    }
    const auto rest = arguments.subspan(1);
    if (asksForHelp(rest)) {
        return HelpCommand{};
    }
    return first == "export" ? parseExport(rest) : parseImport(rest);
}

} // namespace brevlin
