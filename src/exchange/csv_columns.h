#pragma once

#include <array>
#include <string_view>

namespace brevlin {

inline constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// The header of our CSV. Other programs read these by name: they never change.
inline constexpr std::array<std::string_view, 11> csvColumns{"id",
                                                             "phase",
                                                             "outcome",
                                                             "start",
                                                             "end",
                                                             "effective_seconds",
                                                             "planned_seconds",
                                                             "paused_seconds",
                                                             "interruptions",
                                                             "intention",
                                                             "time_zone"};

} // namespace brevlin
