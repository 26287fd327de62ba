#pragma once

#include <QByteArray>

namespace brevlin {

/// Asks sway to give the keyboard to the window that meets these criteria (sway(5)), on whatever workspace
/// and behind whatever full-screen window it lies: as it is set up by default, sway only marks a window as
/// urgent that asks in X11's way or Wayland's. Elsewhere nothing happens. Never waits.
void askSwayToFocus(const QByteArray& criteria);

} // namespace brevlin
