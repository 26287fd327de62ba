#pragma once

#include <cstdint>

class QWindow;

namespace brevlin {

/// The window with this native identifier; none where it has gone.
QWindow* windowWithId(std::uint64_t id);

} // namespace brevlin
