#include "platform/freedesktop/x11/x11_pixels.h"

#include <bit>
#include <cstdlib>
#include <memory>
#include <vector>

namespace brevlin {

namespace {

constexpr std::size_t mostWindows = 16;
constexpr std::uint32_t redBits = 0xff0000;
constexpr std::uint32_t blueBits = 0xff;
constexpr std::uint8_t pixelBits = 32;

struct FreeDeleter
{
    void operator()(void* pointer) const { std::free(pointer); }
};

const xcb_visualtype_t* visualOf(const xcb_screen_t& screen, xcb_visualid_t identifier)
{
    for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem != 0; xcb_depth_next(&depth)) {
        for (auto visual = xcb_depth_visuals_iterator(depth.data); visual.rem != 0;
             xcb_visualtype_next(&visual)) {
            if (visual.data->visual_id == identifier) {
                return visual.data;
            }
        }
    }
    return nullptr;
}

bool takesWholePixels(const xcb_setup_t& setup, std::uint8_t depth)
{
    constexpr auto ourOrder =
        std::endian::native == std::endian::little ? XCB_IMAGE_ORDER_LSB_FIRST : XCB_IMAGE_ORDER_MSB_FIRST;
    if (setup.image_byte_order != ourOrder) {
        return false;
    }
    for (auto format = xcb_setup_pixmap_formats_iterator(&setup); format.rem != 0; xcb_format_next(&format)) {
        if (format.data->depth == depth) {
            return format.data->bits_per_pixel == pixelBits;
        }
    }
    return false;
}

} // namespace

std::uint8_t X11Pixels::askDepth(xcb_window_t window) const
{
    xcb_connection_t* connection = m_x11.get();
    const auto sizeCookie = xcb_get_geometry(connection, window);
    const auto formCookie = xcb_get_window_attributes(connection, window);
    const std::unique_ptr<xcb_get_geometry_reply_t, FreeDeleter> size{
        xcb_get_geometry_reply(connection, sizeCookie, nullptr)};
    const std::unique_ptr<xcb_get_window_attributes_reply_t, FreeDeleter> form{
        xcb_get_window_attributes_reply(connection, formCookie, nullptr)};
    if (!size || !form) {
        return 0;
    }
    const xcb_setup_t& setup = *xcb_get_setup(connection);
    const auto* visual = visualOf(*xcb_setup_roots_iterator(&setup).data, form->visual);
    const bool isOfOurForm = visual != nullptr && visual->red_mask == redBits &&
                             visual->blue_mask == blueBits && takesWholePixels(setup, size->depth);
    return isOfOurForm ? size->depth : std::uint8_t{0};
}

std::uint8_t X11Pixels::depthOf(xcb_window_t window)
{
    const auto found = m_depths.find(window);
    if (found != m_depths.end()) {
        return found->second;
    }
    if (m_depths.size() == mostWindows) {
        m_depths.clear(); // windows that are gone are in it, too
    }
    return m_depths[window] = askDepth(window);
}

bool X11Pixels::put(xcb_window_t window, const WindowSystem::Pixels& pixels)
{
    if (!m_x11.isConnected()) {
        return false;
    }
    const std::uint8_t depth = depthOf(window);
    if (depth == 0) {
        return false;
    }
    std::vector<std::uint32_t> rows;
    rows.reserve(std::size_t{pixels.width} * pixels.height);
    for (std::size_t row = 0; row < pixels.height; ++row) {
        const std::uint32_t* first = pixels.first + row * pixels.stride;
        rows.insert(rows.end(), first, first + pixels.width);
    }
    xcb_connection_t* connection = m_x11.get();
    const xcb_gcontext_t context = xcb_generate_id(connection);
    xcb_create_gc(connection, context, window, 0, nullptr);
    xcb_put_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, window, context, pixels.width, pixels.height,
                  pixels.x, pixels.y, 0, depth,
                  static_cast<std::uint32_t>(rows.size() * sizeof(std::uint32_t)),
                  reinterpret_cast<const std::uint8_t*>(rows.data()));
    xcb_free_gc(connection, context);
    xcb_flush(connection);
    return true;
}

} // namespace brevlin
