#include "storage/set_aside.h"

#include "storage/stored_limits.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace brevlin {

namespace {

// Tries one name after the other until `rename` does not report it as taken.
template <typename Rename>
Expected<void, FileError> renameToFreeName(Instant now, Rename rename)
{
    constexpr int mostNames = 1000;
    const std::string mark = ".unreadable-" + fileNameTime(now);
    auto renamed = rename(mark);
    for (int number = 2; !renamed && renamed.error().code == EEXIST && number <= mostNames; ++number) {
        renamed = rename(mark + "-" + std::to_string(number));
    }
    return renamed;
}

} // namespace

Expected<void, FileError> setAsideFile(DurableFile& files, const std::string& path, Instant now)
{
    const std::size_t extension = path.find_last_of('.');
    auto renamed = renameToFreeName(now, [&](const std::string& mark) {
        return files.rename(path, path.substr(0, extension) + mark + path.substr(extension));
    });
    return !renamed && renamed.error().code == ENOENT ? Expected<void, FileError>{} : renamed;
}

Expected<void, FileError> setAsideValue(UserDefaults& defaults, const std::string& key, Instant now)
{
    return renameToFreeName(now, [&](const std::string& mark) { return defaults.setAside(key, key + mark); });
}

std::string fileNameTime(Instant instant)
{
    using namespace std::chrono;
    // A clock far outside the calendar's range still has to give a name.
    constexpr Seconds lastSecondOf9999{253'402'300'799.0};
    const double sinceUnixEpoch =
        std::floor(std::clamp(unixTime(instant), Seconds::zero(), lastSecondOf9999).count());
    const sys_seconds time{seconds{static_cast<std::int64_t>(sinceUnixEpoch)}};
    const year_month_day date{floor<days>(time)};
    const hh_mm_ss clock{time - floor<days>(time)};
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%04d%02u%02uT%02d%02d%02dZ", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return text.data();
}

} // namespace brevlin
