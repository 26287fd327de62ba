#include "ui/screens/history/history_filter.h"

#include "core/intention.h"

#include <algorithm>
#include <charconv>

namespace brevlin {

namespace {

constexpr std::array<std::string_view, 2> openingMarks{"\"", "“"};
constexpr std::array<std::string_view, 2> closingMarks{"\"", "”"};

bool containsLabel(std::string_view intention, const std::string& wanted)
{
    const auto all = labels(intention);
    return std::any_of(all.begin(), all.end(),
                       [&wanted](const std::string& label) { return foldedCase(label).starts_with(wanted); });
}

bool hasLabel(std::string_view intention, const std::string& wanted)
{
    const auto all = labels(intention);
    return wanted.empty() ? all.empty()
                          : std::any_of(all.begin(), all.end(), [&wanted](const std::string& label) {
                                return foldedCase(label) == wanted;
                            });
}

std::optional<std::string_view> betweenQuotes(std::string_view text)
{
    for (std::size_t mark = 0; mark < openingMarks.size(); ++mark) {
        if (text.size() >= openingMarks[mark].size() + closingMarks[mark].size() &&
            text.starts_with(openingMarks[mark]) && text.ends_with(closingMarks[mark])) {
            text.remove_prefix(openingMarks[mark].size());
            text.remove_suffix(closingMarks[mark].size());
            return text;
        }
    }
    return std::nullopt;
}

} // namespace

HistoryFilter::HistoryFilter(std::string_view text)
{
    const std::string typed = typedIntention(text, text.size());
    if (const auto exact = betweenQuotes(typed)) {
        m_exact = std::string(*exact);
        return;
    }
    std::string_view rest = typed;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(' '), rest.size());
        if (end > 0) {
            add(rest.substr(0, end));
        }
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

void HistoryFilter::add(std::string_view word)
{
    constexpr std::string_view fullWidthSign = "＃";
    if (const auto date = dateOf(word)) {
        m_dates.push_back(*date);
    } else if (const auto label = word.starts_with('#') ? betweenQuotes(word.substr(1)) : std::nullopt) {
        m_label = foldedCase(*label);
    } else if (word.size() > 1 && word.front() == '#') {
        m_labels.push_back(foldedCase(word.substr(1)));
    } else if (word.size() > fullWidthSign.size() && word.starts_with(fullWidthSign)) {
        m_labels.push_back(foldedCase(word.substr(fullWidthSign.size())));
    } else {
        m_words.push_back(foldedCase(word));
    }
}

// A number alone is no year: it may well be part of what was done.
std::optional<HistoryFilter::Date> HistoryFilter::dateOf(std::string_view word)
{
    std::vector<unsigned> numbers;
    while (!word.empty()) {
        unsigned number = 0;
        const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number);
        if (error != std::errc{} || numbers.size() == 3) {
            return std::nullopt;
        }
        word.remove_prefix(static_cast<std::size_t>(end - word.data()));
        numbers.push_back(number);
        bool isSeparated = word.empty();
        for (const std::string_view separator : {"-", "/", ".", "年", "月", "日"}) {
            if (word.starts_with(separator)) {
                word.remove_prefix(separator.size());
                isSeparated = true;
                break;
            }
        }
        if (!isSeparated) {
            return std::nullopt;
        }
    }
    const bool isDate = numbers.size() >= 2 && numbers[0] >= 1000 && numbers[0] <= 9999 && numbers[1] >= 1 &&
                        numbers[1] <= 12 && (numbers.size() < 3 || (numbers[2] >= 1 && numbers[2] <= 31));
    if (!isDate) {
        return std::nullopt;
    }
    return Date{static_cast<int>(numbers[0]), numbers[1],
                numbers.size() == 3 ? std::optional{numbers[2]} : std::nullopt};
}

bool HistoryFilter::matches(const SessionRecord& record, const Calendar& calendar) const
{
    const std::string_view intention = record.intention.view();
    if (m_exact && intention != *m_exact) {
        return false;
    }
    if (m_label && !hasLabel(intention, *m_label)) {
        return false;
    }
    if (!m_words.empty()) {
        const std::string text = foldedCase(intention);
        if (!std::all_of(m_words.begin(), m_words.end(),
                         [&text](const std::string& word) { return text.find(word) != std::string::npos; })) {
            return false;
        }
    }
    if (!std::all_of(m_labels.begin(), m_labels.end(),
                     [intention](const std::string& label) { return containsLabel(intention, label); })) {
        return false;
    }
    if (m_dates.empty()) {
        return true;
    }
    const std::chrono::year_month_day date{calendar.localDay(record.endedAt)};
    return std::all_of(m_dates.begin(), m_dates.end(), [&date](const Date& wanted) {
        return static_cast<int>(date.year()) == wanted.year &&
               wanted.month.value_or(static_cast<unsigned>(date.month())) ==
                   static_cast<unsigned>(date.month()) &&
               wanted.day.value_or(static_cast<unsigned>(date.day())) == static_cast<unsigned>(date.day());
    });
}

} // namespace brevlin
