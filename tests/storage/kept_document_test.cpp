#include "storage/kept_document.h"
#include "support/fake_disk.h"

#include <gtest/gtest.h>

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
    document.write("new");
    EXPECT_EQ(disk.defaults.values, (Values{{"legacy", "old"}}));
    disk.defaults.unreadable.clear();
    document.retry();
    EXPECT_EQ(read, std::vector<std::string>{"old"});
    EXPECT_EQ(disk.defaults.values, (Values{{"key", "new"}}));
}

} // namespace
} // namespace brevlin
