#pragma once

#include "platform/clock.h"

#include <string>
#include <utility>

namespace brevlin::test {

/// A clock that stands still until the test moves it, in either direction.
class FakeClock final : public Clock
{
public:
    explicit FakeClock(Instant now = Instant{Seconds{800'000'000.0}}) : m_now(now) {}

    Instant now() const override { return m_now; }
    std::string timeZoneIdentifier() const override { return m_timeZoneIdentifier; }

    /// Moves the wall clock alone, as sleep or a set clock does: scheduled tasks do not come nearer.
    void jump(Seconds length) { m_now += length; }
    void setNow(Instant now) { m_now = now; }
    void setTimeZoneIdentifier(std::string identifier) { m_timeZoneIdentifier = std::move(identifier); }

private:
    Instant m_now;
    std::string m_timeZoneIdentifier = "Europe/Berlin";
};

} // namespace brevlin::test
