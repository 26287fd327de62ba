// first_paint PROGRAM: starts the program and prints the milliseconds until the middle of the screen has
// another colour than before, which is when its window is mapped and painted there. Ends the program again.
// first_paint PROGRAM X Y WIDTH HEIGHT: prints, too, how long after that this part of the screen has changed
// last.

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

namespace {

constexpr std::chrono::microseconds interval{300};
constexpr std::chrono::seconds longestWait{20};

struct FreeDeleter
{
    void operator()(void* pointer) const { std::free(pointer); }
};

std::uint32_t middleColor(xcb_connection_t* connection, const xcb_screen_t& screen)
{
    const auto cookie = xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, screen.root,
                                      static_cast<std::int16_t>(screen.width_in_pixels / 2),
                                      static_cast<std::int16_t>(screen.height_in_pixels / 2), 1, 1, ~0U);
    const std::unique_ptr<xcb_get_image_reply_t, FreeDeleter> reply{
        xcb_get_image_reply(connection, cookie, nullptr)};
    constexpr std::uint32_t colorBits = 0xffffff;
    return reply ? *reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(reply.get())) & colorBits : 0;
}

std::vector<std::uint8_t> part(xcb_connection_t* connection, const xcb_screen_t& screen,
                               const xcb_rectangle_t& place)
{
    const auto cookie = xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, screen.root, place.x, place.y,
                                      place.width, place.height, ~0U);
    const std::unique_ptr<xcb_get_image_reply_t, FreeDeleter> reply{
        xcb_get_image_reply(connection, cookie, nullptr)};
    if (!reply) {
        return {};
    }
    const std::uint8_t* first = xcb_get_image_data(reply.get());
    return {first, first + xcb_get_image_data_length(reply.get())};
}

// Until nothing has changed for a second.
double lastChange(xcb_connection_t* connection, const xcb_screen_t& screen, const xcb_rectangle_t& place)
{
    using Clock = std::chrono::steady_clock;
    const auto begin = Clock::now();
    auto changed = begin;
    auto seen = part(connection, screen, place);
    while (Clock::now() - changed < std::chrono::seconds(1)) {
        std::this_thread::sleep_for(interval);
        if (auto next = part(connection, screen, place); next != seen) {
            seen = std::move(next);
            changed = Clock::now();
        }
    }
    return std::chrono::duration<double, std::milli>(changed - begin).count();
}

} // namespace

int main(int argumentCount, char** arguments)
{
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    if ((argumentCount != 2 && argumentCount != 6) || xcb_connection_has_error(connection) != 0) {
        std::fputs("first_paint: the program, and a part of the screen or none; and a display\n", stderr);
        return EXIT_FAILURE;
    }
    const xcb_screen_t& screen = *xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const std::uint32_t before = middleColor(connection, screen);

    const auto begin = std::chrono::steady_clock::now();
    const pid_t process = fork();
    if (process == 0) {
        execl(arguments[1], arguments[1], nullptr);
        _exit(127);
    }
    auto waited = std::chrono::steady_clock::duration::zero();
    bool isPainted = false;
    while (!isPainted && waited < longestWait) {
        std::this_thread::sleep_for(interval);
        isPainted = middleColor(connection, screen) != before;
        waited = std::chrono::steady_clock::now() - begin;
    }
    double changed = 0;
    if (isPainted && argumentCount == 6) {
        const auto number = [arguments](int index) {
            return std::atoi(arguments[index]);
        };
        changed = lastChange(connection, screen,
                             {static_cast<std::int16_t>(number(2)), static_cast<std::int16_t>(number(3)),
                              static_cast<std::uint16_t>(number(4)), static_cast<std::uint16_t>(number(5))});
    }
    kill(process, SIGTERM);
    waitpid(process, nullptr, 0);
    while (isPainted && middleColor(connection, screen) != before) {
        std::this_thread::sleep_for(interval); // the next run starts from an empty screen
    }
    xcb_disconnect(connection);
    if (!isPainted) {
        std::fputs("first_paint: nothing was painted\n", stderr);
        return EXIT_FAILURE;
    }
    std::printf("%.2f %.2f\n", std::chrono::duration<double, std::milli>(waited).count(), changed);
    return EXIT_SUCCESS;
}
