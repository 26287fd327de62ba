#include "core/time_text.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace brevlin {

namespace {

std::int64_t wholeNumber(double value)
{
    constexpr double limit = 9.0e18;
    return std::isnan(value) ? 0 : static_cast<std::int64_t>(std::clamp(value, -limit, limit));
}

std::string twoDigits(std::int64_t value)
{
    return (value < 10 ? "0" : "") + std::to_string(value);
}

} // namespace

std::string TimeText::clock(Seconds length)
{
    const std::int64_t seconds = std::max<std::int64_t>(wholeNumber(std::ceil(length.count())), 0);
    return twoDigits(seconds / 60) + ":" + twoDigits(seconds % 60);
}

std::string TimeText::duration(Seconds length, AppLanguage language)
{
    const BilingualText minuteUnit{" 分钟", " min"};
    const BilingualText hourUnit{" 小时", " hr"};
    const std::int64_t minutes = wholeNumber(length.count() / 60.0);
    const auto in = [language](const BilingualText& text) {
        return std::string{text.in(language)};
    };
    if (minutes < 60) {
        return std::to_string(minutes) + in(minuteUnit);
    }
    const std::string hours = std::to_string(minutes / 60) + in(hourUnit);
    return minutes % 60 == 0 ? hours : hours + " " + std::to_string(minutes % 60) + in(minuteUnit);
}

} // namespace brevlin
