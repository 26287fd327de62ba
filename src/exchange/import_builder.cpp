#include "exchange/import_builder.h"

#include "core/intention.h"
#include "exchange/instant_text.h"

#include <simdjson.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>

namespace brevlin {

namespace {

// Three hundred years: what is longer is a slip, and instants beyond it cannot be told.
constexpr Seconds longestLength{1e10};

} // namespace

ImportBuilder::ImportBuilder(std::span<const SessionRecord> history, const ImportOptions& options)
    : m_options(options)
{
    m_ids.reserve(history.size() * 2);
    m_times.reserve(history.size() * 2);
    for (const SessionRecord& record : history) {
        m_ids.insert(record.id);
        m_times.insert(timesOf(record));
    }
}

std::size_t ImportBuilder::Hash::operator()(const Times& times) const
{
    constexpr std::uint64_t odd = 0x9E37'79B9'7F4A'7C15;
    return std::hash<std::uint64_t>{}(static_cast<std::uint64_t>(times.start) * odd ^
                                      static_cast<std::uint64_t>(times.end));
}

std::size_t ImportBuilder::Hash::operator()(const Uuid& id) const
{
    return std::hash<std::string_view>{}({reinterpret_cast<const char*>(&id), sizeof id});
}

ImportBuilder::Times ImportBuilder::timesOf(const SessionRecord& record)
{
    return {nearestUnixSecond(record.actualStartAt), nearestUnixSecond(record.endedAt)};
}

std::optional<ImportProblem> ImportBuilder::problemOf(const SessionRecord& record) const
{
    for (const std::string_view text : {record.phaseRawValue.text(), record.outcomeRawValue.text(),
                                        record.intention.view(), record.timeZoneIdentifierAtStart.view()}) {
        if (!simdjson::validate_utf8(text.data(), text.size())) {
            return ImportProblem::malformed;
        }
    }
    for (const Seconds length : {record.effectiveDuration, record.plannedDuration, record.pauseDuration}) {
        if (!(std::abs(length.count()) < longestLength.count())) {
            return ImportProblem::notANumber;
        }
    }
    if (record.endedAt < record.actualStartAt) {
        return ImportProblem::endsBeforeStart;
    }
    return record.endedAt > m_options.now ? std::optional{ImportProblem::endsInFuture} : std::nullopt;
}

void ImportBuilder::take(SessionRecord record, SessionDetails details, std::size_t line, bool isKnownByTimes)
{
    const Times times = timesOf(record);
    if (m_ids.contains(record.id) || (isKnownByTimes && m_times.contains(times))) {
        ++m_plan.knownCount;
    } else if (const auto problem = problemOf(record)) {
        refuse(line, *problem);
    } else {
        m_ids.insert(record.id);
        m_times.insert(times);
        if (!details.isEmpty()) {
            m_plan.details.emplace(record.id, std::move(details));
        }
        m_plan.records.push_back(std::move(record));
    }
}

void ImportBuilder::add(SessionRecord record, SessionDetails details, std::size_t line)
{
    take(std::move(record), std::move(details), line, false);
}

void ImportBuilder::addNameless(SessionRecord record, std::size_t line)
{
    const Times times = timesOf(record);
    record.id = Uuid::named("brevlin " + std::to_string(times.start) + " " + std::to_string(times.end));
    take(std::move(record), {}, line, true);
}

void ImportBuilder::add(const ForeignInterval& interval, std::size_t line)
{
    SessionRecord record;
    record.id = Uuid::named(interval.name);
    record.actualStartAt = record.plannedStartAt = interval.start;
    record.endedAt = record.scheduledEndAt = interval.end;
    record.effectiveDuration = record.plannedDuration = interval.end - interval.start;
    record.intention = shared(interval.intention);
    record.timeZoneIdentifierAtStart = shared(m_options.zone->identifier());
    take(std::move(record), {}, line, true);
}

bool ImportBuilder::goesOn(std::size_t position, std::size_t size)
{
    constexpr std::size_t rowsBetween = 1000;
    return ++m_rows % rowsBetween != 0 || !m_options.progress ||
           m_options.progress(static_cast<double>(position) / static_cast<double>(size));
}

ImportPlan ImportBuilder::finish() &&
{
    // Ours come the other way round than they stand in the history, also those that end at the same instant.
    std::reverse(m_plan.records.begin(), m_plan.records.end());
    std::stable_sort(m_plan.records.begin(), m_plan.records.end(), endedLater);
    return std::move(m_plan);
}

std::string intentionWithTags(std::string_view text, std::span<const std::string> tags)
{
    std::string result(text);
    const auto append = [&result](std::string_view mark, std::string_view word) {
        result.append(result.empty() ? "" : " ").append(mark).append(word);
    };
    const bool isTold = !text.empty();
    const auto told = labels(text);
    for (const std::string& tag : tags) {
        const auto words = labels("#" + tag);
        const bool isWord = words.size() == 1 && words.front() == tag;
        if (isWord && std::find(told.begin(), told.end(), tag) == told.end()) {
            append("#", tag);
        } else if (!isWord && !isTold) {
            // A tag of several words is what people call the task.
            append("", tag);
        }
    }
    return result;
}

} // namespace brevlin
