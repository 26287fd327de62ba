#pragma once

#include <string>

namespace brevlin {

// The program is several: "brevlin", which people start, hands over to the one that is needed, so that none
// loads what another one needs. In the folder of a build they lie side by side; installed the others lie
// where nobody looks for programs to start.

/// The path of one of them.
std::string programFile(const std::string& name);

/// Of brevlin-window: to start without its window.
inline constexpr const char* backgroundOption = "--background";

} // namespace brevlin
