#pragma once

#include "platform/clock.h"
#include "platform/freedesktop/clock/system_time_zone.h"

#include <string>
#include <utility>

namespace brevlin::test {

/// A clock that stands still until the test moves it, in either direction.
class FakeClock final : public Clock
{
public:
    explicit FakeClock(Instant now = Instant{Seconds{800'000'000.0}}) : m_now(now) {}

    Instant now() const override { return m_now; }
    TimeZone timeZone() const override { return m_timeZone; }

    /// Moves the wall clock alone, as sleep or a set clock does: scheduled tasks do not come nearer.
    void jump(Seconds length) { m_now += length; }
    void setNow(Instant now) { m_now = now; }
    void setTimeZoneIdentifier(const std::string& identifier) { m_timeZone = timeZoneOf(identifier); }

private:
    Instant m_now;
    TimeZone m_timeZone = timeZoneOf("Europe/Berlin");
};

} // namespace brevlin::test
