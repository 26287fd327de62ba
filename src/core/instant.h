#pragma once

#include <chrono>
#include <ratio>

namespace brevlin {

/// A length of time in seconds, with a fraction; may be negative.
using Seconds = std::chrono::duration<double>;

/// The time line of every stored date: seconds since 2001-01-01 00:00:00 UTC, leap seconds not counted.
/// It has no now(): only a platform clock reads the time.
struct AbsoluteTimeline
{
    using rep = double;
    using period = std::ratio<1>;
    using duration = Seconds;
    using time_point = std::chrono::time_point<AbsoluteTimeline, Seconds>;
    static constexpr bool is_steady = false;
};

using Instant = AbsoluteTimeline::time_point;

/// 2001-01-01 00:00:00 UTC, counted from 1970-01-01 00:00:00 UTC.
inline constexpr Seconds unixEpochOffset{978'307'200.0};

constexpr Instant instantFromUnixTime(Seconds sinceUnixEpoch)
{
    return Instant{sinceUnixEpoch - unixEpochOffset};
}

constexpr Seconds unixTime(Instant instant)
{
    return instant.time_since_epoch() + unixEpochOffset;
}

} // namespace brevlin
