#pragma once

#include "core/instant.h"

#include <unicode/timezone.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace brevlin {

/// The offsets from UTC of one time zone, as ICU knows them. The changes of the years in which people use the
/// program are read once into a table, because statistics ask for the local date of every record on every
/// redraw.
class TimeZoneRules final
{
public:
    /// An IANA name; an unknown one counts as UTC.
    explicit TimeZoneRules(const std::string& identifier);
    ~TimeZoneRules();
    TimeZoneRules(const TimeZoneRules&) = delete;
    TimeZoneRules& operator=(const TimeZoneRules&) = delete;

    const std::string& identifier() const { return m_identifier; }

    /// What the wall clock is ahead of UTC.
    std::chrono::seconds offset(Instant instant) const;

    /// Unix time of the first instant at which the wall clock shows the given time (seconds since 1970-01-01
    /// 00:00 on the wall clock) or a later one of a clock that jumped over it.
    std::chrono::seconds firstAtOrAfter(std::chrono::seconds wallClock) const;
    /// Unix time of the first instant at which the wall clock shows the given time; a time that the clock
    /// jumps over is moved on by the length of the jump.
    std::chrono::seconds resolve(std::chrono::seconds wallClock) const;

    /// Rounded down, and kept within about ten thousand years so that no stored number can overflow.
    static std::chrono::seconds wholeUnixSeconds(Instant instant);

private:
    struct Change
    {
        std::chrono::seconds at; // Unix time
        std::chrono::seconds offset;
    };

    std::chrono::seconds offset(std::chrono::seconds unixSeconds) const;
    std::chrono::seconds offsetByIcu(std::chrono::seconds unixSeconds) const;
    void readChanges();

    std::string m_identifier;
    std::unique_ptr<icu::TimeZone> m_zone;
    std::vector<Change> m_changes; // by time; the first holds the offset at the table's begin
};

} // namespace brevlin
