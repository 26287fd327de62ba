// Reads operations of the timer engine from the input and prints what each gave, for a second reading of the
// engine's rules to compare (engine.py). Numbers are hexadecimal floating point, texts hexadecimal UTF-8, "-"
// is an absent value.
//   new FOCUS SHORT LONG N BREAKS FOCUSES [13 fields of a snapshot]
//   settings FOCUS SHORT LONG N BREAKS FOCUSES
//   start NOW INTENTION, addTime NOW LENGTH, selectPhase PHASE, reconcile NOW AWAY, other operations NOW

#include "core/raw_value.h"
#include "core/timer_engine.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

using namespace brevlin;

namespace {

class Words final
{
public:
    explicit Words(const std::string& line) : m_stream(line) {}

    std::string text()
    {
        std::string word;
        m_stream >> word;
        return word;
    }
    bool isAtEnd() { return (m_stream >> std::ws).eof(); }
    double number() { return std::strtod(text().c_str(), nullptr); }
    std::int64_t integer() { return std::strtoll(text().c_str(), nullptr, 10); }
    bool flag() { return text() == "1"; }
    Seconds seconds() { return Seconds{number()}; }
    Instant instant() { return Instant{seconds()}; }
    template <typename T, typename Make>
    std::optional<T> optional(Make make)
    {
        const std::string word = text();
        return word == "-" ? std::nullopt : std::optional<T>{make(word)};
    }
    std::optional<Instant> optionalInstant()
    {
        return optional<Instant>(
            [](const std::string& word) { return Instant{Seconds{std::strtod(word.c_str(), nullptr)}}; });
    }
    std::optional<std::string> optionalText()
    {
        return optional<std::string>([](const std::string& word) {
            std::string bytes;
            for (std::size_t at = 1; at + 1 < word.size(); at += 2) { // behind an x, as it may be empty
                bytes.push_back(static_cast<char>(std::stoi(word.substr(at, 2), nullptr, 16)));
            }
            return bytes;
        });
    }

private:
    std::istringstream m_stream;
};

TimerSettings readSettings(Words& words)
{
    TimerSettings settings;
    settings.focusDuration = words.seconds();
    settings.shortBreakDuration = words.seconds();
    settings.longBreakDuration = words.seconds();
    settings.focusSessionsPerLongBreak = words.integer();
    settings.autoStartBreaks = words.flag();
    settings.autoStartFocus = words.flag();
    return settings.sanitized();
}

TimerSnapshot readSnapshot(Words& words)
{
    TimerSnapshot snapshot;
    snapshot.phase = *fromRawValue<TimerPhase>(words.text());
    snapshot.runState = *fromRawValue<TimerRunState>(words.text());
    snapshot.sessionID = words.optional<Uuid>([](const std::string& word) { return *Uuid::fromText(word); });
    snapshot.intention = words.optionalText();
    snapshot.startedAt = words.optionalInstant();
    snapshot.expectedEndAt = words.optionalInstant();
    snapshot.pausedAt = words.optionalInstant();
    snapshot.pausedRemainingSeconds = words.optional<Seconds>(
        [](const std::string& word) { return Seconds{std::strtod(word.c_str(), nullptr)}; });
    snapshot.plannedDuration = words.seconds();
    snapshot.accumulatedPauseSeconds = words.seconds();
    snapshot.interruptionCount = words.integer();
    snapshot.completedFocusCount = words.integer();
    snapshot.timeZoneIdentifierAtStart = words.optionalText();
    return snapshot;
}

TimerTransition perform(TimerEngine& engine, const std::string& operation, Words& words)
{
    if (operation == "settings") {
        return engine.updateSettings(readSettings(words));
    }
    if (operation == "selectPhase") {
        return engine.selectPhase(*fromRawValue<TimerPhase>(words.text()));
    }
    const Instant now = words.instant();
    if (operation == "start") {
        return engine.start(now, words.optionalText());
    }
    if (operation == "addTime") {
        return engine.addTime(words.seconds(), now);
    }
    if (operation == "reconcile") {
        return engine.reconcile(now, words.flag());
    }
    const std::vector<std::pair<std::string, TimerTransition (TimerEngine::*)(Instant)>> plain{
        {"pause", &TimerEngine::pause},       {"resume", &TimerEngine::resume},
        {"skip", &TimerEngine::skip},         {"reset", &TimerEngine::reset},
        {"endEarly", &TimerEngine::endEarly}, {"switchAndStart", &TimerEngine::switchAndStart},
        {"advance", &TimerEngine::advance},   {"skipPendingPhase", &TimerEngine::skipPendingPhase}};
    for (const auto& [name, member] : plain) {
        if (name == operation) {
            return (engine.*member)(now);
        }
    }
    std::abort();
}

std::string shown(double value)
{
    char text[64];
    std::snprintf(text, sizeof text, "%a", value);
    return text;
}
std::string shown(std::int64_t value)
{
    return std::to_string(value);
}
std::string shown(bool value)
{
    return value ? "1" : "0";
}
std::string shown(Seconds value)
{
    return shown(value.count());
}
std::string shown(Instant value)
{
    return shown(value.time_since_epoch());
}
std::string shown(const Uuid& value)
{
    return value.text();
}
std::string shown(const std::string& value)
{
    std::string text = "x";
    for (const char byte : value) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned>(static_cast<unsigned char>(byte)));
        text += digits;
    }
    return text;
}
template <typename E>
requires std::is_enum_v<E> std::string shown(E value)
{
    return std::string(rawValue(value));
}
template <typename T>
std::string shown(const std::optional<T>& value)
{
    return value ? shown(*value) : "-";
}

template <typename... Values>
void print(const Values&... values)
{
    ((std::cout << shown(values) << ' '), ...);
}

void print(const TimerTransition& transition)
{
    const TimerSnapshot& s = transition.snapshot;
    print(s.phase, s.runState, s.sessionID, s.intention, s.startedAt, s.expectedEndAt, s.pausedAt,
          s.pausedRemainingSeconds, s.plannedDuration, s.accumulatedPauseSeconds, s.interruptionCount,
          s.completedFocusCount, s.timeZoneIdentifierAtStart);
    if (const auto& f = transition.finishedSession) {
        print(f->id, f->phase, f->outcome, f->startedAt, f->scheduledEndAt, f->endedAt, f->plannedDuration,
              f->effectiveDuration, f->pauseDuration, f->cycleIndex, f->interruptionCount, f->intention,
              f->completedWhileAway, f->timeZoneIdentifierAtStart);
    }
    std::cout << '\n';
}

} // namespace

int main()
{
    std::ios::sync_with_stdio(false);
    std::optional<TimerEngine> engine;
    for (std::string line; std::getline(std::cin, line);) {
        Words words(line);
        const std::string operation = words.text();
        if (operation == "new") {
            const TimerSettings settings = readSettings(words);
            auto snapshot = words.isAtEnd() ? std::nullopt : std::optional{readSnapshot(words)};
            engine.emplace(settings, std::move(snapshot), [] { return "Europe/Berlin"; });
            print({engine->snapshot(), std::nullopt});
        } else {
            print(perform(*engine, operation, words));
        }
    }
}
