#include "platform/freedesktop/wayland/display_choice.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

TEST(DisplayChoice, native_wayland_is_taken_where_it_is_whole_and_a_wish_that_cannot_be_met_is_told)
{
    struct Case
    {
        const char* wish;
        const char* qtPlatform;
        bool hasX11;
        bool hasWayland;
        bool canBeNative;
        Platform expected;
        const char* complaint = "";
    };
    const Case cases[] = {
        {"", "", true, false, false, Platform::x11},
        {"", "", true, true, true, Platform::wayland},
        {"", "", true, true, false, Platform::x11},
        {"", "", false, true, true, Platform::wayland},
        {"", "", false, true, false, Platform::byQt},
        {"", "", false, false, false, Platform::byQt},
        {"x11", "", true, true, true, Platform::x11},
        {"wayland", "", true, true, true, Platform::wayland},
        {"wayland", "", true, true, false, Platform::x11, "no layer shell"},
        {"wayland", "", true, false, true, Platform::x11, "no layer shell"},
        {"Wayland", "", true, true, true, Platform::wayland, "the values are x11 and wayland"},
        {"x11", "offscreen", true, true, true, Platform::byQt},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(std::string(each.wish) + " " + each.qtPlatform + " " + std::to_string(each.hasX11) +
                     std::to_string(each.hasWayland) + std::to_string(each.canBeNative));
        const DisplayChoice choice =
            chooseDisplay({each.wish, each.qtPlatform, each.hasX11, each.hasWayland, [&] {
                               return each.canBeNative;
                           }});
        EXPECT_EQ(choice.platform, each.expected);
        EXPECT_EQ(choice.complaint.empty(), *each.complaint == '\0');
        EXPECT_NE(choice.complaint.find(each.complaint), std::string::npos) << choice.complaint;
    }
}

} // namespace
} // namespace brevlin
