#include "platform/freedesktop/files/private_folder.h"
#include "platform/freedesktop/files/xdg_folders.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

namespace brevlin {
namespace {

TEST(XdgFolders, follow_the_environment_where_it_names_absolute_paths)
{
    const XdgFolders fromHome{"/home/a/.local/share", "/home/a/.config", "/home/a/.local/state"};
    const struct
    {
        XdgEnvironment environment;
        XdgFolders expected;
    } cases[] = {
        {{"/home/a", {}, {}, {}}, fromHome},
        {{"/home/a", "", "relative/config", {}}, fromHome},
        {{"/home/a", "/data/", "/config", "/state/"}, {"/data", "/config", "/state"}},
        {{{}, "/data", {}, {}, "/var/tmp"}, {"/data", "/var/tmp", "/var/tmp"}},
        {{"not/absolute", {}, {}, {}}, {"/tmp", "/tmp", "/tmp"}},
    };
    for (const auto& [environment, expected] : cases) {
        EXPECT_EQ(xdgFolders(environment), expected) << expected.data;
    }
}

TEST(RuntimeFolder, is_one_that_nobody_else_can_enter_or_none)
{
    const test::TemporaryFolder folder;
    const std::string configured = folder.path("configured");
    const std::string own = folder.path("brevlin-" + std::to_string(::geteuid()));
    ASSERT_EQ(::mkdir(configured.c_str(), 0700), 0);
    EXPECT_EQ(runtimeFolder(configured, folder.path()), configured);
    ASSERT_EQ(::chmod(configured.c_str(), 0755), 0);
    EXPECT_EQ(runtimeFolder(configured, folder.path()), own);
    EXPECT_EQ(runtimeFolder("relative", folder.path()), own);
    struct stat status = {};
    ASSERT_EQ(::stat(own.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, mode_t{0700});

    ASSERT_EQ(::chmod(own.c_str(), 0770), 0);
    EXPECT_EQ(runtimeFolder({}, folder.path()), std::nullopt);
    std::filesystem::remove(own);
    ASSERT_EQ(::chmod(configured.c_str(), 0700), 0);
    std::filesystem::create_symlink(configured, own);
    EXPECT_EQ(runtimeFolder({}, folder.path()), std::nullopt) << "a link, wherever it leads";
}

} // namespace
} // namespace brevlin
