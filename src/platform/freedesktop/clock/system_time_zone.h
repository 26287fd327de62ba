#pragma once

#include "core/time_zone_rules.h"

#include <string>

namespace brevlin {

// The system's time zone, from the system's own data (https://www.iana.org/time-zones), whose rules change
// several times a year: no library that brings its own is as new.

/// The zone of an IANA name or of a rule as TZ may hold it ("JST-9",
/// https://pubs.opengroup.org/onlinepubs/9699919799/basedefs/V1_chap08.html#tag_08_03); null for any other
/// text.
TimeZone timeZoneOf(const std::string& identifier);

/// What TZ or the system's settings name: an IANA name, a rule, or the path of a file. A change of the zone
/// changes it.
std::string systemTimeZoneSource();
/// The zone of such a source. For one that nobody knows, the rule at the end of the file that the system uses
/// (https://www.rfc-editor.org/rfc/rfc8536#section-3.3), else the offset that the C library has now: never
/// silently UTC.
TimeZone systemTimeZone(const std::string& source);

} // namespace brevlin
