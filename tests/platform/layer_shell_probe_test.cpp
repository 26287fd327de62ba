#include "platform/freedesktop/wayland/layer_shell_probe.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace brevlin {
namespace {

TEST(LayerShellProbe, a_compositor_that_is_absent_or_silent_has_none_and_holds_nothing_up)
{
    const std::string path = ::testing::TempDir() + "silent-compositor";
    setenv("WAYLAND_DISPLAY", path.c_str(), 1);
    unlink(path.c_str());
    EXPECT_FALSE(offersLayerShell(std::chrono::seconds{10}));

    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(listener, 1), 0);
    EXPECT_FALSE(offersLayerShell(std::chrono::milliseconds{20}));
    close(listener);
    unlink(path.c_str());
}

} // namespace
} // namespace brevlin
