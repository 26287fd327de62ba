#include "platform/freedesktop/wayland/wayland_windows.h"

#include <QGuiApplication>
#include <QWindow>

namespace brevlin {

QWindow* windowWithId(std::uint64_t id)
{
    for (QWindow* window : QGuiApplication::topLevelWindows()) {
        // One that has no surface yet would get one by the question.
        if (window->handle() != nullptr && window->winId() == id) {
            return window;
        }
    }
    return nullptr;
}

} // namespace brevlin
