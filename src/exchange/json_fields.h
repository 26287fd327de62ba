#pragma once

namespace brevlin::jsonField {

// The keys of our JSON: the columns of the CSV, and behind them what only JSON tells. They never change.

inline constexpr const char* id = "id";
inline constexpr const char* phase = "phase";
inline constexpr const char* outcome = "outcome";
inline constexpr const char* start = "start";
inline constexpr const char* end = "end";
inline constexpr const char* effectiveSeconds = "effective_seconds";
inline constexpr const char* plannedSeconds = "planned_seconds";
inline constexpr const char* pausedSeconds = "paused_seconds";
inline constexpr const char* interruptions = "interruptions";
inline constexpr const char* intention = "intention";
inline constexpr const char* timeZone = "time_zone";
inline constexpr const char* plannedStart = "planned_start";
inline constexpr const char* scheduledEnd = "scheduled_end";
inline constexpr const char* cycle = "cycle";
inline constexpr const char* completedAway = "completed_away";
inline constexpr const char* pauses = "pauses";
inline constexpr const char* absences = "absences";
inline constexpr const char* decision = "decision";
inline constexpr const char* asRecorded = "as_recorded"; ///< before the first correction

inline constexpr const char* beforeAbsences = "before_absences"; ///< before anything was decided of one

} // namespace brevlin::jsonField
