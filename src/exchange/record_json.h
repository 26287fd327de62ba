#pragma once

#include "core/session_record.h"
#include "core/time_zone_rules.h"
#include "storage/json/json_writer.h"

namespace brevlin {

/// Writes the instant as ISO 8601 with the zone's offset.
void writeTime(JsonWriter& writer, const char* key, Instant instant, const TimeZoneRules& zone);
/// Writes the fields of the record into the object that is open.
void writeRecordFields(JsonWriter& writer, const SessionRecord& record, const TimeZoneRules& zone);

} // namespace brevlin
