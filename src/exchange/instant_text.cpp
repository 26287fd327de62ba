#include "exchange/instant_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <utility>

namespace brevlin {

namespace {

using namespace std::chrono;

constexpr std::int64_t epoch = 978'307'200; // 2001-01-01, in Unix time
constexpr Seconds furthest{3.0e11};
constexpr int digitsOfOddYear = 5;

// A finite number as a whole number below it and the decimals of the rest.
struct Parts
{
    std::int64_t whole = 0;
    std::string decimals;
};

// Of a negative number the decimals count up from the whole number below it: what they lack to one.
void complement(std::string& decimals)
{
    for (char& digit : decimals) {
        digit = static_cast<char>('0' + '9' - digit);
    }
    decimals.back() = static_cast<char>(decimals.back() + 1); // the last one was no 0, so it was no 9 now
}

Parts split(double number)
{
    Parts parts;
    parts.whole = static_cast<std::int64_t>(std::floor(number));
    if (static_cast<double>(parts.whole) == number) {
        return parts;
    }
    std::array<char, 400> text{};
    const char* end =
        std::to_chars(text.data(), text.data() + text.size(), std::abs(number), std::chars_format::fixed).ptr;
    parts.decimals.assign(std::find(text.data(), static_cast<char*>(text.data() + text.size()), '.') + 1,
                          const_cast<char*>(end));
    if (number < 0) {
        complement(parts.decimals);
    }
    return parts;
}

double join(Parts parts)
{
    while (parts.decimals.ends_with('0')) {
        parts.decimals.pop_back();
    }
    if (parts.decimals.empty()) {
        return static_cast<double>(parts.whole);
    }
    const bool isNegative = parts.whole < 0;
    if (isNegative) {
        complement(parts.decimals);
        parts.whole = -(parts.whole + 1);
    }
    const std::string text = std::to_string(parts.whole) + "." + parts.decimals;
    double number = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return isNegative ? -number : number;
}

void appendNumber(std::string& text, std::int64_t number, std::size_t digits)
{
    std::array<char, 24> place{};
    const auto end = std::to_chars(place.data(), place.data() + place.size(), number).ptr;
    const auto length = static_cast<std::size_t>(end - place.data());
    text.append(length < digits ? digits - length : 0, '0').append(place.data(), length);
}

// The date and, behind the separator, the time, with these marks between their parts.
void appendDateTime(std::string& text, std::int64_t wallClock, std::string_view dateMark,
                    std::string_view timeMark)
{
    const sys_seconds instant{seconds{wallClock}};
    const auto day = floor<days>(instant);
    const year_month_day date{day};
    const int year = static_cast<int>(date.year());
    if (year >= 0 && year <= 9999) {
        appendNumber(text, year, 4);
    } else {
        text += year < 0 ? '-' : '+';
        appendNumber(text, std::abs(year), digitsOfOddYear);
    }
    text += dateMark;
    appendNumber(text, static_cast<unsigned>(date.month()), 2);
    text += dateMark;
    appendNumber(text, static_cast<unsigned>(date.day()), 2);
    text += 'T';
    const hh_mm_ss time{instant - day};
    appendNumber(text, time.hours().count(), 2);
    text += timeMark;
    appendNumber(text, time.minutes().count(), 2);
    text += timeMark;
    appendNumber(text, time.seconds().count(), 2);
}

/// Takes one part of a text after the other; the first that is not there makes all of it fail.
class TextScanner final
{
public:
    explicit TextScanner(std::string_view text) : m_rest(text) {}

    bool take(char character)
    {
        const bool isThere = m_rest.starts_with(character);
        m_rest.remove_prefix(isThere ? 1 : 0);
        return isThere;
    }
    bool takeOneOf(std::string_view characters)
    {
        const bool isThere = !m_rest.empty() && characters.find(m_rest.front()) != std::string_view::npos;
        m_rest.remove_prefix(isThere ? 1 : 0);
        return isThere;
    }
    int number(std::size_t digits)
    {
        const std::string_view taken = m_rest.substr(0, digits);
        int result = 0;
        m_isGood =
            m_isGood && taken.size() == digits &&
            std::all_of(taken.begin(), taken.end(), [](char digit) { return digit >= '0' && digit <= '9'; });
        if (m_isGood) {
            std::from_chars(taken.data(), taken.data() + taken.size(), result);
            m_rest.remove_prefix(digits);
        }
        return result;
    }
    std::string_view digits()
    {
        const std::string_view taken = m_rest.substr(0, m_rest.find_first_not_of("0123456789"));
        m_rest.remove_prefix(taken.size());
        return taken;
    }
    void require(bool condition) { m_isGood = m_isGood && condition; }
    bool isGood() const { return m_isGood; }
    bool isAtEnd() const { return m_rest.empty(); }

private:
    std::string_view m_rest;
    bool m_isGood = true;
};

// Unix seconds of the date.
std::int64_t scanDate(TextScanner& text, bool& isExtended)
{
    const bool isBefore = text.take('-');
    const int year = text.number(isBefore || text.take('+') ? digitsOfOddYear : 4);
    isExtended = text.take('-');
    const int monthNumber = text.number(2);
    text.require(!isExtended || text.take('-'));
    const int dayNumber = text.number(2);
    const year_month_day date{std::chrono::year{isBefore ? -year : year},
                              month{static_cast<unsigned>(monthNumber)},
                              day{static_cast<unsigned>(dayNumber)}};
    constexpr int lastYear = 12'000; // beyond what is written
    text.require(year < lastYear && date.ok());
    return text.isGood() ? duration_cast<seconds>(sys_days{date}.time_since_epoch()).count() : 0;
}

std::int64_t scanTime(TextScanner& text, bool isExtended, std::string& decimals)
{
    const int hour = text.number(2);
    text.require(!isExtended || text.take(':'));
    const int minute = text.number(2);
    const bool hasSeconds = !isExtended || text.take(':');
    const int second = hasSeconds ? text.number(2) : 0;
    if (hasSeconds && text.takeOneOf(".,")) {
        decimals = text.digits();
        text.require(!decimals.empty());
    }
    text.require(hour < 24 && minute < 60 && second <= 60); // a leap second is the next one
    return hour * 3600 + minute * 60 + second;
}

std::int64_t scanOffset(TextScanner& text)
{
    if (text.takeOneOf("Zz")) {
        return 0;
    }
    const bool isBehind = text.take('-');
    text.require(isBehind || text.take('+'));
    const int hour = text.number(2);
    const bool hasMinutes = text.take(':') || !text.isAtEnd();
    const int minute = hasMinutes ? text.number(2) : 0;
    text.require(hour < 24 && minute < 60);
    const int ahead = hour * 3600 + minute * 60;
    return isBehind ? -ahead : ahead;
}

} // namespace

const TimeZoneRules& ZoneBook::zone(std::string_view identifier)
{
    const auto known = m_zones.find(identifier);
    if (known != m_zones.end()) {
        return *known->second;
    }
    TimeZone found = m_lookup(std::string(identifier));
    if (!found) {
        found = std::make_shared<const TimeZoneRules>();
    }
    return *m_zones.emplace(identifier, std::move(found)).first->second;
}

void appendInstant(std::string& text, Instant instant, const TimeZoneRules& zone)
{
    const Parts parts = split(std::clamp(instant.time_since_epoch(), -furthest, furthest).count());
    const std::int64_t unixSecond = parts.whole + epoch;
    // Offsets of old times have seconds, which the form does not.
    const std::int64_t minutes = zone.stretch(seconds{unixSecond}).offset.count() / 60;
    appendDateTime(text, unixSecond + minutes * 60, "-", ":");
    if (!parts.decimals.empty()) {
        text.append(1, '.').append(parts.decimals);
    }
    text += minutes < 0 ? '-' : '+';
    appendNumber(text, std::abs(minutes) / 60, 2);
    text += ':';
    appendNumber(text, std::abs(minutes) % 60, 2);
}

std::optional<Instant> instantFromText(std::string_view text)
{
    TextScanner scanner(text);
    bool isExtended = false;
    Parts parts;
    parts.whole = scanDate(scanner, isExtended);
    scanner.require(scanner.takeOneOf("Tt "));
    parts.whole += scanTime(scanner, isExtended, parts.decimals);
    parts.whole -= scanOffset(scanner) + epoch;
    scanner.require(std::abs(static_cast<double>(parts.whole)) < furthest.count());
    return scanner.isGood() && scanner.isAtEnd() ? std::optional{Instant{Seconds{join(std::move(parts))}}}
                                                 : std::nullopt;
}

std::int64_t nearestUnixSecond(Instant instant)
{
    return std::llround(std::clamp(unixTime(instant), -furthest, furthest).count());
}

void appendUtcSecond(std::string& text, std::int64_t unixSecond)
{
    appendDateTime(text, unixSecond, "", "");
    text += 'Z';
}

} // namespace brevlin
