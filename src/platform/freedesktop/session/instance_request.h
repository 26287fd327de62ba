#pragma once

#include <QString>

namespace brevlin {

/// What a second start, or the desktop, asks of the running program.
struct InstanceRequest
{
    /// Wants nothing but that the program runs.
    static constexpr const char* background = "background";

    QString action; ///< a name of ours; empty, or one that is unknown, asks for the window
    QString token;  ///< of the user's action, as the desktop gave it; empty where there is none
};

} // namespace brevlin
