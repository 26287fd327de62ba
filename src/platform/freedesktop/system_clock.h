#pragma once

#include "platform/clock.h"

namespace brevlin {

/// The computer's clock and time zone.
class SystemClock final : public Clock
{
public:
    Instant now() const override;
    std::string timeZoneIdentifier() const override;
};

} // namespace brevlin
