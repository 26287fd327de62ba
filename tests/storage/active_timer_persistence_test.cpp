#include "core/timer_engine.h"
#include "storage/active_timer_persistence.h"
#include "storage/snapshot_document.h"
#include "support/fake_disk.h"

#include <gtest/gtest.h>

#include <limits>

namespace brevlin {
namespace {

const std::string key(ActiveTimerPersistence::defaultKey);
const std::string legacyKey(ActiveTimerPersistence::legacyDefaultKey);

class ActiveTimerPersistenceTest : public testing::Test
{
protected:
    TimerSnapshot m_snapshot = freshSnapshot({});
    std::string m_document = *encode(m_snapshot);
    test::FakeDisk m_disk{test::FakeClock{instantFromUnixTime(Seconds{0.0})}};
    test::MemoryUserDefaults& m_defaults = m_disk.defaults;
    ActiveTimerPersistence m_persistence{m_disk};
};

TEST_F(ActiveTimerPersistenceTest, the_latest_snapshot_comes_back_until_it_is_cleared_under_both_keys)
{
    EXPECT_EQ(*m_persistence.load(), std::nullopt);
    EXPECT_TRUE(m_defaults.values.empty());
    ASSERT_TRUE(m_persistence.save({}));
    ASSERT_TRUE(m_persistence.save(m_snapshot));
    EXPECT_EQ(**m_persistence.load(), m_snapshot);
    m_defaults.values[legacyKey] = "{";
    m_persistence.clear();
    EXPECT_TRUE(m_defaults.values.empty());
}

TEST_F(ActiveTimerPersistenceTest, a_snapshot_that_json_cannot_express_leaves_the_old_one)
{
    ASSERT_TRUE(m_persistence.save(m_snapshot));
    TimerSnapshot endless = m_snapshot;
    endless.plannedDuration = Seconds{std::numeric_limits<double>::infinity()};
    EXPECT_FALSE(m_persistence.save(endless));
    EXPECT_EQ(m_defaults.values[key], m_document);
}

TEST_F(ActiveTimerPersistenceTest, an_unreadable_snapshot_is_kept_under_another_name)
{
    const std::string mark = ".unreadable-19700101T000000Z";
    for (const std::string& stored : {key, legacyKey}) {
        m_defaults.values = {{stored, "{"}, {stored + mark, "taken"}};
        EXPECT_FALSE(m_persistence.load());
        EXPECT_EQ(m_defaults.values[stored], "{");
        m_persistence.clear();
        EXPECT_EQ(m_defaults.values, (std::map<std::string, std::string>{{stored + mark, "taken"},
                                                                         {stored + mark + "-2", "{"}}));
    }
}

TEST_F(ActiveTimerPersistenceTest, nothing_is_written_before_the_unreadable_snapshot_could_be_kept)
{
    m_defaults.values = {{key, "{"}};
    EXPECT_FALSE(m_persistence.load());
    m_defaults.failures.failFrom(1);
    ASSERT_TRUE(m_persistence.save(m_snapshot));
    EXPECT_FALSE(m_persistence.isSaved());
    EXPECT_EQ(m_defaults.values[key], "{");
    m_defaults.failures.failNothing();
    m_persistence.retry();
    EXPECT_TRUE(m_persistence.isSaved());
    EXPECT_EQ(m_defaults.values[key], m_document);
    EXPECT_EQ(m_defaults.values[key + ".unreadable-19700101T000000Z"], "{");
}

TEST_F(ActiveTimerPersistenceTest, another_key_never_touches_the_legacy_one)
{
    m_defaults.values = {{legacyKey, m_document}, {"other", m_document}};
    ActiveTimerPersistence other(m_disk, "other");
    other.clear();
    EXPECT_EQ(*other.load(), std::nullopt);
    EXPECT_EQ(m_defaults.values.size(), 1U);
}

} // namespace
} // namespace brevlin
