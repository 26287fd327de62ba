#include "platform/freedesktop/sway/sway_work_area.h"
#include "platform/freedesktop/x11/x11_window_tree.h"
#include "platform/freedesktop/x11/xwayland_pointer.h"

#include <gtest/gtest.h>

#include <cstring>

namespace brevlin {
namespace {

using Rectangle = FloatingWindowSystem::Rectangle;

constexpr Rectangle screen{0, 0, 1280, 900};
constexpr xcb_window_t panel = 7;
constexpr std::uint8_t inputExtension = 131;

TopLevelWindow managed(xcb_window_t id, const Rectangle& area = screen)
{
    return {id, true, false, area};
}

TopLevelWindow floating(xcb_window_t id, const Rectangle& area)
{
    return {id, false, false, area};
}

TEST(X11WindowTree, the_panel_rises_above_managed_windows_alone_and_appears_below_whatever_covers_a_screen)
{
    const TopLevelWindow own = floating(panel, {615, 8, 50, 50});
    const TopLevelWindow menu = floating(3, {0, 0, 200, 300});
    const TopLevelWindow locker = floating(4, screen);
    const TopLevelWindow overlay{5, false, true, screen};
    const TopLevelWindow secondScreens = floating(6, {1280, 0, 1024, 768});
    struct Case
    {
        const char* what;
        std::vector<TopLevelWindow> windows; // the lowest first
        std::optional<xcb_window_t> above;
        std::optional<xcb_window_t> cover;
    };
    const std::vector<Case> cases{
        {"below nothing", {managed(1), own}, {}, {}},
        {"below a window", {own, managed(1)}, 1, {}},
        {"below several", {managed(1), own, managed(2), managed(8)}, 8, {}},
        {"a menu stays above", {own, managed(1), menu}, 1, {}},
        {"a menu alone", {managed(1), own, menu}, {}, {}},
        {"a locker", {managed(1), own, locker}, {}, 4},
        {"a locker that the panel has come above", {managed(1), locker, own}, {}, 4},
        {"a picture behind the windows", {locker, managed(1), own}, {}, {}},
        {"the compositor's overlay", {managed(1), own, overlay}, {}, {}},
        {"the other screen alone", {managed(1), own, secondScreens}, {}, 6},
        {"a desktop without windows", {own, locker}, {}, 4},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(highestManagedAbove(c.windows, panel), c.above) << c.what;
        EXPECT_EQ(coveringWindow(c.windows, panel, {screen, secondScreens.area}), c.cover) << c.what;
    }
}

TEST(XwaylandPointer, leaving_is_told_where_the_device_that_lets_it_enter_has_moved_it_last)
{
    constexpr std::uint16_t relative = 7;
    constexpr std::uint16_t absolute = 6;
    XwaylandPointer pointer;
    const auto tell = [&](std::uint16_t type, std::size_t sourceAt, std::uint16_t source,
                          xcb_window_t window = panel, std::uint8_t extension = inputExtension) {
        struct alignas(xcb_generic_event_t) Event
        {
            std::uint8_t bytes[64] = {XCB_GE_GENERIC};
        } event;
        event.bytes[1] = extension;
        std::memcpy(event.bytes + 8, &type, sizeof type);
        std::memcpy(event.bytes + 24, &window, sizeof window);
        std::memcpy(event.bytes + sourceAt, &source, sizeof source);
        pointer.follow(reinterpret_cast<const xcb_generic_event_t&>(event), inputExtension, panel);
        return pointer.isLeavingTold();
    };
    const auto enter = [&](auto... more) {
        return tell(7, 16, more...);
    };
    const auto move = [&](auto... more) {
        return tell(6, 56, more...);
    };
    EXPECT_FALSE(pointer.isLeavingTold());
    EXPECT_FALSE(enter(relative));
    EXPECT_TRUE(move(relative));
    EXPECT_TRUE(move(absolute, panel + 1)) << "another window";
    EXPECT_TRUE(move(absolute, panel, std::uint8_t{140})) << "another extension";
    EXPECT_FALSE(move(absolute));
    EXPECT_FALSE(enter(relative));
}

TEST(SwayWorkArea, what_a_visible_workspace_lacks_of_its_output_is_reserved)
{
    using enum FloatingWindowSystem::Edge;
    const QByteArray outputs = R"([{"name":"A","rect":{"x":0,"y":0,"width":1440,"height":900}},
                                   {"name":"B","rect":{"x":1440,"y":100,"width":1024,"height":768}}])";
    using Areas = std::vector<FloatingWindowSystem::ReservedArea>;
    const std::pair<const char*, Areas> cases[] = {
        {R"([{"output":"A","visible":true,"rect":{"x":0,"y":30,"width":1440,"height":870}}])",
         {{top, {0, 0, 1440, 30}}}},
        {R"([{"output":"A","visible":false,"rect":{"x":0,"y":30,"width":1440,"height":870}},
             {"output":"B","visible":true,"rect":{"x":1480,"y":100,"width":974,"height":748}}])",
         {{left, {1440, 100, 40, 768}}, {right, {2454, 100, 10, 768}}, {bottom, {1440, 848, 1024, 20}}}},
        {R"([{"output":"C","visible":true,"rect":{"x":0,"y":30,"width":10,"height":10}}])", {}},
        {R"({"success":false})", {}},
        {"", {}},
    };
    for (const auto& [workspaces, areas] : cases) {
        EXPECT_EQ(swayReservedAreas(workspaces, outputs), areas) << workspaces;
    }
}

} // namespace
} // namespace brevlin
