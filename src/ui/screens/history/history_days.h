#pragma once

#include "core/calendar.h"
#include "core/language.h"
#include "core/session_details.h"
#include "core/session_record.h"
#include "ui/screens/history/history_filter.h"

#include <cstdint>
#include <string>
#include <vector>

namespace brevlin {

/// The records that ended on one date.
struct HistoryDay
{
    LocalDay day;
    std::size_t first = 0; ///< row of its latest record
    std::size_t count = 0;
    Seconds focus{0.0}; ///< of all its focus phases, whatever their outcome

    bool operator==(const HistoryDay&) const = default;
};

/// The history by dates, the latest first, and the records of a date by their end, the latest first. A row is
/// a record's place in that order. Holds no records: it belongs to the list that it was made of.
class HistoryDays final
{
public:
    HistoryDays() = default;
    /// `records` in the order of the model: latest end first. Only those that the filter lets through.
    HistoryDays(const std::vector<SessionRecord>& records, const Calendar& calendar,
                const HistoryFilter& filter = {});

    const std::vector<HistoryDay>& days() const { return m_days; }
    /// The place of a row's record in the model's list.
    std::size_t recordIndex(std::size_t row) const { return m_order.empty() ? row : m_order[row]; }

private:
    void sortByDay(const std::vector<SessionRecord>& records, const Calendar& calendar);
    void addAll(const std::vector<SessionRecord>& records, const Calendar& calendar);
    void add(LocalDay day, std::size_t row, const SessionRecord& record);

    std::vector<HistoryDay> m_days;
    std::vector<std::uint32_t> m_order; // empty where rows and records have the same order, as nearly always
};

/// What a row says, UTF-8.
struct HistoryRowTexts
{
    std::string phase;
    std::string outcome;
    std::string duration;
    std::string timeRange;
    std::string intention;   ///< empty for none
    std::string mark;        ///< what deserves a look, or was corrected; empty for nothing
    bool isQuestion = false; ///< the mark waits for an answer
};

/// The phase and outcome that a record is shown with, also where it holds strings of a later release.
TimerPhase shownPhase(const SessionRecord& record);
SessionOutcome shownOutcome(const SessionRecord& record);

/// The calendar has the locale of the language in all of these.
HistoryRowTexts historyRowTexts(const SessionRecord& record, const SessionDetails& details,
                                const Calendar& calendar, AppLanguage language);
std::string historyDateText(const HistoryDay& day, const Calendar& calendar);
std::string historySummaryText(const HistoryDay& day, AppLanguage language);
/// A row and a day's heading in one sentence, as they are read aloud.
std::string spokenHistoryRow(const HistoryRowTexts& texts, AppLanguage language);
std::string spokenHistoryDay(const HistoryDay& day, const Calendar& calendar, AppLanguage language);

} // namespace brevlin
