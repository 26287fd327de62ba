#include "ui/screens/history/history_days.h"

#include "app/time_text.h"

#include <algorithm>
#include <numeric>

namespace brevlin {

namespace {

constexpr std::string_view rangeSign = " ～ ";

Seconds focusOf(const SessionRecord& record)
{
    const bool counts = record.phase() == TimerPhase::focus && record.effectiveDuration > Seconds{0.0};
    return counts ? record.effectiveDuration : Seconds{0.0};
}

} // namespace

HistoryDays::HistoryDays(const std::vector<SessionRecord>& records, const Calendar& calendar)
{
    // In one pass, for it is the memory of the records that takes the time.
    for (std::size_t row = 0; row < records.size(); ++row) {
        const LocalDay day = calendar.localDay(records[row].endedAt);
        if (!m_days.empty() && m_days.back().day < day) {
            sortByDay(records, calendar);
            return;
        }
        add(day, row, records[row]);
    }
}

// A zone that moved across the date line shows a date twice.
void HistoryDays::sortByDay(const std::vector<SessionRecord>& records, const Calendar& calendar)
{
    std::vector<LocalDay> days;
    days.reserve(records.size());
    for (const SessionRecord& record : records) {
        days.push_back(calendar.localDay(record.endedAt));
    }
    m_order.resize(records.size());
    std::iota(m_order.begin(), m_order.end(), 0U);
    std::stable_sort(m_order.begin(), m_order.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return days[a] > days[b]; });
    m_days.clear();
    for (std::size_t row = 0; row < records.size(); ++row) {
        add(days[recordIndex(row)], row, records[recordIndex(row)]);
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

HistoryRowTexts historyRowTexts(const SessionRecord& record, const Calendar& calendar, AppLanguage language)
{
    constexpr std::string_view shortTime = "jm";
    return {std::string{title(shownPhase(record), language)},
            std::string{title(shownOutcome(record), language)},
            TimeText::duration(record.effectiveDuration, language),
            calendar.text(shortTime, record.actualStartAt).append(rangeSign) +
                calendar.text(shortTime, record.endedAt)};
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
    return texts.phase + comma + time + comma + texts.duration + comma + texts.outcome;
}

std::string spokenHistoryDay(const HistoryDay& day, const Calendar& calendar, AppLanguage language)
{
    return historyDateText(day, calendar) + std::string{BilingualText{"，", ", "}.in(language)} +
           historySummaryText(day, language);
}

} // namespace brevlin
