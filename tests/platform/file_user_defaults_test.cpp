#include "platform/freedesktop/files/file_user_defaults.h"
#include "support/memory_durable_file.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

TEST(FileUserDefaults, keep_exactly_the_bytes_in_one_file_a_key)
{
    test::MemoryDurableFile files;
    FileUserDefaults defaults("/config/Brevlin", files);
    ASSERT_TRUE(defaults.setValue("some.key.v1", "\"text\""));
    EXPECT_EQ(files.files,
              (std::map<std::string, std::string>{{"/config/Brevlin/some.key.v1.json", "\"text\""}}));
    EXPECT_EQ(*defaults.value("some.key.v1"), "\"text\"");
    EXPECT_EQ(*defaults.value("other"), std::nullopt);
    ASSERT_TRUE(defaults.remove("some.key.v1"));
    EXPECT_TRUE(files.files.empty());
}

TEST(FileUserDefaults, setting_aside_moves_the_bytes_and_replaces_nothing)
{
    test::MemoryDurableFile files;
    FileUserDefaults defaults("/c", files);
    files.files = {{"/c/key.json", "bad"}, {"/c/taken.json", "old"}};
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
