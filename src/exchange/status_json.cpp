#include "exchange/status_json.h"

#include "exchange/instant_text.h"
#include "exchange/record_json.h"
#include "storage/json/json_reader.h"
#include "storage/json/json_writer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace brevlin {

namespace {

constexpr std::int64_t version = 1;

namespace key {
constexpr const char* version = "version";
constexpr const char* phase = "phase";
constexpr const char* state = "state";
constexpr const char* remaining = "remaining_seconds";
constexpr const char* endsAt = "ends_at";
constexpr const char* planned = "planned_seconds";
constexpr const char* intention = "intention";
constexpr const char* cycle = "cycle";
constexpr const char* position = "position";
constexpr const char* length = "length";
constexpr const char* today = "today";
constexpr const char* focus = "focus_seconds";
constexpr const char* completed = "completed";
constexpr const char* record = "record";
} // namespace key

// As the clock shows them: a second that has begun counts.
std::int64_t wholeSeconds(Seconds length)
{
    constexpr double limit = 9.0e18;
    return static_cast<std::int64_t>(std::ceil(std::clamp(length.count(), 0.0, limit)));
}

// With exactly three digits of a second, which all readers take.
std::string toMilliseconds(Instant instant, const TimeZoneRules& zone)
{
    constexpr double perSecond = 1000.0;
    constexpr std::size_t offsetWidth = 6; // +01:00
    constexpr double limit = 3e11;         // a damaged timer may end at any time, or never
    const double milliseconds =
        std::floor(std::clamp(instant.time_since_epoch().count(), -limit, limit) * perSecond);
    const double seconds = std::floor(milliseconds / perSecond);
    std::string fraction = std::to_string(static_cast<int>(milliseconds - seconds * perSecond));
    fraction.insert(0, 3 - fraction.size(), '0');
    std::string text;
    appendInstant(text, Instant{Seconds{seconds}}, zone);
    return text.insert(text.size() - offsetWidth, "." + fraction);
}

bool readInstant(JsonValue value, std::optional<Instant>& result)
{
    std::string_view text;
    result = read(value, text) ? instantFromText(text) : std::nullopt;
    return result.has_value();
}

} // namespace

Expected<std::string, DocumentError> statusJson(const TimerStatus& status, const TimeZoneRules& zone,
                                                const SessionRecord* ended)
{
    JsonWriter writer;
    writer.beginObject();
    writer.field(key::version, version);
    writer.field(key::phase, status.phase);
    writer.field(key::state, status.state);
    writer.field(key::remaining, wholeSeconds(status.remaining));
    if (status.endsAt) {
        writer.field(key::endsAt, std::string_view{toMilliseconds(*status.endsAt, zone)});
    } else {
        writer.key(key::endsAt);
        writer.null();
    }
    writer.field(key::planned, status.planned);
    writer.field(key::intention, std::string_view{status.intention});
    writer.key(key::cycle);
    writer.beginObject();
    writer.field(key::position, status.cyclePosition);
    writer.field(key::length, status.cycleLength);
    writer.endObject();
    writer.key(key::today);
    writer.beginObject();
    writer.field(key::focus, status.focusToday);
    writer.field(key::completed, status.completedToday);
    writer.endObject();
    if (ended != nullptr) {
        writer.key(key::record);
        writer.beginObject();
        writeRecordFields(writer, *ended, zone);
        writer.endObject();
    }
    writer.endObject();
    return std::move(writer).finish();
}

std::string withRemaining(std::string json, Seconds remaining)
{
    // No text of the user's stands before the first of that name.
    const std::string name = '"' + std::string(key::remaining) + "\":";
    const std::size_t found = json.find(name);
    if (found != std::string::npos) {
        const std::size_t begin = found + name.size();
        const std::size_t end = json.find_first_not_of("0123456789", begin);
        json.replace(begin, end - begin, std::to_string(wholeSeconds(remaining)));
    }
    return json;
}

std::string absentStatusJson()
{
    return R"({"version":1,"phase":null,"state":"notRunning","remaining_seconds":null,"ends_at":null,)"
           R"("planned_seconds":null,"intention":null,"cycle":null,"today":null})";
}

Expected<TimerStatus, DocumentError> statusFromJson(const std::string& json)
{
    const auto document = JsonDocument::parse(json);
    if (!document) {
        return Unexpected{document.error()};
    }
    TimerStatus status;
    JsonObjectReader reader(document->root());
    reader.required(key::phase, status.phase);
    reader.required(key::state, status.state);
    reader.required(key::remaining, status.remaining);
    if (const auto endsAt = reader.find(key::endsAt);
        endsAt && !endsAt->is_null() && !readInstant(*endsAt, status.endsAt)) {
        reader.refuse(key::endsAt, "has an unexpected value");
    }
    reader.required(key::planned, status.planned);
    reader.required(key::intention, status.intention);
    if (const auto cycle = reader.find(key::cycle)) {
        JsonObjectReader part(*cycle);
        part.required(key::position, status.cyclePosition);
        part.required(key::length, status.cycleLength);
    }
    if (const auto today = reader.find(key::today)) {
        JsonObjectReader part(*today);
        part.required(key::focus, status.focusToday);
        part.required(key::completed, status.completedToday);
    }
    return reader.finish(std::move(status));
}

} // namespace brevlin
