#include "platform/freedesktop/system_clock.h"

#include <QTimeZone>

#include <chrono>

namespace brevlin {

Instant SystemClock::now() const
{
    return instantFromUnixTime(std::chrono::system_clock::now().time_since_epoch());
}

std::string SystemClock::timeZoneIdentifier() const
{
    const QByteArray identifier = QTimeZone::systemTimeZoneId();
    return identifier.isEmpty() ? "UTC" : identifier.toStdString();
}

} // namespace brevlin
