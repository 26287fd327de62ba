#include "storage/snapshot_document.h"

#include "storage/json/json_reader.h"
#include "storage/json/json_writer.h"
#include "storage/stored_limits.h"

#include <utility>

namespace brevlin {

namespace {

template <typename T>
void hold(std::optional<T>& value)
{
    if (value) {
        value = withinLimits(*value);
    }
}

TimerSnapshot heldWithinLimits(TimerSnapshot snapshot)
{
    hold(snapshot.startedAt);
    hold(snapshot.expectedEndAt);
    hold(snapshot.pausedAt);
    hold(snapshot.pausedRemainingSeconds);
    snapshot.plannedDuration = withinLimits(snapshot.plannedDuration);
    snapshot.accumulatedPauseSeconds = withinLimits(snapshot.accumulatedPauseSeconds);
    snapshot.interruptionCount = withinLimits(snapshot.interruptionCount);
    snapshot.completedFocusCount = withinLimits(snapshot.completedFocusCount);
    return snapshot;
}

} // namespace

Expected<std::string, DocumentError> encode(const TimerSnapshot& snapshot)
{
    JsonWriter writer;
    writer.beginObject();
    writer.field("phase", snapshot.phase);
    writer.field("runState", snapshot.runState);
    writer.field("sessionID", snapshot.sessionID);
    writer.field("intention", snapshot.intention);
    writer.field("startedAt", snapshot.startedAt);
    writer.field("expectedEndAt", snapshot.expectedEndAt);
    writer.field("pausedAt", snapshot.pausedAt);
    writer.field("pausedRemainingSeconds", snapshot.pausedRemainingSeconds);
    writer.field("plannedDuration", snapshot.plannedDuration);
    writer.field("accumulatedPauseSeconds", snapshot.accumulatedPauseSeconds);
    writer.field("interruptionCount", snapshot.interruptionCount);
    writer.field("completedFocusCount", snapshot.completedFocusCount);
    writer.field("timeZoneIdentifierAtStart", snapshot.timeZoneIdentifierAtStart);
    writer.endObject();
    return std::move(writer).finish();
}

Expected<std::string, DocumentError> encode(const FinishedSession& session)
{
    JsonWriter writer;
    writer.beginObject();
    writer.field("id", session.id);
    writer.field("phase", session.phase);
    writer.field("outcome", session.outcome);
    writer.field("startedAt", session.startedAt);
    writer.field("scheduledEndAt", session.scheduledEndAt);
    writer.field("endedAt", session.endedAt);
    writer.field("plannedDuration", session.plannedDuration);
    writer.field("effectiveDuration", session.effectiveDuration);
    writer.field("pauseDuration", session.pauseDuration);
    writer.field("cycleIndex", session.cycleIndex);
    writer.field("interruptionCount", session.interruptionCount);
    writer.field("intention", session.intention);
    writer.field("completedWhileAway", session.completedWhileAway);
    writer.field("timeZoneIdentifierAtStart", session.timeZoneIdentifierAtStart);
    writer.endObject();
    return std::move(writer).finish();
}

Expected<TimerSnapshot, DocumentError> decodeTimerSnapshot(const std::string& document)
{
    const auto json = JsonDocument::parse(document);
    if (!json) {
        return Unexpected{json.error()};
    }
    TimerSnapshot snapshot;
    JsonObjectReader reader(json->root());
    reader.required("phase", snapshot.phase);
    reader.required("runState", snapshot.runState);
    reader.optional("sessionID", snapshot.sessionID);
    reader.optional("intention", snapshot.intention);
    reader.optional("startedAt", snapshot.startedAt);
    if (snapshot.runState == TimerRunState::running) {
        // Without its end it would end at every instant anew.
        Instant end;
        reader.required("expectedEndAt", end);
        snapshot.expectedEndAt = end;
    } else {
        reader.optional("expectedEndAt", snapshot.expectedEndAt);
    }
    reader.optional("pausedAt", snapshot.pausedAt);
    reader.optional("pausedRemainingSeconds", snapshot.pausedRemainingSeconds);
    reader.required("plannedDuration", snapshot.plannedDuration);
    reader.required("accumulatedPauseSeconds", snapshot.accumulatedPauseSeconds);
    reader.required("interruptionCount", snapshot.interruptionCount);
    reader.required("completedFocusCount", snapshot.completedFocusCount);
    reader.optional("timeZoneIdentifierAtStart", snapshot.timeZoneIdentifierAtStart);
    return reader.finish(heldWithinLimits(std::move(snapshot)));
}

Expected<FinishedSession, DocumentError> decodeFinishedSession(const std::string& document)
{
    const auto json = JsonDocument::parse(document);
    if (!json) {
        return Unexpected{json.error()};
    }
    FinishedSession session;
    JsonObjectReader reader(json->root());
    reader.required("id", session.id);
    reader.required("phase", session.phase);
    reader.required("outcome", session.outcome);
    reader.required("startedAt", session.startedAt);
    reader.optional("scheduledEndAt", session.scheduledEndAt);
    reader.required("endedAt", session.endedAt);
    reader.required("plannedDuration", session.plannedDuration);
    reader.required("effectiveDuration", session.effectiveDuration);
    reader.required("pauseDuration", session.pauseDuration);
    reader.required("cycleIndex", session.cycleIndex);
    reader.required("interruptionCount", session.interruptionCount);
    reader.optional("intention", session.intention);
    reader.required("completedWhileAway", session.completedWhileAway);
    reader.required("timeZoneIdentifierAtStart", session.timeZoneIdentifierAtStart);
    return reader.finish(std::move(session));
}

} // namespace brevlin
