#pragma once

#include "exchange/history_import.h"
#include "storage/session_archive_scanner.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>

namespace brevlin {

/// An interval that another program recorded.
struct ForeignInterval
{
    Instant start;
    Instant end;
    std::string intention;
    std::string name; ///< what the file tells of start and end, with the program's name
};

/// Sorts rows into new, known and unreadable ones.
class ImportBuilder final
{
public:
    ImportBuilder(std::span<const SessionRecord> history, const ImportOptions& options);

    void add(SessionRecord record, SessionDetails details, std::size_t line);
    /// A record of ours that has lost its identifier.
    void addNameless(SessionRecord record, std::size_t line);
    void add(const ForeignInterval& interval, std::size_t line);
    void refuse(std::size_t line, ImportProblem problem) { m_plan.unreadable.push_back({line, problem}); }
    /// To be called after each row; false where the import is to end.
    bool goesOn(std::size_t position, std::size_t size);
    ImportPlan finish() &&;

    const TimeZone& zone() const { return m_options.zone; }
    SharedText shared(std::string_view text) { return m_pool.shared(text); }

private:
    // Start and end in whole seconds.
    struct Times
    {
        std::int64_t start;
        std::int64_t end;
        bool operator==(const Times&) const = default;
    };
    struct Hash
    {
        std::size_t operator()(const Times& times) const;
        std::size_t operator()(const Uuid& id) const;
    };

    static Times timesOf(const SessionRecord& record);
    std::optional<ImportProblem> problemOf(const SessionRecord& record) const;
    void take(SessionRecord record, SessionDetails details, std::size_t line, bool isKnownByTimes);

    const ImportOptions& m_options;
    ImportPlan m_plan;
    TextPool m_pool;
    std::unordered_set<Uuid, Hash> m_ids;
    std::unordered_set<Times, Hash> m_times;
    std::size_t m_rows = 0;
};

// Each gives false where the import is to end.
bool readCsv(std::string_view text, ImportBuilder& builder);
bool readToggl(std::string_view text, ImportBuilder& builder);
bool readJson(std::string_view text, ImportBuilder& builder);
bool readTimewarrior(std::string_view text, ImportBuilder& builder);

/// What form of CSV the text's header makes it, if any that we read.
std::optional<ImportFormat> csvFormat(std::string_view text);

/// The text and behind it, as labels, the tags that it has not. Without a text a tag that is no word is one.
std::string intentionWithTags(std::string_view text, std::span<const std::string> tags);

} // namespace brevlin
