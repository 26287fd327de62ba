#pragma once

#include <QString>
#include <QWindow>

#include <cstdint>
#include <optional>

namespace brevlin {

/// The X server time in a startup notification identifier "…_TIME1234"
/// (https://specifications.freedesktop.org/startup-notification-spec/); nothing where it has none.
std::optional<std::uint32_t> startupIdentifierTime(const QString& identifier);

/// Asks the window manager to raise the window and give it the keyboard (_NET_ACTIVE_WINDOW,
/// https://specifications.freedesktop.org/wm-spec/). With the time of the user's action the manager can judge
/// whether it is the newest one; without it the request counts as the user's own. Away from X11 it asks
/// through Qt.
void activateWindow(QWindow& window, std::optional<std::uint32_t> userTime);

} // namespace brevlin
