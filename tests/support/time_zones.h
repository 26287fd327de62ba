#pragma once

#include "core/time_zone_rules.h"

#include <unicode/basictz.h>
#include <unicode/timezone.h>
#include <unicode/tztrans.h>

#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace brevlin::test {

/// The zone of this IANA name as ICU knows it.
inline TimeZone zone(const std::string& identifier)
{
    using std::chrono::seconds;
    constexpr double end = 4'133'980'800'000.0; // 2101, in milliseconds
    const std::unique_ptr<icu::TimeZone> found{
        icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(identifier))};
    int32_t raw = 0;
    int32_t savings = 0;
    UErrorCode status = U_ZERO_ERROR;
    found->getOffset(0.0, 0, raw, savings, status);
    std::vector<TimeZoneRules::Change> changes{{seconds{0}, seconds{(raw + savings) / 1000}}};
    icu::TimeZoneTransition transition;
    double from = 0;
    const auto* rules = dynamic_cast<const icu::BasicTimeZone*>(found.get());
    while (rules->getNextTransition(from, false, transition) != 0 && transition.getTime() < end) {
        from = transition.getTime();
        const icu::TimeZoneRule* after = transition.getTo();
        changes.push_back({seconds{static_cast<std::int64_t>(std::floor(from / 1000.0))},
                           seconds{(after->getRawOffset() + after->getDSTSavings()) / 1000}});
    }
    return std::make_shared<const TimeZoneRules>(identifier, std::move(changes));
}

} // namespace brevlin::test
