#pragma once

#include "core/instant.h"

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace brevlin {

/// The offsets from UTC of one time zone, as a table of their changes. Statistics ask for the local date of
/// every record on every redraw, so whoever knows the zone is asked only once.
class TimeZoneRules final
{
public:
    struct Change
    {
        std::chrono::seconds at;     ///< Unix time
        std::chrono::seconds offset; ///< from then on, what the wall clock is ahead of UTC

        bool operator==(const Change&) const = default;
    };

    /// A stretch of Unix time without a change; end exclusive.
    struct Stretch
    {
        std::chrono::seconds begin;
        std::chrono::seconds end;
        std::chrono::seconds offset;

        bool contains(std::chrono::seconds unixSeconds) const
        {
            return begin <= unixSeconds && unixSeconds < end;
        }
    };

    /// UTC.
    TimeZoneRules();
    /// The changes by time; the first offset holds before the first change, too, and the last one for ever.
    TimeZoneRules(std::string identifier, std::vector<Change> changes);

    const std::string& identifier() const { return m_identifier; }

    /// The stretch that holds this Unix time.
    Stretch stretch(std::chrono::seconds unixSeconds) const;

    /// Unix time of the first instant at which the wall clock shows the given time (seconds since 1970-01-01
    /// 00:00 on the wall clock) or a later one of a clock that jumped over it.
    std::chrono::seconds firstAtOrAfter(std::chrono::seconds wallClock) const;
    /// The same; `near` is any stretch of this zone, which spares the search for all that lies well within.
    std::chrono::seconds firstAtOrAfter(std::chrono::seconds wallClock, const Stretch& near) const;
    /// Unix time of the first instant at which the wall clock shows the given time; a time that the clock
    /// jumps over is moved on by the length of the jump.
    std::chrono::seconds resolve(std::chrono::seconds wallClock) const;

    /// Rounded down, and kept within about ten thousand years so that no stored number can overflow.
    static std::chrono::seconds wholeUnixSeconds(Instant instant);

private:
    std::chrono::seconds offset(std::chrono::seconds unixSeconds) const;

    std::string m_identifier;
    std::vector<Change> m_changes; // never empty
};

/// A time zone, cheap to copy; never null.
using TimeZone = std::shared_ptr<const TimeZoneRules>;

} // namespace brevlin
