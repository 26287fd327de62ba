// Whatever is written is read again as it was, field by field. The other targets begin with a text, and what
// a decoder loses is lost for them before they look.

#include "storage/app_preferences.h"
#include "storage/capsule_position.h"
#include "storage/session_archive.h"
#include "storage/snapshot_document.h"
#include "storage/stored_limits.h"
#include "support/record_differences.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

using namespace brevlin;

namespace {

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

class Values final
{
public:
    Values(const std::uint8_t* data, std::size_t size) : m_data(data, size) {}

    bool flag() { return m_data.ConsumeBool(); }
    std::int64_t count() { return m_data.ConsumeIntegralInRange(-largestStoredCount, largestStoredCount); }
    double number()
    {
        return m_data.ConsumeFloatingPointInRange(-longestStoredTime.count(), longestStoredTime.count());
    }
    Seconds seconds() { return Seconds{number()}; }
    Instant instant() { return Instant{seconds()}; }
    std::string text()
    {
        std::string result = m_data.ConsumeRandomLengthString(20);
        for (char& byte : result) {
            byte = static_cast<char>(byte & 0x7f); // invalid UTF-8 is refused
        }
        return result;
    }
    Uuid uuid()
    {
        std::string digits = "00000000-0000-4000-8000-000000000000";
        digits.at(0) = "0123456789ABCDEF"[m_data.ConsumeIntegralInRange(0, 15)];
        digits.at(35) = "0123456789ABCDEF"[m_data.ConsumeIntegralInRange(0, 15)];
        return *Uuid::fromText(digits);
    }
    template <typename E>
    E oneOf()
    {
        const auto& cases = RawValues<E>::cases;
        return cases.at(m_data.ConsumeIntegralInRange<std::size_t>(0, cases.size() - 1)).first;
    }
    template <typename Make>
    auto maybe(Make make) -> std::optional<decltype(make())>
    {
        return flag() ? std::optional{make()} : std::nullopt;
    }

private:
    FuzzedDataProvider m_data;
};

template <typename T>
void check(const T& value, Expected<T, DocumentError> (*decode)(const std::string&))
{
    const auto text = encode(value);
    require(bool(text));
    const auto again = decode(*text);
    require(again && *again == value);
}

SavedPosition position(Values& values)
{
    return {values.maybe([&] { return static_cast<std::uint32_t>(values.count()); }), values.number(),
            values.number(), values.maybe([&] { return values.count(); }),
            values.maybe([&] { return values.oneOf<HorizontalAnchor>(); })};
}

TimerSnapshot snapshot(Values& values)
{
    const auto instant = [&] {
        return values.instant();
    };
    const auto text = [&] {
        return values.text();
    };
    TimerSnapshot result;
    result.phase = values.oneOf<TimerPhase>();
    result.runState = values.oneOf<TimerRunState>();
    result.sessionID = values.maybe([&] { return values.uuid(); });
    result.intention = values.maybe(text);
    result.startedAt = values.maybe(instant);
    result.expectedEndAt = values.instant(); // a running one without an end is refused
    result.pausedAt = values.maybe(instant);
    result.pausedRemainingSeconds = values.maybe([&] { return values.seconds(); });
    result.plannedDuration = values.seconds();
    result.accumulatedPauseSeconds = values.seconds();
    result.interruptionCount = values.count();
    result.completedFocusCount = values.count();
    result.timeZoneIdentifierAtStart = values.maybe(text);
    return result;
}

AppPreferences preferences(Values& values)
{
    AppPreferences result;
    result.timerSettings = {values.seconds(),
                            values.seconds(),
                            values.seconds(),
                            values.count(),
                            values.flag(),
                            values.flag(),
                            values.oneOf<AlertIntensity>()};
    result.timerSettings = result.timerSettings.sanitized();
    result.showTopCapsuleWhileRunning = values.flag();
    result.playCompletionSound = values.flag();
    result.topTimerAppearance = values.oneOf<TopTimerAppearance>();
    result.appLanguage = values.oneOf<AppLanguage>();
    return result;
}

SessionRecord record(Values& values)
{
    SessionRecord result;
    result.endedAt = values.instant();
    result.effectiveDuration = values.seconds();
    result.phaseRawValue = values.oneOf<TimerPhase>();
    result.outcomeRawValue = values.oneOf<SessionOutcome>();
    result.id = values.uuid();
    result.plannedStartAt = values.instant();
    result.actualStartAt = values.instant();
    result.scheduledEndAt = values.instant();
    result.plannedDuration = values.seconds();
    result.pauseDuration = values.seconds();
    result.cycleIndex = values.count();
    result.interruptionCount = values.count();
    result.intention = values.text();
    result.completedWhileAway = values.flag();
    result.timeZoneIdentifierAtStart = values.text();
    return result;
}

void checkRecord(const SessionRecord& value)
{
    const auto text = encodeSessionArchive({&value, 1});
    require(bool(text));
    const auto again = decodeSessionArchive(*text);
    require(again && test::differences(*again, {value}).empty());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Values values(data, size);
    check(position(values), decodeSavedPosition);
    check(snapshot(values), decodeTimerSnapshot);
    check(preferences(values), decodeAppPreferences);
    checkRecord(record(values));
    return 0;
}
