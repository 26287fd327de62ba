#include "platform/freedesktop/x11/x11_window_tree.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace brevlin {

namespace {

struct FreeDeleter
{
    void operator()(void* pointer) const { std::free(pointer); }
};

template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, FreeDeleter>;

std::vector<xcb_window_t> children(const xcb_query_tree_reply_t* reply)
{
    if (reply == nullptr) {
        return {};
    }
    const xcb_window_t* first = xcb_query_tree_children(reply);
    return {first, first + xcb_query_tree_children_length(reply)};
}

// One request for each window, sent together: they cost one way to the server and back.
template <typename Cookie, typename Request>
std::vector<Cookie> askAll(const std::vector<xcb_window_t>& windows, Request request)
{
    std::vector<Cookie> cookies;
    cookies.reserve(windows.size());
    for (const xcb_window_t window : windows) {
        cookies.push_back(request(window));
    }
    return cookies;
}

// A window manager marks what it governs with WM_STATE
// (https://www.x.org/releases/X11R7.6/doc/xorg-docs/specs/ICCCM/icccm.html#wm_state_property).
std::vector<bool> areMarked(const X11Connection& x11, const std::vector<xcb_window_t>& windows)
{
    xcb_connection_t* connection = x11.get();
    const auto cookies = askAll<xcb_get_property_cookie_t>(
        windows, [connection, mark = x11.atom("WM_STATE")](xcb_window_t window) {
            return xcb_get_property(connection, 0, window, mark, XCB_ATOM_ANY, 0, 0);
        });
    std::vector<bool> marked;
    for (const auto cookie : cookies) {
        const ReplyPointer<xcb_get_property_reply_t> reply{
            xcb_get_property_reply(connection, cookie, nullptr)};
        marked.push_back(reply && reply->type != XCB_ATOM_NONE);
    }
    return marked;
}

// Frames lie around what they frame, some managers' two deep.
void findManaged(const X11Connection& x11, std::vector<TopLevelWindow>& found)
{
    struct Inner
    {
        std::size_t owner;
        xcb_window_t window;
    };
    constexpr int deepest = 3;
    std::vector<Inner> level;
    level.reserve(found.size());
    for (std::size_t index = 0; index < found.size(); ++index) {
        level.push_back({index, found[index].id});
    }
    for (int depth = 0; depth <= deepest && !level.empty(); ++depth) {
        std::vector<xcb_window_t> windows;
        windows.reserve(level.size());
        for (const Inner& inner : level) {
            windows.push_back(inner.window);
        }
        const std::vector<bool> marked = areMarked(x11, windows);
        const auto trees = askAll<xcb_query_tree_cookie_t>(
            windows, [&x11](xcb_window_t window) { return xcb_query_tree(x11.get(), window); });
        std::vector<Inner> next;
        for (std::size_t index = 0; index < level.size(); ++index) {
            TopLevelWindow& owner = found[level[index].owner];
            owner.isManaged = owner.isManaged || marked[index];
            const ReplyPointer<xcb_query_tree_reply_t> tree{
                xcb_query_tree_reply(x11.get(), trees[index], nullptr)};
            for (const xcb_window_t child : children(tree.get())) {
                next.push_back({level[index].owner, child});
            }
        }
        std::erase_if(next, [&found](const Inner& inner) { return found[inner.owner].isManaged; });
        level = std::move(next);
    }
}

bool covers(const FloatingWindowSystem::Rectangle& area, const FloatingWindowSystem::Rectangle& screen)
{
    return area.x <= screen.x && area.y <= screen.y && area.x + area.width >= screen.x + screen.width &&
           area.y + area.height >= screen.y + screen.height;
}

} // namespace

std::vector<TopLevelWindow> topLevelWindows(const X11Connection& x11)
{
    xcb_connection_t* connection = x11.get();
    const ReplyPointer<xcb_query_tree_reply_t> tree{
        xcb_query_tree_reply(connection, xcb_query_tree(connection, x11.root()), nullptr)};
    const std::vector<xcb_window_t> all = children(tree.get());
    const auto attributes = askAll<xcb_get_window_attributes_cookie_t>(
        all, [connection](xcb_window_t window) { return xcb_get_window_attributes(connection, window); });
    const auto geometries = askAll<xcb_get_geometry_cookie_t>(
        all, [connection](xcb_window_t window) { return xcb_get_geometry(connection, window); });
    const std::uint32_t numbersOfOneClient = xcb_get_setup(connection)->resource_id_mask;
    std::vector<TopLevelWindow> found;
    for (std::size_t index = 0; index < all.size(); ++index) {
        const ReplyPointer<xcb_get_window_attributes_reply_t> attribute{
            xcb_get_window_attributes_reply(connection, attributes[index], nullptr)};
        const ReplyPointer<xcb_get_geometry_reply_t> geometry{
            xcb_get_geometry_reply(connection, geometries[index], nullptr)};
        if (attribute && geometry && attribute->map_state == XCB_MAP_STATE_VIEWABLE &&
            attribute->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT) {
            // The server's own numbers have no client's part.
            found.push_back({all[index],
                             false,
                             (all[index] & ~numbersOfOneClient) == 0,
                             {geometry->x, geometry->y, geometry->width, geometry->height}});
        }
    }
    findManaged(x11, found);
    return found;
}

std::optional<xcb_window_t> highestManagedAbove(const std::vector<TopLevelWindow>& windows,
                                                xcb_window_t window)
{
    for (auto above = windows.rbegin(); above != windows.rend() && above->id != window; ++above) {
        if (above->isManaged) {
            return above->id;
        }
    }
    return std::nullopt;
}

std::optional<xcb_window_t> coveringWindow(const std::vector<TopLevelWindow>& windows, xcb_window_t other,
                                           const std::vector<FloatingWindowSystem::Rectangle>& screens)
{
    for (auto above = windows.rbegin(); above != windows.rend() && !above->isManaged; ++above) {
        if (above->id == other || above->isTheServers) {
            continue;
        }
        const bool coversOne = std::any_of(screens.begin(), screens.end(), [above](const auto& screen) {
            return covers(above->area, screen);
        });
        if (coversOne) {
            return above->id;
        }
    }
    return std::nullopt;
}

} // namespace brevlin
