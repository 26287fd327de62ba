#include "platform/freedesktop/clock/system_time_zone.h"

#include <iostream>
#include <sstream>
#include <string>

// Reads lines "ZONE SECONDS SECONDS …" and prints "ZONE OFFSET OFFSET …", the offsets of the zone at these
// Unix times; "system" is the system's zone, and one that nobody knows has no offsets.
int main()
{
    for (std::string line; std::getline(std::cin, line);) {
        std::istringstream words(line);
        std::string name;
        words >> name;
        const brevlin::TimeZone zone = name == "system"
                                           ? brevlin::systemTimeZone(brevlin::systemTimeZoneSource())
                                           : brevlin::timeZoneOf(name);
        std::cout << name;
        for (double at = 0; zone && words >> at;) {
            const auto instant = brevlin::instantFromUnixTime(brevlin::Seconds{at});
            const auto unixSeconds = brevlin::TimeZoneRules::wholeUnixSeconds(instant);
            std::cout << ' ' << zone->stretch(unixSeconds).offset.count();
        }
        std::cout << '\n';
    }
}
