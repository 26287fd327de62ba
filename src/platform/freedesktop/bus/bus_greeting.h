#pragma once

#include <string>

namespace brevlin {

// Each call takes as long as the bus does, perhaps for ever, and may run on any thread. libdbus makes them,
// for Qt connects on one thread for all buses, which a silent one would hold up.
// https://dbus.freedesktop.org/doc/dbus-specification.html

/// Where the session's bus is looked for, as D-Bus addresses; starting one is the last resort.
std::string sessionBusAddress();
std::string systemBusAddress();

/// Whether the bus lets a program in.
bool busAnswers(const std::string& address);

/// Whether the accessibility service of this session and the bus that it names answer, as far as a program
/// asks them; so does a session without one.
/// https://gitlab.gnome.org/GNOME/at-spi2-core/-/tree/main/bus
bool accessibilityAnswers(const std::string& sessionAddress);

} // namespace brevlin
