#pragma once

#include "core/instant.h"
#include "core/time_zone_rules.h"

namespace brevlin {

/// The only reader of the time. Everything else takes the instant as an argument.
class Clock
{
public:
    virtual ~Clock() = default;

    /// The wall-clock time. It may jump in either direction when the clock is set.
    virtual Instant now() const = 0;
    /// The system's time zone; its identifier is an IANA name, or a rule or a fixed offset where it has none.
    virtual TimeZone timeZone() const = 0;
};

} // namespace brevlin
