#include "exchange/csv_cells.h"
#include "exchange/csv_columns.h"
#include "exchange/import_builder.h"
#include "exchange/instant_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <utility>

namespace brevlin {

namespace {

std::string_view trimmed(std::string_view text)
{
    const std::size_t first = text.find_first_not_of(" \t");
    return first == std::string_view::npos ? std::string_view{}
                                           : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string lowerCase(std::string_view text)
{
    std::string result(text);
    for (char& character : result) {
        character =
            character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A')) : character;
    }
    return result;
}

/// The rows of a CSV, their cells by the names in its header.
class CsvTable final
{
public:
    explicit CsvTable(std::string_view text)
        : m_text(text.starts_with(byteOrderMark) ? text.substr(byteOrderMark.size()) : text)
        , m_reader(m_text, separatorOf(m_text))
    {
        if (m_reader.next(m_cells) && m_reader.isWellFormed()) {
            for (const std::string& cell : m_cells) {
                m_header.push_back(lowerCase(trimmed(cell)));
            }
        }
    }

    bool has(std::string_view column) const
    {
        return std::find(m_header.begin(), m_header.end(), column) != m_header.end();
    }
    bool next() { return m_reader.next(m_cells); }
    /// Whether each column has a cell, and no cell lacks a column.
    bool isWellFormed() const
    {
        return m_reader.isWellFormed() && m_cells.size() >= m_header.size() &&
               std::all_of(m_cells.begin() + static_cast<std::ptrdiff_t>(m_header.size()), m_cells.end(),
                           [](const std::string& cell) { return cell.empty(); });
    }
    /// Empty for a column that is not there; of several names the first that is.
    std::string_view cell(std::initializer_list<std::string_view> columns) const
    {
        for (const std::string_view column : columns) {
            const auto found = std::find(m_header.begin(), m_header.end(), column);
            if (found != m_header.end()) {
                return unguardedCell(m_cells[static_cast<std::size_t>(found - m_header.begin())]);
            }
        }
        return {};
    }
    std::size_t line() const { return m_reader.line(); }
    bool goesOn(ImportBuilder& builder) const { return builder.goesOn(m_reader.position(), m_text.size()); }

private:
    // Spreadsheets save with another one where the comma is the decimal mark.
    static char separatorOf(std::string_view text)
    {
        const std::string_view header = text.substr(0, text.find_first_of("\r\n"));
        constexpr std::string_view separators = ",;\t";
        return *std::max_element(separators.begin(), separators.end(), [header](char left, char right) {
            return std::count(header.begin(), header.end(), left) <
                   std::count(header.begin(), header.end(), right);
        });
    }

    std::string_view m_text;
    CsvReader m_reader;
    std::vector<std::string> m_cells;
    std::vector<std::string> m_header;
};

bool isOurs(const CsvTable& table)
{
    return table.has("start") && table.has("end");
}

bool isOfToggl(const CsvTable& table)
{
    return table.has("start date") && table.has("start time") &&
           (table.has("end date") || table.has("stop date")) &&
           (table.has("end time") || table.has("stop time"));
}

// An empty cell leaves the value as it is.
template <typename Number>
bool readNumber(std::string_view cell, Number& number)
{
    if (cell.empty()) {
        return true;
    }
    const auto [end, error] = std::from_chars(cell.data(), cell.data() + cell.size(), number);
    return error == std::errc() && end == cell.data() + cell.size();
}

bool readSeconds(std::string_view cell, Seconds& length)
{
    double number = length.count();
    const bool isNumber = readNumber(cell, number) && std::isfinite(number);
    length = Seconds{number};
    return isNumber;
}

void readOwnRow(const CsvTable& table, ImportBuilder& builder)
{
    SessionRecord record;
    const auto start = instantFromText(table.cell({"start"}));
    const auto end = instantFromText(table.cell({"end"}));
    const std::string_view idText = table.cell({"id"});
    const auto id = Uuid::fromText(idText);
    if (!start || !end || (!id && !idText.empty())) {
        builder.refuse(table.line(), start && end ? ImportProblem::notAnIdentifier : ImportProblem::notADate);
        return;
    }
    bool areNumbers = readSeconds(table.cell({"paused_seconds"}), record.pauseDuration);
    record.effectiveDuration = *end - *start - record.pauseDuration;
    areNumbers = readSeconds(table.cell({"effective_seconds"}), record.effectiveDuration) && areNumbers;
    record.plannedDuration = record.effectiveDuration;
    areNumbers = readSeconds(table.cell({"planned_seconds"}), record.plannedDuration) && areNumbers;
    areNumbers = readNumber(table.cell({"interruptions"}), record.interruptionCount) && areNumbers;
    if (!areNumbers) {
        builder.refuse(table.line(), ImportProblem::notANumber);
        return;
    }
    if (const std::string_view phase = table.cell({"phase"}); !phase.empty()) {
        record.phaseRawValue = StoredRawValue<TimerPhase>(phase);
    }
    if (const std::string_view outcome = table.cell({"outcome"}); !outcome.empty()) {
        record.outcomeRawValue = StoredRawValue<SessionOutcome>(outcome);
    }
    record.actualStartAt = record.plannedStartAt = *start;
    record.endedAt = *end;
    record.scheduledEndAt = *start + record.plannedDuration + record.pauseDuration;
    record.completedWhileAway = record.outcomeRawValue == SessionOutcome::completedWhileAway;
    record.intention = builder.shared(table.cell({"intention"}));
    const std::string_view zone = table.cell({"time_zone"});
    record.timeZoneIdentifierAtStart = builder.shared(zone.empty() ? builder.zone()->identifier() : zone);
    if (id) {
        record.id = *id;
        builder.add(std::move(record), {}, table.line());
    } else {
        builder.addNameless(std::move(record), table.line());
    }
}

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

template <typename ReadRow>
bool readRows(std::string_view text, ImportBuilder& builder, ReadRow readRow)
{
    CsvTable table(text);
    while (table.next()) {
        if (table.isWellFormed()) {
            readRow(table, builder);
        } else {
            builder.refuse(table.line(), ImportProblem::malformed);
        }
        if (!table.goesOn(builder)) {
            return false;
        }
    }
    return true;
}

} // namespace

std::optional<ImportFormat> csvFormat(std::string_view text)
{
    const CsvTable table(text);
    if (isOfToggl(table)) {
        return ImportFormat::toggl;
    }
    return isOurs(table) ? std::optional{ImportFormat::csv} : std::nullopt;
}

bool readCsv(std::string_view text, ImportBuilder& builder)
{
    return readRows(text, builder, readOwnRow);
}

bool readToggl(std::string_view text, ImportBuilder& builder)
{
    return readRows(text, builder, readTogglRow);
}

} // namespace brevlin
