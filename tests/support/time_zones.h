#pragma once

#include "platform/freedesktop/clock/system_time_zone.h"

namespace brevlin::test {

/// The zone of this IANA name, from the system's data; time_zones_test.py reads all of them a second time.
inline TimeZone zone(const std::string& identifier)
{
    return timeZoneOf(identifier);
}

} // namespace brevlin::test
