#pragma once

#include "core/calendar.h"
#include "core/language.h"
#include "core/session_details.h"

#include <string>

// What is said of the time that somebody was away. The calendar gives the form of the times.
namespace brevlin::AbsenceText {

/// "You were away from 9:12 to 9:40."
std::string statement(const DateInterval& away, const Calendar& calendar, AppLanguage language);
/// What follows the statement.
std::string question(AppLanguage language);
/// A button for the answer: "Keep", "Do not count", "End at 9:12"; empty for undecided.
std::string answer(AbsenceDecision decision, Instant start, const Calendar& calendar, AppLanguage language);
/// What the history says of an absence and its answer: "Away 9:12 – 9:40, not counted". Empty while it lasts.
std::string mark(const Absence& absence, const Calendar& calendar, AppLanguage language);

} // namespace brevlin::AbsenceText
