#pragma once

#include "core/instant.h"

#include <string>

namespace brevlin {

/// The only reader of the time. Everything else takes the instant as an argument.
class Clock
{
public:
    virtual ~Clock() = default;

    /// The wall-clock time. It may jump in either direction when the clock is set.
    virtual Instant now() const = 0;
    /// The IANA name of the system's time zone, "UTC" where none is configured.
    virtual std::string timeZoneIdentifier() const = 0;
};

} // namespace brevlin
