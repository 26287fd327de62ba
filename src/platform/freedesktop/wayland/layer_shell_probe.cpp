#include "platform/freedesktop/wayland/layer_shell_probe.h"

#include <poll.h>
#include <wayland-client.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace brevlin {

namespace {

using Clock = std::chrono::steady_clock;

struct Answer
{
    bool hasLayerShell = false;
    bool isWhole = false;
};

void global(void* data, wl_registry* /*registry*/, std::uint32_t /*name*/, const char* interface,
            std::uint32_t /*version*/)
{
    if (std::strcmp(interface, "zwlr_layer_shell_v1") == 0) {
        static_cast<Answer*>(data)->hasLayerShell = true;
    }
}

void globalRemoved(void* /*data*/, wl_registry* /*registry*/, std::uint32_t /*name*/) {}

void done(void* data, wl_callback* /*callback*/, std::uint32_t /*serial*/)
{
    static_cast<Answer*>(data)->isWhole = true;
}

/// False once the time is over or the connection has failed.
bool dispatchNext(wl_display* display, Clock::time_point deadline)
{
    while (wl_display_prepare_read(display) != 0) {
        if (wl_display_dispatch_pending(display) < 0) {
            return false;
        }
    }
    wl_display_flush(display);
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    pollfd socket{wl_display_get_fd(display), POLLIN, 0};
    int ready = 0;
    do {
        ready = poll(&socket, 1, static_cast<int>(std::max<long long>(left, 0)));
    } while (ready < 0 && errno == EINTR);
    if (ready <= 0) {
        wl_display_cancel_read(display);
        return false;
    }
    return wl_display_read_events(display) == 0 && wl_display_dispatch_pending(display) >= 0;
}

} // namespace

bool offersLayerShell(std::chrono::milliseconds patience)
{
    // A connection that was handed over serves once, and Qt is to have it.
    if (std::getenv("WAYLAND_SOCKET") != nullptr) {
        return false;
    }
    const std::unique_ptr<wl_display, decltype(&wl_display_disconnect)> display(wl_display_connect(nullptr),
                                                                                wl_display_disconnect);
    if (!display) {
        return false;
    }
    const auto deadline = Clock::now() + patience;
    Answer answer;
    const std::unique_ptr<wl_registry, decltype(&wl_registry_destroy)> registry(
        wl_display_get_registry(display.get()), wl_registry_destroy);
    constexpr wl_registry_listener registryListener{global, globalRemoved};
    wl_registry_add_listener(registry.get(), &registryListener, &answer);
    const std::unique_ptr<wl_callback, decltype(&wl_callback_destroy)> callback(
        wl_display_sync(display.get()), wl_callback_destroy);
    constexpr wl_callback_listener callbackListener{done};
    wl_callback_add_listener(callback.get(), &callbackListener, &answer);
    while (!answer.isWhole && dispatchNext(display.get(), deadline)) {
    }
    return answer.isWhole && answer.hasLayerShell;
}

} // namespace brevlin
