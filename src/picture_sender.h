#pragma once

#include "ui/controls/brevlin_style.h"

namespace brevlin {

class WindowSystem;

/// Sends pictures in the two forms that windows have. The window system outlives it.
BrevlinStyle::PictureSender pictureSender(WindowSystem& system);

} // namespace brevlin
