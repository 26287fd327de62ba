#include "command/command_line.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <functional>
#include <utility>

namespace brevlin {

namespace {

constexpr BilingualText unknownArgument{"无法识别的参数", "unknown argument"};
constexpr BilingualText missingValue{"缺少参数值", "a value is missing"};
constexpr BilingualText invalidValue{"参数值无效", "not a valid value"};

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

/// One option of a command. Those with a value take it behind "=" or as the next argument.
struct Option
{
    std::string_view name;
    std::function<bool(std::string_view)> take; ///< false for a value that is none
    bool hasValue = true;
};

/// Gives what is wrong, if anything.
std::optional<UsageError> readOptions(std::span<const std::string> arguments,
                                      const std::vector<Option>& options,
                                      const std::function<bool(const std::string&)>& takeOther)
{
    bool areOver = false; // behind "--" all are names of files
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string& argument = arguments[index];
        if (areOver || !argument.starts_with("-") || argument == "-") {
            if (!takeOther(argument)) {
                return UsageError{unknownArgument, argument};
            }
            continue;
        }
        if (argument == "--") {
            areOver = true;
            continue;
        }
        const std::size_t equals = std::min(argument.find('='), argument.size());
        const auto option = std::find_if(options.begin(), options.end(), [&](const Option& candidate) {
            return candidate.name == argument.substr(0, equals);
        });
        if (option == options.end() || (!option->hasValue && equals < argument.size())) {
            return UsageError{unknownArgument, argument};
        }
        std::string value;
        if (option->hasValue && equals < argument.size()) {
            value = argument.substr(equals + 1);
        } else if (option->hasValue) {
            if (++index == arguments.size()) {
                return UsageError{missingValue, argument};
            }
            value = arguments[index];
        }
        if (!option->take(value)) {
            return UsageError{invalidValue,
                              option->hasValue ? argument.substr(0, equals) + " " + value : argument};
        }
    }
    return std::nullopt;
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
    return command.file.empty() ? Command{UsageError{missingValue, "FILE"}} : Command{command};
}

} // namespace

std::optional<Command> parseCommand(std::span<const std::string> arguments)
{
    const std::string first = arguments.empty() ? std::string() : arguments.front();
    const bool isCommand = first == "export" || first == "import";
    const auto rest = arguments.subspan(isCommand ? 1 : 0);
    const bool asksForHelp =
        std::any_of(rest.begin(), std::find(rest.begin(), rest.end(), "--"),
                    [](const std::string& each) { return each == "--help" || each == "-h"; });
    if (asksForHelp && (isCommand || arguments.size() == 1)) {
        return HelpCommand{};
    }
    if (!isCommand) {
        return std::nullopt;
    }
    return first == "export" ? parseExport(rest) : parseImport(rest);
}

std::string_view usage(AppLanguage language)
{
    static constexpr BilingualText text{
        R"(用法：
  brevlin
      启动 Brevlin；已在运行时显示其窗口。
  brevlin export [--format csv|json|ics|timewarrior] [--from 日期] [--to 日期]
                 [--phase focus|shortBreak|longBreak]… [--output 文件] [--byte-order-mark]
      导出历史记录，默认为 csv，写到标准输出。日期形如 2026-01-31，按本地日期，包含首尾两天。
      --byte-order-mark 让电子表格正确显示 csv 中的中文。
  brevlin import 文件 [--format csv|json|toggl|timewarrior] [--dry-run]
      导入 Brevlin 导出的 csv 或 json、Toggl 的 csv 或 Timewarrior 的 json。已有的记录不会重复添加。
      --dry-run 只显示会添加什么。
退出状态：0 成功，1 失败，2 用法错误。
)",
        R"(Usage:
  brevlin
      Starts the timer; where it runs already, shows its window.
  brevlin export [--format csv|json|ics|timewarrior] [--from DATE] [--to DATE]
                 [--phase focus|shortBreak|longBreak]… [--output FILE] [--byte-order-mark]
      Writes the history out, by default as csv to standard output. A DATE is a local one
      like 2026-01-31; both belong to the period. --byte-order-mark is for spreadsheets
      that take the csv for another encoding without it.
  brevlin import FILE [--format csv|json|toggl|timewarrior] [--dry-run]
      Adds what Brevlin has exported as csv or json, Toggl's csv or Timewarrior's json.
      What the history has already is not added again. --dry-run only tells what would be.
Exit status: 0 done, 1 failed, 2 wrong usage.
)"};
    return text.in(language);
}

AppLanguage messageLanguage()
{
    // The first that is set and not empty,
    // https://pubs.opengroup.org/onlinepubs/9699919799/basedefs/V1_chap08.html
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value != nullptr && *value != '\0') {
            return std::string_view{value}.starts_with("zh") ? AppLanguage::simplifiedChinese
                                                             : AppLanguage::english;
        }
    }
    return AppLanguage::english;
}

} // namespace brevlin
