#pragma once

#include "platform/clock.h"

namespace brevlin {

/// The computer's clock and time zone. The zone is for one thread.
class SystemClock final : public Clock
{
public:
    Instant now() const override;
    TimeZone timeZone() const override;

private:
    mutable std::string m_zoneSource; // that the zone was read from
    mutable TimeZone m_zone;
};

} // namespace brevlin
