#include "core/timer_engine.h"
#include "storage/snapshot_document.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace brevlin {
namespace {

TimerSnapshot pausedSnapshot()
{
    TimerSnapshot snapshot;
    snapshot.phase = TimerPhase::longBreak;
    snapshot.runState = TimerRunState::paused;
    snapshot.sessionID = Uuid::fromText("0188B6F0-1234-4ABC-8DEF-0123456789AB");
    snapshot.intention = "写作";
    snapshot.startedAt = Instant{Seconds{789'000'000.125}};
    snapshot.pausedAt = Instant{Seconds{789'000'100.0}};
    snapshot.pausedRemainingSeconds = Seconds{800.5};
    snapshot.plannedDuration = Seconds{900.0};
    snapshot.accumulatedPauseSeconds = Seconds{3.0};
    snapshot.interruptionCount = 2;
    snapshot.completedFocusCount = 8;
    snapshot.timeZoneIdentifierAtStart = "Asia/Shanghai";
    return snapshot;
}

TEST(SnapshotDocument, a_full_snapshot_keeps_every_field_in_the_documented_form)
{
    const auto text = encode(pausedSnapshot());
    ASSERT_TRUE(text);
    EXPECT_EQ(*text, R"({"phase":"longBreak","runState":"paused",)"
                     R"("sessionID":"0188B6F0-1234-4ABC-8DEF-0123456789AB","intention":"写作",)"
                     R"("startedAt":789000000.125,"pausedAt":789000100,"pausedRemainingSeconds":800.5,)"
                     R"("plannedDuration":900,"accumulatedPauseSeconds":3,"interruptionCount":2,)"
                     R"("completedFocusCount":8,"timeZoneIdentifierAtStart":"Asia/Shanghai"})");
    EXPECT_EQ(*decodeTimerSnapshot(*text), pausedSnapshot());
}

TEST(SnapshotDocument, every_truncation_and_every_missing_key_is_an_error)
{
    const std::string text = *encode(pausedSnapshot());
    for (std::size_t length = 0; length < text.size(); ++length) {
        EXPECT_FALSE(decodeTimerSnapshot(text.substr(0, length))) << length;
    }
    for (const char* key : {"phase", "runState", "plannedDuration", "accumulatedPauseSeconds",
                            "interruptionCount", "completedFocusCount"}) {
        std::string renamed = text;
        renamed.replace(renamed.find("\"" + std::string(key)), 2, "\"_");
        EXPECT_FALSE(decodeTimerSnapshot(renamed)) << key;
    }
    std::string unknownState = text;
    unknownState.replace(unknownState.find("paused"), 6, "Paused");
    EXPECT_FALSE(decodeTimerSnapshot(unknownState));
    std::string withoutEnd = text;
    withoutEnd.replace(withoutEnd.find("paused"), 6, "running");
    EXPECT_FALSE(decodeTimerSnapshot(withoutEnd));
}

TEST(SnapshotDocument, no_document_can_break_the_engine)
{
    const auto snapshot = decodeTimerSnapshot(
        R"({"phase":"focus","runState":"paused","startedAt":-1.7e308,"pausedAt":-1.7e308,"expectedEndAt":1.7e308,)"
        R"("pausedRemainingSeconds":1.7e308,"plannedDuration":1.7e308,"accumulatedPauseSeconds":1.7e308,)"
        R"("interruptionCount":9223372036854775807,"completedFocusCount":9223372036854775807})");
    ASSERT_TRUE(snapshot);
    TimerEngine engine({}, *snapshot, [] { return std::string("UTC"); });
    const Instant now{Seconds{8e8}};
    engine.resume(now);
    engine.pause(now);
    const TimerTransition ended = engine.endEarly(now);
    ASSERT_TRUE(ended.finishedSession);
    EXPECT_TRUE(std::isfinite(ended.finishedSession->pauseDuration.count()));
    EXPECT_TRUE(encode(*ended.finishedSession));
    EXPECT_LT(snapshot->accumulatedPauseSeconds, Seconds{1e18}) << "fits a 64-bit integer";
    for (const auto& each : {snapshot->startedAt, snapshot->pausedAt, snapshot->expectedEndAt}) {
        EXPECT_LT(std::abs(each.value().time_since_epoch().count()), 1e18);
    }
    EXPECT_LT(*snapshot->pausedRemainingSeconds + snapshot->plannedDuration, Seconds{1e18});
    EXPECT_LT(snapshot->interruptionCount, std::numeric_limits<std::int64_t>::max());
    EXPECT_GT(snapshot->interruptionCount, 0);
    EXPECT_LT(snapshot->completedFocusCount, std::numeric_limits<std::int64_t>::max());
}

} // namespace
} // namespace brevlin
