#include "exchange/csv_table.h"
#include "exchange/import_builder.h"

#include <algorithm>
#include <array>
#include <chrono>

namespace brevlin {

namespace {

using LocalTime = std::chrono::local_seconds;

// Year first, or, behind dots, last. Of 01/02/2026 nobody can say which month it is.
std::optional<LocalTime> localDate(std::string_view text)
{
    std::array<unsigned, 3> parts{};
    const bool isYearLast = text.find('.') != std::string_view::npos;
    std::size_t at = 0;
    for (unsigned& part : parts) {
        const std::size_t end = std::min(text.find_first_of("-/.", at), text.size());
        if (at > text.size() || end == at || !readNumber(text.substr(at, end - at), part)) {
            return std::nullopt;
        }
        at = end + 1;
    }
    const unsigned year = isYearLast ? parts[2] : parts[0];
    const std::chrono::year_month_day date{std::chrono::year{static_cast<int>(year)},
                                           std::chrono::month{parts[1]},
                                           std::chrono::day{isYearLast ? parts[0] : parts[2]}};
    constexpr unsigned firstYear = 1000;
    constexpr unsigned lastYear = 9999;
    return at == text.size() + 1 && year >= firstYear && year <= lastYear && date.ok()
               ? std::optional{LocalTime{std::chrono::local_days{date}}}
               : std::nullopt;
}

// 9:05, 09:05:00 and 9:05:00 PM.
std::optional<std::chrono::seconds> timeOfDay(std::string_view cell)
{
    const std::string text = lowerCase(trimmed(cell));
    const bool isMorning = text.ends_with("am");
    const bool isEvening = text.ends_with("pm");
    const std::string_view digits =
        trimmed(std::string_view{text}.substr(0, text.size() - (isMorning || isEvening ? 2 : 0)));
    std::array<unsigned, 3> parts{};
    std::size_t at = 0;
    std::size_t count = 0;
    while (at <= digits.size() && count < parts.size()) {
        const std::size_t end = std::min(digits.find(':', at), digits.size());
        if (end == at || !readNumber(digits.substr(at, end - at), parts[count++])) {
            return std::nullopt;
        }
        at = end + 1;
    }
    constexpr unsigned half = 12;
    if (isMorning || isEvening) {
        if (parts[0] == 0 || parts[0] > half) {
            return std::nullopt;
        }
        parts[0] = parts[0] % half + (isEvening ? half : 0);
    }
    return at == digits.size() + 1 && count >= 2 && parts[0] < 24 && parts[1] < 60 && parts[2] < 60
               ? std::optional{std::chrono::hours{parts[0]} + std::chrono::minutes{parts[1]} +
                               std::chrono::seconds{parts[2]}}
               : std::nullopt;
}

std::optional<LocalTime> localTime(std::string_view date, std::string_view time)
{
    const auto day = localDate(trimmed(date));
    const auto second = timeOfDay(time);
    return day && second ? std::optional{*day + *second} : std::nullopt;
}

// Where the clock goes back, an end may be in the second of two equal hours, after the change.
std::chrono::seconds endOf(LocalTime local, std::chrono::seconds start, const TimeZoneRules& zone)
{
    const std::chrono::seconds first = zone.resolve(local.time_since_epoch());
    const TimeZoneRules::Stretch before = zone.stretch(first);
    if (first >= start || before.end == std::chrono::seconds::max()) {
        return first;
    }
    const std::chrono::seconds second = local.time_since_epoch() - zone.stretch(before.end).offset;
    return second >= before.end && second >= start ? second : first;
}

// Tags stand in one cell.
std::vector<std::string> tagsOf(std::string_view project, std::string_view tags)
{
    std::vector<std::string> result;
    for (std::string_view rest : {project, tags}) {
        while (!rest.empty()) {
            const std::string_view tag = rest.substr(0, rest.find(','));
            rest.remove_prefix(std::min(rest.size(), tag.size() + 1));
            if (!trimmed(tag).empty()) {
                result.emplace_back(trimmed(tag));
            }
        }
    }
    return result;
}

void readTogglRow(const CsvTable& table, ImportBuilder& builder)
{
    const std::string_view endDate = table.cell({"end date", "stop date"});
    const std::string_view endTime = table.cell({"end time", "stop time"});
    const auto start = localTime(table.cell({"start date"}), table.cell({"start time"}));
    const auto end = localTime(endDate, endTime);
    if (!start || !end) {
        const bool runs = start && trimmed(endDate).empty() && trimmed(endTime).empty();
        builder.refuse(table.line(), runs ? ImportProblem::stillRuns : ImportProblem::notADate);
        return;
    }
    const TimeZoneRules& zone = *builder.zone();
    const std::chrono::seconds startSecond = zone.resolve(start->time_since_epoch());
    const std::chrono::seconds endSecond = endOf(*end, startSecond, zone);
    builder.add(ForeignInterval{instantFromUnixTime(startSecond), instantFromUnixTime(endSecond),
                                intentionWithTags(table.cell({"description"}),
                                                  tagsOf(table.cell({"project"}), table.cell({"tags"}))),
                                "toggl " + std::to_string(start->time_since_epoch().count()) + " " +
                                    std::to_string(end->time_since_epoch().count())},
                table.line());
}

} // namespace

bool readToggl(std::string_view text, ImportBuilder& builder)
{
    return readRows(text, builder, readTogglRow);
}

} // namespace brevlin
