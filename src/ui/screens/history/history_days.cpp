#include "ui/screens/history/history_days.h"

#include "core/time_text.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace brevlin {

namespace {

constexpr std::string_view rangeSign = " ～ ";

Seconds focusOf(const SessionRecord& record)
{
    const bool counts = record.phase() == TimerPhase::focus && record.effectiveDuration > Seconds{0.0};
    return counts ? record.effectiveDuration : Seconds{0.0};
}

} // namespace

HistoryDays::HistoryDays(const std::vector<SessionRecord>& records, const Calendar& calendar,
                         const HistoryFilter& filter)
{
    if (!filter.isEmpty()) {
        for (std::size_t index = 0; index < records.size(); ++index) {
            if (filter.matches(records[index], calendar)) {
                m_order.push_back(static_cast<std::uint32_t>(index));
            }
        }
        addAll(records, calendar);
        return;
    }
    // In one pass, for it is the memory of the records that takes the time.
    for (std::size_t row = 0; row < records.size(); ++row) {
        const LocalDay day = calendar.localDay(records[row].endedAt);
        if (!m_days.empty() && m_days.back().day < day) {
            m_order.resize(records.size());
            std::iota(m_order.begin(), m_order.end(), 0U);
            sortByDay(records, calendar);
            return;
        }
        add(day, row, records[row]);
    }
}

void HistoryDays::addAll(const std::vector<SessionRecord>& records, const Calendar& calendar)
{
    for (std::size_t row = 0; row < m_order.size(); ++row) {
        const LocalDay day = calendar.localDay(records[recordIndex(row)].endedAt);
        if (!m_days.empty() && m_days.back().day < day) {
            sortByDay(records, calendar);
            return;
        }
        add(day, row, records[recordIndex(row)]);
    }
}

// A zone that moved across the date line shows a date twice.
void HistoryDays::sortByDay(const std::vector<SessionRecord>& records, const Calendar& calendar)
{
    std::vector<std::pair<LocalDay, std::uint32_t>> days;
    days.reserve(m_order.size());
    for (const std::uint32_t index : m_order) {
        days.emplace_back(calendar.localDay(records[index].endedAt), index);
    }
    std::stable_sort(days.begin(), days.end(),
                     [](const auto& left, const auto& right) { return left.first > right.first; });
    m_days.clear();
    for (std::size_t row = 0; row < days.size(); ++row) {
        m_order[row] = days[row].second;
        add(days[row].first, row, records[days[row].second]);
    }
}

void HistoryDays::add(LocalDay day, std::size_t row, const SessionRecord& record)
{
    if (m_days.empty() || m_days.back().day != day) {
        m_days.push_back({day, row, 0, Seconds{0.0}});
    }
    ++m_days.back().count;
    m_days.back().focus += focusOf(record);
}

TimerPhase shownPhase(const SessionRecord& record)
{
    return record.phase().value_or(TimerPhase::shortBreak);
}

SessionOutcome shownOutcome(const SessionRecord& record)
{
    return record.outcome().value_or(SessionOutcome::skipped);
}

namespace {

void addMark(HistoryRowTexts& texts, const SessionDetails& details, AppLanguage language)
{
    texts.isQuestion =
        std::any_of(details.absences.begin(), details.absences.end(), [](const Absence& absence) {
            return absence.end && absence.decision == AbsenceDecision::undecided;
        });
    if (texts.isQuestion) {
        texts.mark = BilingualText{"离开过？", "Away?"}.in(language);
    } else if (details.asRecorded) {
        texts.mark = BilingualText{"已修改", "Corrected"}.in(language);
    }
}

} // namespace

HistoryRowTexts historyRowTexts(const SessionRecord& record, const SessionDetails& details,
                                const Calendar& calendar, AppLanguage language)
{
    constexpr std::string_view shortTime = "jm";
    HistoryRowTexts texts{std::string{title(shownPhase(record), language)},
                          std::string{title(shownOutcome(record), language)},
                          TimeText::duration(record.effectiveDuration, language),
                          calendar.text(shortTime, record.actualStartAt).append(rangeSign) +
                              calendar.text(shortTime, record.endedAt),
                          std::string{record.intention.view()},
                          {}};
    addMark(texts, details, language);
    return texts;
}

std::string historyDateText(const HistoryDay& day, const Calendar& calendar)
{
    return calendar.text("yMMMdEEEE", calendar.start(day.day));
}

std::string historySummaryText(const HistoryDay& day, AppLanguage language)
{
    const std::string focus = TimeText::duration(day.focus, language);
    return language == AppLanguage::english ? std::to_string(day.count) + " entries · " + focus + " focus"
                                            : std::to_string(day.count) + " 条 · 专注 " + focus;
}

std::string spokenHistoryRow(const HistoryRowTexts& texts, AppLanguage language)
{
    std::string time = texts.timeRange; // whose sign is not spoken, or strangely
    time.replace(time.find(rangeSign), rangeSign.size(), BilingualText{" 至 ", " to "}.in(language));
    const std::string comma{BilingualText{"，", ", "}.in(language)};
    std::string spoken = texts.phase + comma + time + comma + texts.duration + comma + texts.outcome;
    for (const std::string& more : {texts.intention, texts.mark}) {
        if (!more.empty()) {
            spoken += comma + more;
        }
    }
    return spoken;
}

std::string spokenHistoryDay(const HistoryDay& day, const Calendar& calendar, AppLanguage language)
{
    return historyDateText(day, calendar) + std::string{BilingualText{"，", ", "}.in(language)} +
           historySummaryText(day, language);
}

} // namespace brevlin
