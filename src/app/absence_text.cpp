#include "app/absence_text.h"

#include <array>
#include <string_view>

namespace brevlin {

namespace {

// In the order of the decisions.
constexpr std::array<BilingualText, 3> marks{{
    {"，尚未回答", ", not answered yet"},
    {"，已计入", ", counted"},
    {"，未计入", ", not counted"},
}};

std::string filled(const BilingualText& text, AppLanguage language, const std::string& first,
                   const std::string& second = {})
{
    std::string result;
    for (const char c : text.in(language)) {
        if (c == '1') {
            result += first;
        } else if (c == '2') {
            result += second;
        } else {
            result += c;
        }
    }
    return result;
}

} // namespace

std::string AbsenceText::statement(const DateInterval& away, const Calendar& calendar, AppLanguage language)
{
    return filled({"你在 1 到 2 之间离开了。", "You were away from 1 to 2."}, language,
                  calendar.shortTimeText(away.start), calendar.shortTimeText(away.end));
}

std::string AbsenceText::question(AppLanguage language)
{
    return std::string{BilingualText{"这段时间算作专注吗？", "Does this time count as focus?"}.in(language)};
}

std::string AbsenceText::answer(AbsenceDecision decision, Instant start, const Calendar& calendar,
                                AppLanguage language)
{
    switch (decision) {
    case AbsenceDecision::undecided:
        break;
    case AbsenceDecision::keep:
        return std::string{BilingualText{"保留", "Keep"}.in(language)};
    case AbsenceDecision::doNotCount:
        return std::string{BilingualText{"不计入", "Do not count"}.in(language)};
    case AbsenceDecision::endAtStart:
        return filled({"在 1 结束", "End at 1"}, language, calendar.shortTimeText(start));
    }
    return {};
}

std::string AbsenceText::mark(const Absence& absence, const Calendar& calendar, AppLanguage language)
{
    if (!absence.end) {
        return {};
    }
    const std::string start = calendar.shortTimeText(absence.start);
    if (absence.decision == AbsenceDecision::endAtStart) {
        return filled({"1 离开，在那时结束", "Left at 1, ended then"}, language, start);
    }
    return filled({"1 – 2 离开", "Away 1 – 2"}, language, start, calendar.shortTimeText(*absence.end)) +
           std::string{marks.at(static_cast<std::size_t>(absence.decision)).in(language)};
}

} // namespace brevlin
