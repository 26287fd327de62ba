#pragma once

#include "core/instant.h"

#include <algorithm>
#include <cstdint>

namespace brevlin {

// A document may hold any finite number. What the timer reckons with is held within these limits, so that no
// sum becomes infinite, no count overflows and every length in seconds fits a 64-bit integer.

/// About 32 million years.
inline constexpr Seconds longestStoredTime{1e15};
inline constexpr std::int64_t largestStoredCount = std::int64_t{1} << 53;

constexpr Seconds withinLimits(Seconds value)
{
    return std::clamp(value, -longestStoredTime, longestStoredTime);
}

constexpr Instant withinLimits(Instant value)
{
    return Instant{withinLimits(value.time_since_epoch())};
}

constexpr std::int64_t withinLimits(std::int64_t count)
{
    return std::clamp(count, -largestStoredCount, largestStoredCount);
}

} // namespace brevlin
