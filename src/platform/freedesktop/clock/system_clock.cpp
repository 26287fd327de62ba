#include "platform/freedesktop/clock/system_clock.h"

#include "platform/freedesktop/clock/system_time_zone.h"

#include <chrono>

namespace brevlin {

Instant SystemClock::now() const
{
    return instantFromUnixTime(std::chrono::system_clock::now().time_since_epoch());
}

TimeZone SystemClock::timeZone() const
{
    std::string source = systemTimeZoneSource();
    if (!m_zone || source != m_zoneSource) {
        m_zone = systemTimeZone(source);
        m_zoneSource = std::move(source);
    }
    return m_zone;
}

} // namespace brevlin
