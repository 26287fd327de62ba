#pragma once

#include "core/instant.h"
#include "core/language.h"

#include <string>

namespace brevlin::TimeText {

/// Minutes and seconds, rounded up to whole seconds, at least two digits each: "25:00", "180:00". Negative
/// and undefined lengths give "00:00".
std::string clock(Seconds length);

/// Whole minutes, or hours and minutes: "25 min", "1 hr 30 min", "1 小时 30 分钟". Undefined lengths count as
/// 0.
std::string duration(Seconds length, AppLanguage language);

} // namespace brevlin::TimeText
