#include "platform/freedesktop/files/xdg_folders.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

TEST(XdgFolders, follow_the_environment_where_it_names_absolute_paths)
{
    const XdgFolders fromHome{"/home/a/.local/share", "/home/a/.config"};
    const struct
    {
        XdgEnvironment environment;
        XdgFolders expected;
    } cases[] = {
        {{"/home/a", {}, {}}, fromHome},
        {{"/home/a", "", "relative/config"}, fromHome},
        {{"/home/a", "/data/", "/config"}, {"/data", "/config"}},
        {{{}, "/data", {}, "/var/tmp"}, {"/data", "/var/tmp"}},
        {{"not/absolute", {}, {}}, {"/tmp", "/tmp"}},
    };
    for (const auto& [environment, expected] : cases) {
        const XdgFolders folders = xdgFolders(environment);
        EXPECT_EQ(folders.data, expected.data);
        EXPECT_EQ(folders.config, expected.config);
    }
}

} // namespace
} // namespace brevlin
