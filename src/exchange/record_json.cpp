#include "exchange/record_json.h"

#include "exchange/instant_text.h"
#include "exchange/json_fields.h"

#include <string>

namespace brevlin {

void writeTime(JsonWriter& writer, const char* key, Instant instant, const TimeZoneRules& zone)
{
    std::string text;
    appendInstant(text, instant, zone);
    writer.field(key, std::string_view{text});
}

void writeRecordFields(JsonWriter& writer, const SessionRecord& record, const TimeZoneRules& zone)
{
    writer.field(jsonField::id, record.id);
    writer.field(jsonField::phase, record.phaseRawValue.text());
    writer.field(jsonField::outcome, record.outcomeRawValue.text());
    writeTime(writer, jsonField::start, record.actualStartAt, zone);
    writeTime(writer, jsonField::end, record.endedAt, zone);
    writer.field(jsonField::effectiveSeconds, record.effectiveDuration);
    writer.field(jsonField::plannedSeconds, record.plannedDuration);
    writer.field(jsonField::pausedSeconds, record.pauseDuration);
    writer.field(jsonField::interruptions, record.interruptionCount);
    writer.field(jsonField::intention, record.intention.view());
    writer.field(jsonField::timeZone, record.timeZoneIdentifierAtStart.view());
    writeTime(writer, jsonField::plannedStart, record.plannedStartAt, zone);
    writeTime(writer, jsonField::scheduledEnd, record.scheduledEndAt, zone);
    writer.field(jsonField::cycle, record.cycleIndex);
    writer.field(jsonField::completedAway, record.completedWhileAway);
}

} // namespace brevlin
