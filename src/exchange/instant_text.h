#pragma once

#include "core/instant.h"
#include "core/time_zone_rules.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace brevlin {

/// Knows time zones by their identifier; gives nothing for one that it does not know.
using ZoneLookup = std::function<TimeZone(const std::string&)>;

/// Asks once for each zone.
class ZoneBook final
{
public:
    explicit ZoneBook(ZoneLookup lookup) : m_lookup(std::move(lookup)) {}

    /// UTC for a zone that nobody knows.
    const TimeZoneRules& zone(std::string_view identifier);

private:
    ZoneLookup m_lookup;
    std::map<std::string, TimeZone, std::less<>> m_zones;
};

/// Appends the instant as ISO 8601 with the zone's offset, with as many digits of a second as make it read
/// back as the same number. Instants beyond about ten thousand years from 2001 are written as that far away.
void appendInstant(std::string& text, Instant instant, const TimeZoneRules& zone);
/// Reads ISO 8601 with an offset or Z, in the extended or the basic form; nothing for any other text.
std::optional<Instant> instantFromText(std::string_view text);

/// Unix time to the nearest second, which is all that formats of other programs hold.
std::int64_t nearestUnixSecond(Instant instant);
/// Appends such a time as 20260131T090000Z.
void appendUtcSecond(std::string& text, std::int64_t unixSecond);

} // namespace brevlin
