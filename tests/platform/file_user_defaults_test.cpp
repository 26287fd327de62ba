#include "platform/freedesktop/files/file_user_defaults.h"
#include "support/memory_durable_file.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

TEST(FileUserDefaults, keep_a_file_a_key_and_setting_aside_moves_it_and_replaces_nothing)
{
    test::MemoryDurableFile files;
    FileUserDefaults defaults("/c", files);
    ASSERT_TRUE(defaults.setValue("key", "bad"));
    ASSERT_TRUE(defaults.setValue("taken", "old"));
    const auto refused = defaults.setAside("key", "taken");
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error().code, EEXIST);
    ASSERT_TRUE(defaults.setAside("key", "free"));
    EXPECT_EQ(files.files,
              (std::map<std::string, std::string>{{"/c/free.json", "bad"}, {"/c/taken.json", "old"}}));
    EXPECT_TRUE(defaults.setAside("key", "another")) << "nothing is left to set aside";
}

} // namespace
} // namespace brevlin
