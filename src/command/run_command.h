#pragma once

#include <optional>

namespace brevlin {

/// Runs what the arguments ask for without a window, a display or a bus, and gives the status that the
/// process is to end with; nothing where the program itself is to start. To be called before any application
/// object is made.
std::optional<int> runCommand(int& argumentCount, char** arguments);

} // namespace brevlin
