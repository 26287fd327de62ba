#include "storage/active_timer_persistence.h"
#include "storage/capsule_position.h"
#include "storage/preferences_store.h"
#include "support/fake_disk.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace brevlin {
namespace {

using Values = std::map<std::string, std::string>;

TEST(KeptDocument, the_newest_state_is_written_in_place_of_older_ones_that_wait)
{
    test::FakeDisk disk;
    disk.thread.runsAtOnce = false;
    KeptDocument first(disk, "first");
    KeptDocument second(disk, "second");
    first.write("1");
    second.write("before the newest");
    first.write("2");
    first.write("3");
    EXPECT_EQ(*first.read(), "3") << "known before it is on the disk";
    std::vector<Values> states;
    while (disk.thread.waitingCount() > 0) {
        EXPECT_FALSE(first.isSaved());
        disk.thread.runOne();
        if (states.empty() || states.back() != disk.defaults.values) {
            states.push_back(disk.defaults.values);
        }
    }
    EXPECT_EQ(states,
              (std::vector<Values>{
                  {}, {{"second", "before the newest"}}, {{"first", "3"}, {"second", "before the newest"}}}));
    EXPECT_TRUE(first.isSaved());
}

TEST(KeptDocument, what_the_disk_refuses_is_told_once_and_tried_until_it_is_taken)
{
    test::FakeDisk disk;
    KeptDocument document(disk, "key");
    int told = 0;
    document.setObserver({{}, [&](const DocumentError& /*error*/) {
                              ++told;
                          }});
    disk.defaults.failures.failFrom(1);
    document.write("1");
    disk.scheduler.advance(Seconds{100});
    document.retry();
    EXPECT_EQ(told, 1);
    document.write("2");
    EXPECT_EQ(told, 2);
    EXPECT_EQ(disk.defaults.values, Values{});
    disk.defaults.failures.failNothing();
    disk.scheduler.advance(RetryTimer::longestDelay);
    EXPECT_EQ(disk.defaults.values, (Values{{"key", "2"}}));
    EXPECT_EQ(disk.scheduler.pendingCount(), 0U);
    disk.defaults.failures.failFrom(1);
    document.write("refused");
    EXPECT_EQ(disk.scheduler.nextDelay(), RetryTimer::firstDelay);
    disk.thread.runsAtOnce = false;
    document.write("3");
    document.retry();
    EXPECT_EQ(disk.thread.waitingCount(), 1U) << "what is on its way is not tried again";
}

TEST(KeptDocument, a_document_that_could_not_be_read_is_read_before_anything_is_written)
{
    test::FakeDisk disk;
    disk.defaults.values = {{"legacy", "old"}};
    disk.defaults.unreadable = {"legacy"};
    KeptDocument document(disk, "key", "legacy");
    std::vector<std::string> read;
    document.setObserver({[&](const auto& bytes) { read.push_back(bytes.value_or("none")); }, {}});
    ASSERT_FALSE(document.read());
    EXPECT_EQ(disk.scheduler.nextDelay(), RetryTimer::firstDelay);
    document.write("old news");
    EXPECT_EQ(disk.defaults.values, (Values{{"legacy", "old"}}));
    disk.defaults.unreadable.clear();
    disk.thread.runsAtOnce = false;
    document.retry();
    document.write("new");
    EXPECT_EQ(disk.thread.waitingCount(), 1U);
    disk.thread.runAll();
    EXPECT_EQ(disk.scheduler.pendingCount(), 0U);
    EXPECT_EQ(read, std::vector<std::string>{"old"});
    EXPECT_EQ(disk.defaults.values, (Values{{"key", "new"}}));
}

TEST(KeptDocument, one_of_a_former_name_stays_beside_a_current_one_and_where_it_is_damaged)
{
    test::FakeDisk disk;
    disk.defaults.values = {{"legacy", "old"}, {"key", "1"}};
    KeptDocument current(disk, "key", "legacy");
    current.write("2");
    current.write("3");
    EXPECT_EQ(disk.defaults.values, (Values{{"legacy", "old"}, {"key", "3"}}));
    disk.defaults.values = {{"legacy", "{"}};
    KeptDocument damaged(disk, "key", "legacy");
    ASSERT_TRUE(damaged.read());
    damaged.setDamaged();
    damaged.write("new");
    EXPECT_EQ(disk.defaults.values, (Values{{"legacy", "{"}, {"key", "new"}}));
}

TEST(KeptDocument, one_of_a_former_name_moves_moves_once_it_can_and_never_over_the_current_one)
{
    const struct
    {
        std::string key;
        std::string legacyKey;
        std::string good;
        std::function<bool(const DocumentDisk&)> isRead;
    } documents[] = {
        {"Brevlin.preferences.v1", "Kestrove.preferences.v1", R"({"appLanguage":"english"})",
         [](const DocumentDisk& disk) {
             return PreferencesStore(disk).load() != AppPreferences{};
         }},
        {"Brevlin.activeTimerSnapshot.v1", "Kestrove.activeTimerSnapshot.v1",
         R"({"phase":"focus","runState":"idle","plannedDuration":1500,"accumulatedPauseSeconds":0,)"
         R"("interruptionCount":0,"completedFocusCount":0})",
         [](const DocumentDisk& disk) {
             const auto snapshot = ActiveTimerPersistence(disk).load();
             return snapshot && *snapshot;
         }},
        {"Brevlin.topPanel.position.v1", "Kestrove.topPanel.position.v1",
         R"({"xFraction":0.5,"yFraction":1})",
         [](const DocumentDisk& disk) {
             return CapsulePositionStore(disk).load().has_value();
         }},
    };
    for (const auto& document : documents) {
        SCOPED_TRACE(document.key);
        test::FakeDisk disk;
        Values& values = disk.defaults.values;
        values = {{document.legacyKey, document.good}};
        disk.defaults.failures.failOperation(3); // the write, after reading both keys
        EXPECT_TRUE(document.isRead(disk));
        EXPECT_EQ(values, (Values{{document.legacyKey, document.good}}));
        EXPECT_TRUE(document.isRead(disk));
        EXPECT_TRUE(values.contains(document.key) && values.size() == 1U);
        EXPECT_TRUE(document.isRead(disk));
        values = {{document.legacyKey, "{"}, {document.key, document.good}};
        EXPECT_TRUE(document.isRead(disk));
        EXPECT_EQ(values.size(), 2U);
        values = {{document.legacyKey, "{"}};
        EXPECT_FALSE(document.isRead(disk));
        EXPECT_EQ(values.begin()->second, "{");
    }
}

} // namespace
} // namespace brevlin
