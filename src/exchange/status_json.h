#pragma once

#include "core/expected.h"
#include "core/session_record.h"
#include "core/time_zone_rules.h"
#include "core/timer_status.h"
#include "storage/document_error.h"

#include <string>

namespace brevlin {

/// The status as one line of JSON. Keys are never renamed or removed; whoever reads it ignores those that it
/// does not know. The record, if there is one, is what has just ended. Fails for what JSON cannot express.
Expected<std::string, DocumentError> statusJson(const TimerStatus& status, const TimeZoneRules& zone,
                                                const SessionRecord* ended = nullptr);
/// The same line with another remaining time.
std::string withRemaining(std::string json, Seconds remaining);
/// The same for a timer that nobody runs: what is not known is null.
std::string absentStatusJson();

Expected<TimerStatus, DocumentError> statusFromJson(const std::string& json);

} // namespace brevlin
