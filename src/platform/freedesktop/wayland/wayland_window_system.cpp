#include "platform/freedesktop/wayland/wayland_window_system.h"

#include "platform/freedesktop/sway/sway_focus.h"
#include "platform/freedesktop/wayland/wayland_windows.h"

#include <QCoreApplication>
#include <QWindow>

namespace brevlin {

void WaylandWindowSystem::activate(WindowId window, const std::string& token)
{
    QWindow* handle = windowWithId(window);
    if (handle == nullptr) {
        return;
    }
    if (!token.empty()) {
        // From there Qt takes it, and takes it away.
        qputenv("XDG_ACTIVATION_TOKEN", QByteArray::fromStdString(token));
    }
    handle->requestActivate();
    askSwayToFocus("pid=" + QByteArray::number(QCoreApplication::applicationPid()) + " title=\"^\\Q" +
                   handle->title().toUtf8() + "\\E$\"");
}

} // namespace brevlin
