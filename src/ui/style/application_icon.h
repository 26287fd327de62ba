#pragma once

#include <QIcon>

namespace brevlin {

/// The program's icon in the sizes of taskbars and window lists, for those that take it from the window
/// because they know no desktop entries.
QIcon applicationIcon();

} // namespace brevlin
